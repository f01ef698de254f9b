// The frame of a call: what every exported function does around its forward to the target library.
//
// A call differs from another in five places only, and fills in a form with them. The frame is one ordinary
// function, compiled once; a frame that is compiled into each of the 29 was 4 to 8 ns a call faster. The
// form's parts are non-owning references to lambdas of the exported function. Where they capture by value,
// the parameters of the call need no address, and a call with logging off takes ten instructions less.
#pragma once

#include <tuple>

#include "logger/base/function_ref.h"
#include "logger/decode/decode.h"
#include "logger/log/phase_text.h"
#include "logger/target/target_library.h"
#include "pdu/pdu_api.h"
#include "platform/in_flight.h"

namespace marvane {

/// The argument text of a call for CallForm::arguments: a format with copies of its values.
template <class Format, class... Values> class ArgumentText
{
public:
    explicit ArgumentText(const Values&... values) : values_(values...) {}

    void operator()(PhaseText& text) const
    {
        std::apply([&](const Values&... values) { text.Add(Format(), values...); }, values_);
    }

private:
    std::tuple<Values...> values_;
};

/// "(name=value, ...)", formatted only if the call is logged with its arguments. Values that cost something
/// to find, such as names, belong in a lambda instead: these here are evaluated with logging off too.
template <FormatLiteral Literal, class... Values>
requires FormatOf<LogFormat<Literal>, Values...> ArgumentText<LogFormat<Literal>, Values...>
Arguments(LogFormat<Literal>, Values... values)
{
    return ArgumentText<LogFormat<Literal>, Values...>(values...);
}

/// What is particular to an exported function, in the order in which the parts run. Parts that are left out
/// do nothing. The form refers to temporaries of the expression that builds it, so it must not outlive that.
struct CallForm
{
    std::string_view name;
    /// The argument text, if LogFnCalls is 2 or more. Without it: "()".
    FunctionRef<void(PhaseText&)> arguments = {};
    /// Decoded arguments, outside the gate of the entry line; runs with logging off too.
    FunctionRef<void(PhaseText&)> before = {};
    /// The call into the target library. No lock is held.
    FunctionRef<T_PDU_ERROR(const CPduDll&)> forward = {};
    /// Decoded results and what is learned from them, before the exit line; runs with logging off too.
    FunctionRef<void(PhaseText&, T_PDU_ERROR)> after = {};
    /// Replaces the rotation check.
    FunctionRef<void(PhaseText&)> finish = {};
};

/// Logs a call, forwards it and returns the target library's status, or PDU_ERR_PDUAPI_NOT_CONSTRUCTED if
/// there is no target library. Exceptions of the target library pass through, and so does the error state
/// that it leaves (errno, GetLastError); the target library finds the one that the application left.
T_PDU_ERROR LogWholeCall(const CallForm& call);

/// True if the frame of a call without hooks may have something to do now: to log, or to change the file.
inline bool FrameHasWork()
{
    return LoggingActive() || Setting(NumericKey::LogFileMaxSize) != 0;
}

/// Does what follows the forward of a call without hooks before whose forward there was no work.
void LogExitOnly(std::string_view name, T_PDU_ERROR status);

/// The same as LogWholeCall, inlined for the short way: with logging off, a call without hooks is its forward
/// and nothing else.
inline T_PDU_ERROR LogCall(const CallForm& call)
{
    const bool hasHooks = call.before || call.after || call.finish;
    if (!hasHooks && !FrameHasWork()) {
        const platform::InFlight inside;
        if (const CPduDll* const target = TargetLibrary()) {
            const T_PDU_ERROR status = call.forward(*target);
            // A PDUConstruct meanwhile, inside this call or on another thread, may have turned logging on.
            if (FrameHasWork())
                LogExitOnly(call.name, status);
            return status;
        }
    }
    // A copy: so the short way need not store the form itself.
    return LogWholeCall(CallForm(call));
}

// The phases, for functions that use them in an order of their own.

/// Adds "+ name", without its line break.
void LogEntry(PhaseText& text, std::string_view name);
/// Adds "- name<status (number)>" and a line break.
void LogExit(PhaseText& text, std::string_view name, T_PDU_ERROR status);
/// Writes the line of a call that found no target library.
void LogNotLoaded(PhaseText& text, std::string_view name);
/// Writes the phase before the forward, if the logger is up.
void CommitEntry(PhaseText& text);
/// Begins the phase after the forward: empty text, new time, and the line "    <name" if LogCallOuts is 1.
void CloseCallOut(PhaseText& text, std::string_view name);

} // namespace marvane
