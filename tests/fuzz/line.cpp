// The parsers of a log's lines over any bytes: what they accept is composed again to the same text.
#include <string>

#include "line/arrows.h"
#include "line/dump_line.h"
#include "line/file_names.h"
#include "line/stamp.h"
#include "tests/fuzz/fuzz_target.h"

using namespace marvane;
using namespace marvane::testing;

namespace {

void CheckStamp(std::string_view text)
{
    const std::optional<Stamp> stamp = ParseStamp(text);
    if (!stamp)
        return;
    char composed[StampLength];
    PutStamp(composed, *stamp);
    Require(text.starts_with(std::string_view(composed, StampLength)), "a stamp is composed again", text);
}

void CheckArrow(std::string_view text)
{
    const std::optional<Arrow> arrow = ParseArrow(text);
    if (arrow)
        Require(text.starts_with(Arrow(arrow->ShownDirection(), arrow->ShownDepth()).Text()),
                "an arrow is composed again", text);
    const std::optional<Direction> direction = ParseReportArrow(text);
    if (direction)
        Require(text.starts_with(ReportArrow(*direction)), "the arrow of a report is composed again", text);
}

void CheckMark(std::string_view text)
{
    const MarkedLine line = ParseMark(text);
    const bool whole = line.Mark == LineMark::None;
    Require(whole == (line.Rest == text), "a mark is taken off, and nothing else", text);
    Require(whole || line.Rest.empty() || text.find(line.Rest) != std::string_view::npos,
            "the rest is a part of the text", text);
}

void CheckDumpRow(std::string_view text)
{
    const std::optional<DumpRow> row = ParseDumpRow(text);
    if (!row)
        return;
    Require(row->Count >= 1 && row->Count <= row->Bytes.size(), "a row has 1 to 16 bytes", text);
    const Arrow arrow(Direction::ToTarget);
    DumpLine line({}, arrow, row->Label);
    const std::string_view composed = line.Last(row->Offset, row->Bytes.data(), row->Count, row->IsCut);
    Require(composed == std::string(arrow.Text()).append(text) + '\n', "a row is composed again", text);
}

void CheckFileName(std::string_view text)
{
    const std::optional<LogFileName> name = ParseLogFileName(text);
    if (!name)
        return;
    std::tm begun = {};
    begun.tm_year = name->Begun.Year - 1900;
    begun.tm_mon = name->Begun.Month - 1;
    begun.tm_mday = name->Begun.Day;
    begun.tm_hour = name->Begun.Hour;
    begun.tm_min = name->Begun.Minute;
    begun.tm_sec = name->Begun.Second;
    const std::string composed = std::string(name->Prefix) + MakeLogFileName(name->Family, begun);
    Require(composed == text, "a name is composed again", text);
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    // The target's bytes as they are, and as the line that follows each of them: parsers see any beginning.
    for (std::size_t start = 0; start <= bytes.size(); ++start) {
        const std::string_view text = bytes.substr(start, bytes.find('\n', start) - start);
        CheckStamp(text);
        CheckArrow(text);
        CheckMark(text);
        CheckDumpRow(text);
        CheckFileName(text);
    }
    return 0;
}
