#include "tool/commands/talk_layout.h"

#include "tool/console/row_text.h"

namespace marvane::tool {

namespace {

using read::Exchange;

constexpr std::size_t NumberColumn = 12; // columns where a field ends or begins
constexpr std::size_t RequestColumn = 14;
constexpr std::size_t WordsColumn = 32;
constexpr std::size_t MarkColumn = 53;
constexpr std::size_t ResponseColumn = 55;
constexpr std::size_t LatencyColumn = 90;
constexpr std::size_t LineColumn = 98;
constexpr std::size_t ResponseWidth = 29;

} // namespace

TalkLayout::TalkLayout(const Console& console)
    : console_(console), extra_(console.Columns() > 100 ? console.Columns() - 100 : 0)
{
}

std::string TalkLayout::Header() const
{
    std::string row;
    PutBefore(row, 7, "time");
    PutBefore(row, NumberColumn, "#");
    PutAt(row, RequestColumn, "request");
    PutAt(row, ResponseColumn, "response");
    PutBefore(row, LatencyColumn + extra_, "ms");
    PutBefore(row, LineColumn + extra_, "line");
    return Finished(std::move(row));
}

std::string TalkLayout::Row(std::string_view time, std::string_view number, const RequestText& request,
                            const ResponseRow& response, std::string_view line) const
{
    std::string row;
    PutBefore(row, 7, time);
    PutBefore(row, NumberColumn, number);
    if (!request.Bytes.empty())
        PutAt(row, RequestColumn, request.Bytes);
    if (!request.Words.empty())
        PutAt(row, request.Bytes.empty() ? RequestColumn : WordsColumn, request.Words);
    const std::size_t width = ResponseWidth + extra_;
    const std::size_t wide = ColumnsOf(response.Text);
    // A long text breaks at a blank, so that the times stay in their column.
    const std::size_t blank = wide <= width ? std::string::npos : response.Text.rfind(' ', width);
    const bool isBroken = blank != std::string::npos && blank > 0;
    const std::string first = isBroken ? response.Text.substr(0, blank) : Shortened(response.Text, width);
    if (response.Mark != ' ')
        PutAt(row, MarkColumn, std::string(1, response.Mark));
    if (!first.empty())
        PutAt(row, ResponseColumn, first);
    if (response.After)
        PutBefore(row, LatencyColumn + extra_, MillisecondsText(*response.After));
    if (!line.empty())
        PutBefore(row, LineColumn + extra_, line);
    row = Finished(std::move(row));
    if (isBroken) {
        std::string rest;
        PutAt(rest, ResponseColumn, Shortened(response.Text.substr(blank + 1), width + 16));
        row += Finished(std::move(rest));
    }
    const Colour colour = response.Mark == 'X' ? Colour::Red : Colour::Yellow;
    if (console_.HasColour() && (response.Mark == 'X' || response.Mark == '!') && row.size() > MarkColumn)
        row.replace(row.find(response.Mark, MarkColumn), 1,
                    console_.Coloured(colour, std::string_view(&response.Mark, 1)));
    return row;
}

std::string TalkLayout::Remark(std::string_view time, std::string_view text, std::string_view line) const
{
    std::string row;
    PutBefore(row, 7, time);
    PutAt(row, RequestColumn, Shortened(text, LineColumn + extra_ - RequestColumn - line.size() - 1));
    PutBefore(row, LineColumn + extra_, line);
    return Finished(std::move(row));
}

std::string TalkLines(const TalkLayout& layout, const Exchange& exchange, read::LogTime begin)
{
    const std::vector<ResponseRow> rows = ResponseRows(exchange);
    const std::string number = exchange.Primitive ? std::to_string(*exchange.Primitive)
                               : exchange.Result == read::Outcome::NotStarted ? "-"
                                                                              : "?";
    std::string lines = layout.Row(SecondsText(begin, exchange.Time), number, RequestTextOf(exchange),
                                   rows.front(), PositionText(exchange.At));
    for (std::size_t i = 1; i < rows.size(); ++i)
        lines += layout.Row("", "", {}, rows[i], "");
    return lines;
}

} // namespace marvane::tool
