// What one call writes under each setting of the gates that its lines stand behind.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/forwarded.h"
#include "tests/support/session.h"

namespace marvane::testing {

/// Values of the settings that decide which lines of a call are written.
struct Gates
{
    UNUM32 Calls = 2;     ///< LogFnCalls
    UNUM32 Arguments = 1; ///< LogFnDecodeArgs
    UNUM32 Results = 1;   ///< LogFnDecodeRsps
    UNUM32 Enabled = 1;   ///< LogEnabled; if it is not 1, LogNewFileCfg is, so that logging is active

    bool ArgumentsOpen() const { return Calls >= 2 && Arguments != 0; }
    bool ResultsOpen() const { return Calls >= 2 && Results != 0; }
};

/// A call's text in its parts; each line with its "{stamp} " and its line end.
struct CallText
{
    std::string Function;
    std::string Arguments;     ///< the argument list in its brackets
    std::string ArgumentLines; ///< lines behind the argument gate
    std::string ResultLines;   ///< lines behind the result gate
    std::string Status = "PDU_STATUS_NOERROR (0x0000)";
};

/// The text under some gates.
std::string ExpectedText(const CallText& text, const Gates& gates);

/// The text with these decoded lines before the call-out and behind it, whatever the gates.
std::string ExpectedText(const CallText& text, const Gates& gates, const std::string& before,
                         const std::string& behind);

/// Puts other settings in force without ending the session. What the target answers stays for the next call.
void Reconfigure(Session& session, Changes changes);
void SetGates(Session& session, const Gates& gates);

/// Expects a call's text under all levels of its gates from 0 to 2, and with logging active through
/// LogNewFileCfg while LogEnabled is 0 or 2.
void ExpectAtAllGates(Session& session, const std::function<void()>& call,
                      const std::function<std::string(const Gates&)>& expected);
void ExpectAtAllGates(Session& session, const std::function<void()>& call, const CallText& text);

/// Has the application ask for an object by name, and the target know it. What the target answers otherwise
/// stays for the next call.
void Learn(Session& session, T_PDU_OBJT type, const std::string& name, UNUM32 id);

/// Tests of calls in a session whose gates are open at the beginning.
class GatedCalls : public ::testing::Test
{
protected:
    GatedCalls() { SetGates(session_, {}); }

    const CPduDll& Api() { return session_.Api(); }
    Target& Fake() { return session_.Fake(); }
    std::string Logged(const std::function<void()>& call) { return session_.Logged(call); }

    /// Lets the target return a status and do nothing else.
    void AnswerWith(T_PDU_ERROR status)
    {
        Fake().Answer = [status](const FakeCall&) { return status; };
    }

    /// Has the closing lines of call-outs logged, with open gates.
    void LogCallOuts()
    {
        Reconfigure(session_, {{"LogFnDecodeArgs", "1"}, {"LogFnDecodeRsps", "1"}, {"LogCallOuts", "1"}});
    }

    void ExpectSeen(const std::string& function, const std::vector<std::uint64_t>& arguments)
    {
        ExpectForwarded(Fake(), function, arguments);
    }

    Session session_;
};

} // namespace marvane::testing
