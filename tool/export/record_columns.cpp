#include "tool/export/record_columns.h"

#include <algorithm>

namespace marvane::tool {

namespace {

constexpr std::string_view FirstColumns = "ts #session";
constexpr std::string_view LastColumns = "file #line #redacted #bytes_replaced";

constexpr RecordTable Tables[] = {
    {"log", "logs", "schema program files host tags"},
    {"session", "sessions", "marvane target target_version #loaded settings"},
    {"call", "calls",
     "#seq call #thread state status #status_code level #dur_ms #depth #hmod #hcll #hcop end_ts end_file "
     "#end_line args lines_in lines_out"},
    {"event", "events", "#thread #event_type #hmod #hcll handler #dur_ms state"},
    {"item", "items",
     "#seq item #hmod #hcll #hcop #timestamp #uri #acceptance_id #tx_done #start #extra data #size #cut #code "
     "name"},
    {"comms", "comms", "protocol #thread direction title #address data #size #cut more"},
    {"exchange", "exchanges",
     "#seq #hmod #hcll #hcop link cop_type request #request_size summary service #sid #subfunction #did outcome "
     "answer #answer_size #cut #nrc nrc_name #pending #answers #latency_us latency_by ended_ts"},
    {"param", "params", "#seq action #hmod #hcll #id name data_type #value value_hex default"},
    {"mark", "marks", "text"},
    {"problem", "problems", "what #seq text"},
};

void AddColumns(std::string_view names, std::vector<RecordColumn>& columns)
{
    while (!names.empty()) {
        const std::size_t end = std::min(names.find(' '), names.size());
        const bool isNumber = names.front() == '#';
        columns.push_back({names.substr(isNumber, end - isNumber), isNumber});
        names.remove_prefix(std::min(end + 1, names.size()));
    }
}

} // namespace

std::span<const RecordTable> RecordTables()
{
    return Tables;
}

std::vector<RecordColumn> ColumnsOf(const RecordTable& table)
{
    std::vector<RecordColumn> columns;
    for (const std::string_view names : {FirstColumns, table.Columns, LastColumns})
        AddColumns(names, columns);
    return columns;
}

const RecordTable* TableOfKind(std::string_view kind)
{
    const auto found = std::ranges::find(Tables, kind, &RecordTable::Kind);
    return found == std::end(Tables) ? nullptr : found;
}

const RecordTable* TableOfName(std::string_view name)
{
    const auto found = std::ranges::find(Tables, name, &RecordTable::Name);
    return found == std::end(Tables) ? nullptr : found;
}

} // namespace marvane::tool
