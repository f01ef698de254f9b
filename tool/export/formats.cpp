#include <algorithm>

#include "tool/export/format.h"

namespace marvane::tool {

void WriteJsonLines(const Inputs& inputs, Sink& sink);

namespace {

constexpr Format All[] = {
    {.Name = "jsonl",
     .Text = "JSON Lines, an object a record, for databases and scripts",
     .Write = WriteJsonLines,
     .CanFollow = true,
     .HasDays = true},
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
