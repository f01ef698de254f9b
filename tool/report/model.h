// What a page knows of a log beside its lines: tables whose rows refer to each other by their numbers.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tool/input/time_range.h"
#include "tool/read/exchange.h"
#include "tool/read/records.h"
#include "tool/report/string_table.h"

namespace marvane::tool::report {

/// In place of a number that does not exist.
constexpr std::int64_t None = -1;

enum class RecordKind : std::uint8_t
{
    Call,
    Callback,
    Comms,
    Mark
};

/// Flags of a record.
enum : std::uint32_t
{
    RecordFailed = 1,
    RecordCut = 2,
    RecordInFlight = 4,
    RecordNotLoaded = 8,
    RecordRedacted = 16,
    RecordSent = 32, ///< of a comms report
    RecordReceived = 64,
    RecordQueueEmpty = 128,
    RecordEndsOutside = 256 ///< its last line is not in the page
};

/// A call, a callback, a comms report or a mark.
struct Record
{
    RecordKind Kind = RecordKind::Call;
    std::uint64_t Line = 0;     ///< place of its first line
    std::uint64_t LastLine = 0; ///< place of its last line
    std::size_t Thread = 0;
    std::uint32_t Name = 0;
    read::LogTime Time;
    std::int64_t Duration = None; ///< ms
    std::int64_t Status = None;   ///< number in the table of statuses
    std::uint32_t Flags = 0;
    std::uint32_t Depth = 0;
    std::int64_t Link = None;
    std::uint64_t Seq = 0; ///< of a call
};

/// Flags of an exchange.
enum : std::uint32_t
{
    ExchangeByLog = 1, ///< its latency is by the log's clock
    ExchangeQuiet = 2,
    ExchangeCut = 4,
    ExchangeRedacted = 8,
    ExchangeIsRequest = 16
};

/// Rows of `Responses` and `Answers` that belong to an exchange.
struct Rows
{
    std::size_t First = 0;
    std::size_t Count = 0;
};

struct ExchangeRow
{
    std::uint64_t Seq = 0;
    std::int64_t Link = None;
    std::int64_t Primitive = None;
    std::uint32_t Request = 0;
    std::int64_t Size = None;
    std::uint32_t Text = 0;
    std::uint32_t Words = 0;
    std::uint32_t Detail = 0;
    std::uint32_t Service = 0;
    std::int64_t Sid = None;
    read::Outcome Outcome = read::Outcome::Open;
    std::int64_t Latency = None; ///< us
    std::int64_t End = None;     ///< ms
    std::uint32_t Flags = 0;
    std::int64_t Sent = None; ///< ms
    Rows Responses;
    Rows Answers;
};

/// How something took its time; none if it is not known.
struct After
{
    std::int64_t Us = None;
    bool IsByLog = false;

    After() = default;
    explicit After(const std::optional<read::Latency>& latency)
        : Us(latency ? static_cast<std::int64_t>(latency->Us) : None), IsByLog(latency && latency->IsByLog)
    {
    }
};

struct Response
{
    char Mark = ' ';
    std::uint32_t Text = 0;
    After Took;
};

enum class AnswerKind : std::uint8_t
{
    Good, ///< the first three are those of read::AnswerKind
    Refusal,
    Pending,
    Error
};

struct AnswerRow
{
    AnswerKind Kind = AnswerKind::Good;
    read::LogTime Time;
    std::int64_t Line = None;
    std::uint32_t Text = 0;
    std::uint32_t Hex = 0;
    std::uint64_t Size = 0;
    std::int64_t From = None;
    After Took;
};

enum class RemarkKind : std::uint8_t
{
    ParamChanged,
    StateChanged,
    LateAnswer
};

/// What is said between the requests.
struct Remark
{
    RemarkKind Kind = RemarkKind::ParamChanged;
    std::int64_t Line = None;
    read::LogTime Time;
    std::int64_t Link = None;
    char Mark = ' ';
    std::uint32_t Text = 0;
    std::uint64_t Seq = 0; ///< of its exchange; 0 if it has none
};

struct ThreadRow
{
    std::uint32_t Id = 0;
    std::uint32_t Session = 0;
};

struct LinkRow
{
    read::Link What;
    std::optional<read::LogTime> Connected{};
    std::optional<read::LogTime> Disconnected{};
};

struct Status
{
    std::string Name;
    std::uint32_t Code = 0;
};

struct FileRow
{
    std::string Name;
    std::uint64_t First = 1; ///< line number of its first line
    std::uint64_t Lines = 0;
    std::optional<std::uint64_t> Bytes{}; ///< if the page has the log itself
};

struct Model
{
    std::vector<FileRow> Files;
    read::LogTime Begin; ///< all times are shown as their distance to it
    TimeRange Part;
    bool IsRedacted = false;
    std::vector<std::string_view> RedactedKinds;
    std::uint64_t RedactedLines = 0;
    std::string Summary; ///< JSON
    std::string Errors;  ///< JSON, an array
    std::string Normal;  ///< JSON
    std::vector<std::string> Hints;
    std::vector<ThreadRow> Threads;
    std::vector<LinkRow> Links;
    std::vector<Status> Statuses;
    StringTable Strings;
    std::vector<Record> Records;
    std::vector<ExchangeRow> Exchanges;
    std::vector<Response> Responses;
    std::vector<AnswerRow> Answers;
    std::vector<Remark> Remarks;
};

/// The model as compressed JSON, schema "marvane-report/1". Sorts the tables.
std::string PackedModel(Model& model);

} // namespace marvane::tool::report
