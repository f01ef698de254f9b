// --format csv: one table, quoted as RFC 4180 has it.
#include <algorithm>
#include <stdexcept>

#include "tool/export/clean_text.h"
#include "tool/export/json_line.h"
#include "tool/export/log_records.h"
#include "tool/export/record_columns.h"

namespace marvane::tool {

namespace {

/// Appends a text as a cell. What a spreadsheet would take for a formula begins with an apostrophe. False if
/// it was no UTF-8.
bool AppendCell(std::string& out, std::string_view text)
{
    const bool isFormula =
        !text.empty() && std::string_view("=+-@\t\r").find(text.front()) != std::string_view::npos;
    const bool isQuoted = isFormula || text.find_first_of("\",\r\n") != std::string_view::npos;
    out += isFormula ? "\"'" : isQuoted ? "\"" : "";
    const bool isClean = AppendClean(out, text, '"');
    out += isQuoted ? "\"" : "";
    return isClean;
}

class CsvRow : public RecordWriter
{
public:
    explicit CsvRow(const RecordTable& table)
        : kind_(table.Kind), columns_(ColumnsOf(table)), cells_(columns_.size())
    {
    }

    /// The names of the columns.
    std::string Head() const
    {
        std::string head;
        for (const RecordColumn& column : columns_)
            head.append(head.empty() ? "" : ",").append(column.Name);
        return head + "\r\n";
    }

    bool Takes(std::string_view kind) const override { return kind == kind_; }
    void Begin(std::string_view) override
    {
        for (std::string& cell : cells_)
            cell.clear();
        isReplaced_ = false;
    }
    void Text(std::string_view key, std::string_view value) override
    {
        isReplaced_ |= !AppendCell(Cell(key), value);
    }
    void Number(std::string_view key, std::int64_t value) override { Cell(key) += std::to_string(value); }
    void Flag(std::string_view key, bool value) override { Cell(key) += value ? '1' : '0'; }
    void Hex(std::string_view key, std::span<const std::uint8_t> bytes) override
    {
        AppendHex(Cell(key), bytes);
    }
    void Texts(std::string_view key, std::span<const std::string_view> texts) override
    {
        std::string all;
        for (const std::string_view text : texts)
            all.append(all.empty() ? "" : "\n").append(text);
        Text(key, all);
    }
    void Values(std::string_view key, std::span<const NamedValue> values) override
    {
        std::string json;
        AppendJsonObject(json, values);
        Text(key, json);
    }
    std::string_view End() override
    {
        if (isReplaced_)
            Flag("bytes_replaced", true);
        row_.clear();
        for (const std::string& cell : cells_)
            row_.append(&cell == cells_.data() ? "" : ",").append(cell);
        row_ += "\r\n";
        return row_;
    }

private:
    std::string& Cell(std::string_view key)
    {
        const auto column = std::ranges::find(columns_, key, &RecordColumn::Name);
        if (column == columns_.end())
            throw std::logic_error("no column for " + std::string(key));
        return cells_[static_cast<std::size_t>(column - columns_.begin())];
    }

    std::string_view kind_;
    std::vector<RecordColumn> columns_;
    std::vector<std::string> cells_;
    std::string row_;
    bool isReplaced_ = false;
};

} // namespace

void WriteCsv(const Inputs& inputs, Sink& sink)
{
    CsvRow row(*TableOfName(inputs.Table.empty() ? "calls" : inputs.Table));
    sink.Write(row.Head());
    LogRecords::Write(inputs, row, sink);
}

} // namespace marvane::tool
