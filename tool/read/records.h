// What a log says, as records: calls, events, items, comms reports, ComParams, marks and problems; with what
// it includes, lines and sessions too.
//
// Every std::string_view and std::span in a record points into the reader's buffers. It is valid only during
// the sink's function that received the record; copy what outlives it.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "line/arrows.h"
#include "tool/read/line_records.h"
#include "tool/read/log_time.h"
#include "tool/read/session_record.h"

namespace marvane::read {

constexpr std::uint32_t UndefinedHandle = 0xFFFFFFFF;
constexpr std::uint32_t UndefinedId = 0xFFFFFFFE;

/// All 29 functions in the order of the function table, and what else has the form of a call.
enum class Function : std::uint8_t
{
    ModuleConnect,
    ModuleDisconnect,
    GetTimestamp,
    IoCtl,
    GetVersion,
    GetStatus,
    GetLastError,
    GetResourceStatus,
    CreateComLogicalLink,
    DestroyComLogicalLink,
    Connect,
    Disconnect,
    LockResource,
    UnlockResource,
    GetComParam,
    SetComParam,
    StartComPrimitive,
    CancelComPrimitive,
    GetEventItem,
    DestroyItem,
    RegisterEventCallback,
    GetObjectId,
    GetModuleIds,
    GetResourceIds,
    GetConflictingResources,
    GetUniqueRespIdTable,
    SetUniqueRespIdTable,
    Construct,
    Destruct,
    LoggerUninitialise, ///< LOGGER_Uninitialise
    CallbackTrap,       ///< PDUCallbackTrap: an event, no call
    Unknown,
};

/// The function of that name, with or without its "PDU".
Function FunctionOf(std::string_view name);
/// "PDULockResource"; "?" for Unknown.
std::string_view FunctionName(Function function);

enum class CallState : std::uint8_t
{
    Returned,  ///< has its exit line
    InFlight,  ///< no exit line: the log ends inside, or the call was left by an exception
    NotLoaded, ///< "Called but library not loaded!"
    Cut,       ///< the exit line is missing after the mark of a full buffer
};

/// One call of the API, or LOGGER_Uninitialise, or (as base of Event) a callback.
struct Call
{
    std::uint64_t Seq = 0;     ///< from 1 through the whole log, in order of the entry lines; 0 for an event
    std::uint32_t Session = 0; ///< Session::Number
    std::uint32_t Thread = 0;
    Function Which = Function::Unknown;
    std::string_view Name;      ///< as the log spells it
    std::string_view Arguments; ///< between the parentheses, line break and tabs of the log included
    bool HasArguments = false;  ///< false with LogFnCalls 1
    CallState State = CallState::InFlight;

    Position Begin; ///< the entry line
    LogTime BeginTime;
    Position End; ///< the exit line; of a cut call the mark; else the last line that is known of it
    LogTime EndTime;
    bool HasCallOut = false; ///< the "    <NAME" line was there
    bool IsCutIn = false;    ///< the mark of a full buffer ended the lines of the arguments
    bool IsCutOut = false;   ///< ... or the lines of the results; true also if the exit line is there

    /// How many calls and callbacks of its thread it is inside, and the innermost of these (0: none; an event
    /// has no number, so this is the innermost call).
    std::uint32_t Depth = 0;
    std::uint64_t InsideCall = 0;

    std::optional<std::uint32_t> Status; ///< number of the exit line
    std::string_view StatusName;         ///< "PDU_STATUS_NOERROR"

    /// From the arguments. An undefined handle has no value.
    std::optional<std::uint32_t> Module;
    std::optional<std::uint32_t> Link;
    std::optional<std::uint32_t> Primitive; ///< argument hCoP; of PDUStartComPrimitive the result

    std::span<const CallLine> LinesIn;  ///< decoded arguments
    std::span<const CallLine> LinesOut; ///< decoded results

    std::int64_t Duration() const { return EndTime - BeginTime; } ///< in ms, as fine as the log
    bool HasFailed() const; ///< a status other than 0 and an empty queue, or any state but Returned
};

/// A callback of the target library into the application ("PDUCallbackTrap").
struct Event : Call
{
    std::uint32_t Type = 0;   ///< 0x801 data, 0x802 data lost
    std::string_view Handler; ///< address of the application's function, as printed
    std::string_view LinkTag; ///< pCLLTag, as printed
    std::string_view ApiTag;  ///< pAPITag, as printed
};

/// Bytes of a dump listing. What the log left out is not in `Shown`.
struct Payload
{
    Bytes Shown;
    std::uint64_t Size = 0; ///< real size, if the log has it; else that of Shown
    bool IsCut = false;     ///< Shown is not all
    bool IsPresent = false; ///< the log has a listing, a size or an address line for it
};

enum class ItemKind : std::uint8_t
{
    Result,
    Status,
    Error,
    Info,
    Unknown
};

/// What a PDUGetEventItem fetched.
struct Item
{
    const Call* Fetch = nullptr; ///< the PDUGetEventItem; its handles are those of the item
    Position At;                 ///< the line "*ppEventItem (...)"
    ItemKind Kind = ItemKind::Unknown;
    std::uint32_t TypeCode = 0;             ///< 0x1300 ...
    std::string_view Address;               ///< of the item, as printed
    std::string_view Tag;                   ///< pCoPTag, as printed
    std::optional<std::uint32_t> Primitive; ///< hCoP
    std::uint32_t Timestamp = 0;            ///< of the target library, in us

    // A result.
    std::optional<std::uint32_t> UniqueResponseId;
    std::optional<std::uint32_t> AcceptanceId;
    std::optional<std::uint32_t> TxDone; ///< TxMsgDoneTimestamp, us
    std::optional<std::uint32_t> Start;  ///< StartMsgTimestamp, us
    bool IsTxDoneValid = false;          ///< by the indicator bits of the time stamp flags
    bool IsStartValid = false;
    Bytes RxFlags;
    Bytes Header;
    Bytes Footer;
    Payload Data;

    // A status, error or information.
    std::uint32_t Code = 0;
    std::string_view CodeName;
    std::optional<std::uint32_t> Extra; ///< ExtraErrorData, ExtraInfoData
};

/// A report of the target library about its traffic.
struct Comms
{
    std::uint32_t Session = 0;
    std::uint32_t Thread = 0;
    Position At;
    LogTime Time;
    Direction Way = Direction::ToTarget; ///< ToTarget: sent
    std::string_view Protocol;           ///< "[DoIP]"; empty where the log has "NULL"
    std::string_view Title;
    std::optional<std::uint32_t> Address;
    Payload Data;                    ///< the first dumped parameter
    std::span<const CallLine> Lines; ///< all parameter lines
    bool IsCut = false;              ///< the mark of a full buffer ended it
    std::uint64_t InsideCall = 0;    ///< the innermost open call of its thread
};

/// A ComParam of a successful PDUGetComParam or PDUSetComParam.
struct Param
{
    const Call* By = nullptr;
    bool IsSet = false;
    std::uint32_t Id = 0;
    std::string_view Name; ///< empty where the log has "[NOT YET READ]"
    std::string_view DataType;
    std::string_view Class;
    std::optional<std::int64_t> Number; ///< the types of numbers
    bool IsField = false;
    Bytes Field; ///< byte and long fields
    bool IsCut = false;
};

/// A line "# NAME - ...".
struct Mark
{
    std::uint32_t Session = 0;
    std::uint32_t Thread = 0;
    Position At;
    LogTime Time;
    std::string_view Text; ///< without "# "
};

enum class ProblemKind : std::uint8_t
{
    Damaged,          ///< lines that belong to nothing
    LastLineCut,      ///< the file ends inside a line
    InFlight,         ///< a call without exit line
    Cut,              ///< the mark of a full buffer
    NotLoaded,        ///< a call that found no target library
    ExitWithoutEntry, ///< the first half is not in the log
    FileChanged,      ///< the file was truncated or vanished while it was read
    FileTrouble,      ///< can't be read, damaged .gz, no log
};

/// What the reader itself finds wrong. What a failed call means is for those above it.
struct Problem
{
    ProblemKind What = ProblemKind::Damaged;
    Position At;
    LogTime Time;
    std::uint32_t Session = 0;
    std::uint32_t Thread = 0;
    std::uint64_t Seq = 0; ///< of the call, if it is about one
    std::string_view Text; ///< the line, or the reason
};

} // namespace marvane::read
