// A ComPrimitive and what became of it.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tool/read/links.h"
#include "tool/read/records.h"

namespace marvane::read {

enum class Outcome : std::uint8_t
{
    Answered,  ///< at least one good answer before its end
    Refused,   ///< negative answers only, and no time-out after one whose code the log lacks
    Silent,    ///< an answer was wanted, and none came before its end
    Cancelled, ///< by PDUCancelComPrimitive, with answers or without
    Sent,      ///< no answer was wanted
    Open,      ///< the log does not show its end
    // Of requests whose PDUStartComPrimitive did not succeed: nothing comes of them.
    NotStarted,   ///< it returned an error
    NeverReturned ///< it was entered and never returned: whether the request was sent is unknown
};
constexpr std::size_t OutcomeCount = 8;

/// "answered", "never_returned", ...
std::string_view OutcomeName(Outcome outcome);

/// How long something took.
struct Latency
{
    std::uint64_t Us = 0;
    bool IsByLog = false; ///< by the log's clock, from call to fetch; else by the library's
};

enum class AnswerKind : std::uint8_t
{
    Good,
    Refusal, ///< 7F SID NRC, or the acceptance id of a negative expected response: then perhaps pending
    Pending  ///< 7F SID 78
};

struct Answer
{
    AnswerKind Kind = AnswerKind::Good;
    std::vector<std::uint8_t> Data; ///< as far as the log shows it
    std::uint64_t Size = 0;
    bool IsCut = false;                ///< Data is not all
    std::optional<std::uint32_t> From; ///< unique response identifier
    std::optional<std::uint8_t> Nrc;   ///< of a refusal, if its bytes are shown
    Latency After;
    /// When it began (else when it was received), in us after the request's EXECUTING; modulo 2^32.
    std::optional<std::uint32_t> SinceExecuting;
    Position At;
    LogTime Time; ///< when it was fetched
};

/// An error item that was fetched.
struct RequestError
{
    std::uint32_t Code = 0;
    std::string Name;
    std::optional<std::uint32_t> Extra; ///< ExtraErrorData
    Latency After;
    std::optional<std::uint32_t> SinceExecuting; ///< as in Answer
    Position At;
    LogTime Time;
};

struct Exchange
{
    std::uint64_t Seq = 0; ///< of the PDUStartComPrimitive
    std::uint32_t Session = 0;
    std::uint32_t Thread = 0;
    Position At;
    LogTime Time;                           ///< of the call's entry
    std::shared_ptr<const Link> On;         ///< never null
    bool HasHandles = false;                ///< false with LogFnCalls 1: the link is unknown
    std::optional<std::uint32_t> Primitive; ///< hCoP; unknown without decoded results

    std::uint32_t Type = 0; ///< PDU_COPT_...; 0 if unknown
    std::string TypeName;   ///< as the log spells it
    std::vector<std::uint8_t> Request;
    std::uint64_t RequestSize = 0;
    bool IsRequestKnown = false; ///< its bytes, or that it has none
    bool IsRequestCut = false;
    std::optional<std::int32_t> SendCycles;    ///< -1: until it is cancelled
    std::optional<std::int32_t> ReceiveCycles; ///< -1, -2: any number of answers
    bool IsSuppressed = false;                 ///< the request itself forbids a positive answer

    Outcome Result = Outcome::Open;
    std::uint32_t StartError = 0; ///< of NotStarted: the status of its PDUStartComPrimitive
    std::string StartErrorName;   ///< as the log spells it
    /// The first answers in their order: the first pending one, then others as they came. At most
    /// MostAnswers, the deciding one among them.
    std::vector<Answer> Answers;
    static constexpr std::size_t MostAnswers = 32;
    std::uint64_t AnswerCount = 0;  ///< of all results, pending ones too
    std::uint64_t PendingCount = 0; ///< of 7F xx 78
    LogTime LastAnswerTime;

    std::uint32_t ErrorCode = 0; ///< of the first error item; 0 if there was none
    std::string ErrorName;
    std::optional<std::uint32_t> ExtraError; ///< its ExtraErrorData
    std::optional<Latency> ErrorAfter;
    Position ErrorAt;
    LogTime ErrorTime; ///< when it was fetched

    bool IsEnded = false;         ///< its last status was fetched
    LogTime EndTime;              ///< of that; else of the last that is known of it
    std::optional<Latency> Whole; ///< until its last status

    /// By a comms report with the same bytes: how long after the call the request went out.
    std::optional<std::int64_t> SentAfterMs;
    Position SentAt;
    /// By the first result that says so: how long after EXECUTING the request had been sent, in us.
    std::optional<std::uint32_t> SentSinceExecuting;

    bool IsRedacted = false; ///< never by the reader: set by those who know that its bytes were replaced

    /// The answer that decided the outcome: the first good one, else the first refusal; null if there is
    /// none.
    const Answer* Deciding() const;
    /// Until the first answer that is not pending.
    std::optional<Latency> FirstAnswer() const;
};

/// A result that was fetched after the end of its ComPrimitive.
struct LateAnswer
{
    std::uint64_t Seq = 0; ///< of the PDUStartComPrimitive
    std::uint32_t Session = 0;
    Position RequestAt;
    LogTime RequestTime;
    std::shared_ptr<const Link> On;
    std::uint32_t Primitive = 0;
    std::vector<std::uint8_t> Request;
    Answer What;
    std::int64_t AfterEndMs = 0;
};

} // namespace marvane::read
