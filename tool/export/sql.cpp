// --format sql: statements for sqlite3 that make a new database.
#include "tool/export/clean_text.h"
#include "tool/export/json_line.h"
#include "tool/export/log_records.h"
#include "tool/export/record_columns.h"

namespace marvane::tool {

namespace {

constexpr std::string_view AfterTables = R"(
CREATE INDEX calls_by_number ON calls(session, seq);
CREATE INDEX calls_by_name ON calls(call);
CREATE INDEX calls_by_level ON calls(level);
CREATE INDEX items_by_call ON items(session, seq);
CREATE INDEX exchanges_by_number ON exchanges(session, seq);
CREATE INDEX exchanges_by_link ON exchanges(link, sid, did);
CREATE INDEX exchanges_by_outcome ON exchanges(outcome);
CREATE INDEX exchanges_by_latency ON exchanges(latency_us);
CREATE INDEX params_by_name ON params(name);
CREATE INDEX problems_by_kind ON problems(what);

CREATE VIEW slowest AS
  SELECT latency_us / 1000.0 AS ms, latency_by, ts, link, summary, request, outcome, answer, file, line
  FROM exchanges WHERE latency_us IS NOT NULL ORDER BY latency_us DESC;
CREATE VIEW refused AS
  SELECT ts, link, summary, request, nrc, nrc_name, answer, latency_us / 1000.0 AS ms, file, line
  FROM exchanges WHERE outcome = 'refused' ORDER BY ts, line;
COMMIT;
)";

std::string TableStatement(const RecordTable& table)
{
    std::string text = "CREATE TABLE " + std::string(table.Name) + " (";
    std::string_view before = "\n  ";
    for (const RecordColumn& column : ColumnsOf(table)) {
        text.append(before)
            .append("\"")
            .append(column.Name)
            .append(column.IsNumber ? "\" INTEGER" : "\" TEXT");
        before = ",\n  ";
    }
    return text + "\n);\n";
}

/// A record as an INSERT statement. Texts are UTF-8 without NUL, as the program wants them.
class SqlRow : public RecordWriter
{
public:
    bool Takes(std::string_view kind) const override { return TableOfKind(kind) != nullptr; }
    void Begin(std::string_view kind) override
    {
        table_ = TableOfKind(kind)->Name;
        columns_.clear();
        values_.clear();
        isReplaced_ = false;
    }
    void Text(std::string_view key, std::string_view value) override
    {
        Column(key);
        AppendString(value);
    }
    void Number(std::string_view key, std::int64_t value) override
    {
        Column(key);
        values_ += std::to_string(value);
    }
    void Flag(std::string_view key, bool value) override { Number(key, value ? 1 : 0); }
    void Hex(std::string_view key, std::span<const std::uint8_t> bytes) override
    {
        Column(key);
        values_ += '\'';
        AppendHex(values_, bytes);
        values_ += '\'';
    }
    void Texts(std::string_view key, std::span<const std::string_view> texts) override
    {
        std::string json;
        isReplaced_ |= !AppendJsonArray(json, texts);
        Text(key, json);
    }
    void Values(std::string_view key, std::span<const NamedValue> values) override
    {
        std::string json;
        isReplaced_ |= !AppendJsonObject(json, values);
        Text(key, json);
    }
    std::string_view End() override
    {
        if (isReplaced_)
            Flag("bytes_replaced", true);
        statement_.assign("INSERT INTO ").append(table_).append("(").append(columns_);
        statement_.append(") VALUES(").append(values_).append(");\n");
        return statement_;
    }

private:
    void Column(std::string_view key)
    {
        const std::string_view comma = columns_.empty() ? "" : ",";
        columns_.append(comma).append("\"").append(key).append("\"");
        values_ += comma;
    }

    void AppendString(std::string_view text)
    {
        values_ += '\'';
        isReplaced_ |= !AppendClean(values_, text, '\'');
        values_ += '\'';
    }

    std::string_view table_;
    std::string columns_;
    std::string values_;
    std::string statement_;
    bool isReplaced_ = false;
};

} // namespace

void WriteSql(const Inputs& inputs, Sink& sink)
{
    sink.Write("BEGIN;\n");
    for (const RecordTable& table : RecordTables())
        sink.Write(TableStatement(table));
    SqlRow row;
    LogRecords::Write(inputs, row, sink);
    sink.Write(AfterTables);
}

} // namespace marvane::tool
