#include "line/dump_columns.h"

#include <cstring>

#include "line/arrows.h"
#include "text/read_digits.h"

namespace marvane {

namespace {

/// A column counted from the end of the arrow, where the text to parse begins.
constexpr std::size_t AfterArrow(std::size_t column)
{
    static_assert(dump_columns::Label == ArrowLength);
    return column - ArrowLength;
}

constexpr std::size_t LabelEnd = AfterArrow(dump_columns::LabelEnd);
constexpr std::size_t OffsetBar = AfterArrow(dump_columns::OffsetBar);
constexpr std::size_t Offset = AfterArrow(dump_columns::Offset);
constexpr std::size_t CellsOpen = AfterArrow(dump_columns::CellsOpen);
constexpr std::size_t Cells = AfterArrow(dump_columns::Cells);
constexpr std::size_t Text = AfterArrow(dump_columns::Text);
constexpr std::size_t Bar = AfterArrow(dump_columns::Bar);
constexpr std::size_t Length = AfterArrow(dump_columns::LineBreak);

constexpr std::string_view Cut = dump_columns::CutMark.substr(0, dump_columns::CutMark.size() - 1);

bool IsBlank(std::string_view text)
{
    return text.find_first_not_of(' ') == std::string_view::npos;
}

bool HasFrame(std::string_view text)
{
    return text.size() > Text && text[LabelEnd] == ' ' && text[OffsetBar] == '|' &&
           text[CellsOpen - 1] == ' ' && text[CellsOpen] == '<';
}

/// Reads cells up to the one that ends with ">". Their count; 0 if one is wrong.
std::size_t ReadCells(const char* cells, DumpRow& row)
{
    for (std::size_t i = 0; i < row.Bytes.size(); ++i, cells += dump_columns::CellWidth) {
        if (!ReadHex<2>(cells, row.Bytes[i]))
            return 0;
        if (cells[2] == '>')
            return i + 1;
        if (cells[2] != ' ')
            return 0;
    }
    return 0;
}

/// True if the text column shows the row's bytes.
bool ShowsBytes(const char* shown, const DumpRow& row)
{
    std::array<std::uint64_t, 2> words;
    static_assert(sizeof words == sizeof row.Bytes);
    std::memcpy(words.data(), row.Bytes.data(), sizeof words);
    for (std::uint64_t& word : words)
        word = PrintableBytes(word);
    return std::memcmp(shown, words.data(), row.Count) == 0;
}

/// Reads what follows the last character of the text column: padding and bar, or the mark of a cut listing.
bool ReadEnd(std::string_view text, DumpRow& row)
{
    const std::size_t end = Text + row.Count;
    if (text.size() == Length && text[Bar] == '|' && IsBlank(text.substr(end, Bar - end)))
        return true;
    row.IsCut = true;
    const char between = end == Bar ? '|' : ' ';
    return text.size() == end + 1 + Cut.size() && text[end] == between && text.ends_with(Cut);
}

} // namespace

std::optional<DumpRow> ParseDumpRow(std::string_view text)
{
    if (!HasFrame(text))
        return std::nullopt;
    DumpRow row;
    if (!ReadHex<8>(text.data() + Offset, row.Offset))
        return std::nullopt;
    row.Count = ReadCells(text.data() + Cells, row);
    const std::size_t cellsEnd = Cells + row.Count * dump_columns::CellWidth;
    if (row.Count == 0 || !IsBlank(text.substr(cellsEnd, Text - cellsEnd)) ||
        text.size() < Text + row.Count || !ShowsBytes(text.data() + Text, row) || !ReadEnd(text, row))
        return std::nullopt;
    row.Label = text.substr(0, LabelEnd);
    row.Label.remove_suffix(LabelEnd - (row.Label.find_last_not_of(' ') + 1));
    return row;
}

} // namespace marvane
