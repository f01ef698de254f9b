#include <algorithm>

#include "tool/export/format.h"

namespace marvane::tool {

void WriteCsv(const Inputs& inputs, Sink& sink);
void WriteJsonLines(const Inputs& inputs, Sink& sink);
void WritePcapng(const Inputs& inputs, Sink& sink);
void WriteSql(const Inputs& inputs, Sink& sink);
void WriteTrace(const Inputs& inputs, Sink& sink);

namespace {

constexpr Format All[] = {
    {.Name = "jsonl",
     .Text = "JSON Lines, an object a record, for databases and scripts",
     .Write = WriteJsonLines,
     .CanFollow = true,
     .HasDays = true},
    {.Name = "csv",
     .Text = "a table for spreadsheets",
     .Write = WriteCsv,
     .Tables = "calls,exchanges,params,items,events,comms,problems,marks,sessions,logs"},
    {.Name = "sql", .Text = "statements that make a database, for sqlite3", .Write = WriteSql},
    {.Name = "pcapng",
     .Text = "packets of UDS and DoIP, for Wireshark",
     .Write = WritePcapng,
     .IsBinary = true},
    {.Name = "trace",
     .Text = "a time line of threads and links, for Perfetto and speedscope",
     .Write = WriteTrace},
};

} // namespace

std::span<const Format> Formats()
{
    return All;
}

const Format* FindFormat(std::string_view name)
{
    const auto found = std::ranges::find(All, name, &Format::Name);
    return found == std::end(All) ? nullptr : found;
}

} // namespace marvane::tool
