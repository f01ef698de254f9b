// The frame of a call: arguments out, forward, results back. Every exported function is one use of it.
#pragma once

#include <tuple>

#include "logger/base/function_ref.h"
#include "logger/decode/decode.h"
#include "logger/log/phase_text.h"
#include "logger/target/target_library.h"
#include "pdu/pdu_api.h"
#include "platform/in_flight.h"

namespace marvane {

/// The argument text of a call: a format with its values, for CallForm::arguments.
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

/// "(name=value, ...)": formatted when the call is logged with its arguments.
template <FormatLiteral Literal, class... Values>
requires FormatOf<LogFormat<Literal>, Values...> ArgumentText<LogFormat<Literal>, Values...>
Arguments(LogFormat<Literal>, Values... values)
{
    return ArgumentText<LogFormat<Literal>, Values...>(values...);
}

/// What is particular to an exported function, in the order in which the parts run. Parts left out do
/// nothing. The form and its parts live as long as the call.
struct CallForm
{
    std::string_view name;
    /// The argument text, if LogFnCalls is 2 or more. Without it: "()".
    FunctionRef<void(PhaseText&)> arguments = {};
    /// Decoded arguments, outside the gate of the entry line; runs with logging off too.
    FunctionRef<void(PhaseText&)> before = {};
    /// The call into the target library. No lock is held.
    FunctionRef<T_PDU_ERROR(const CPduDll&)> forward = {};
    /// Decoded results and what is learned from them, ahead of the exit line; runs with logging off too.
    FunctionRef<void(PhaseText&, T_PDU_ERROR)> after = {};
    /// In place of the rotation check.
    FunctionRef<void(PhaseText&)> finish = {};
};

/// Logs a call, forwards it and returns the target library's status, or PDU_ERR_PDUAPI_NOT_CONSTRUCTED if
/// there is no target library. Exceptions of the target library pass through, and so does the error state
/// that it leaves (errno, GetLastError); the target library finds the one that the application left.
T_PDU_ERROR LogWholeCall(const CallForm& call);

/// The same. With logging off, a call without hooks is its forward and nothing else; where this is inlined,
/// the compiler sees that and builds no form.
inline T_PDU_ERROR LogCall(const CallForm& call)
{
    const bool hasHooks = call.before || call.after || call.finish;
    if (!hasHooks && !LoggingActive() && Setting(NumericKey::LogFileMaxSize) == 0) {
        const platform::InFlight inside;
        if (const CPduDll* const target = TargetLibrary())
            return call.forward(*target);
    }
    // A copy, so that the form itself need not stand in memory on the short way.
    return LogWholeCall(CallForm(call));
}

// The phases, for the functions that put them together in an order of their own.

/// "+ name", without its line end.
void LogEntry(PhaseText& text, std::string_view name);
/// "- name<status (number)>".
void LogExit(PhaseText& text, std::string_view name, T_PDU_ERROR status);
/// The line for a call that found no target library, written at once.
void LogNotLoaded(PhaseText& text, std::string_view name);
/// Writes what was composed before the call-out.
void CommitEntry(PhaseText& text);
/// Begins the phase after a call-out: empty text, new time, and the closing line if LogCallOuts is 1.
void CloseCallOut(PhaseText& text, std::string_view name);

} // namespace marvane
