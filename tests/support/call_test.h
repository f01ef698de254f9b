// The kit for tests of single calls: what a call logs at each level of logging, and that it reaches the
// target library and comes back unchanged.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/forwarded.h"
#include "tests/support/session.h"

namespace marvane::testing {

/// Values of the settings that decide which lines of a call are written.
struct Levels
{
    UNUM32 Calls = 2;     ///< LogFnCalls
    UNUM32 Arguments = 1; ///< LogFnDecodeArgs
    UNUM32 Results = 1;   ///< LogFnDecodeRsps
    UNUM32 Enabled = 1;   ///< LogEnabled
    UNUM32 NewFile = 0;   ///< LogNewFileCfg

    bool Active() const { return Enabled == 1 || NewFile == 1; }
    bool DecodesArguments() const { return Calls >= 2 && Arguments != 0; }
    bool DecodesResults() const { return Calls >= 2 && Results != 0; }
};

/// The decoded lines that a call writes at some levels, each with its "{stamp} " and its line end.
using LinesAt = std::function<std::string(const Levels&)>;

/// Lines that are written if arguments are decoded: at LogFnDecodeArgs 1, and others from 2 on.
LinesAt ArgumentLines(std::string atOne, std::string atTwo);
LinesAt ArgumentLines(const std::string& lines);
/// Lines that are written if results are decoded: at LogFnDecodeRsps 1, and others from 2 on.
LinesAt ResultLines(std::string atOne, std::string atTwo);
LinesAt ResultLines(const std::string& lines);
/// Lines that are written at all levels.
LinesAt Always(const std::string& lines);
LinesAt Join(LinesAt first, LinesAt second);
/// The lines, but none where LogNewFileCfg alone keeps logging active.
LinesAt OnlyUnderLogEnabled(LinesAt lines);

/// A call, what the target does with it, and all that it may log.
struct LoggedCall
{
    std::string Name;
    std::function<T_PDU_ERROR()> Call;
    std::vector<std::uint64_t> Seen = {};                   ///< arguments that the target must receive
    std::function<void(const FakeCall&)> Effect = {};       ///< what the target does, besides its status
    T_PDU_ERROR Status = PDU_STATUS_NOERROR;                ///< what the target returns
    std::string StatusText = "PDU_STATUS_NOERROR (0x0000)"; ///< in the exit line
    std::string Arguments = {};                             ///< of the entry line, in their parentheses
    LinesAt Before = [](const Levels&) { return ""; };      ///< decoded before the call is forwarded
    LinesAt After = [](const Levels&) { return ""; };       ///< decoded after it
};

/// The whole text that the call writes at these levels, without the closing line that LogCallOuts adds.
std::string ExpectedText(const LoggedCall& call, const Levels& levels = {});

/// One session, which the test starts as often as it likes.
class CallTest : public ::testing::Test
{
protected:
    /// Ends the session and starts it with these changes to the configuration. The target then answers every
    /// call with success and has recorded none.
    void Start(Changes changes);
    void Start(const Levels& levels);

    /// Applies other settings without ending the session. Learned names and the target's answers stay.
    void Reconfigure(Changes changes);
    void Reconfigure(const Levels& levels);

    const CPduDll& Api() const { return session.Api(); }
    Target& Fake() { return session.Fake(); }
    /// What an action adds to the log, timestamps replaced by "{stamp}".
    std::string Logged(const std::function<void()>& action) const { return session.Logged(action); }

    /// The target answers this function with a status from now on, after an optional effect, and all others
    /// with success.
    void Answer(const std::string& function, T_PDU_ERROR status,
                std::function<void(const FakeCall&)> effect = nullptr);
    /// The target answers every function with this status from now on.
    void AnswerAll(T_PDU_ERROR status);

    /// The application asks for an object's id, and the target answers with this id and status. Other answers
    /// stay.
    void AskObjectId(T_PDU_OBJT type, const std::string& name, UNUM32 id,
                     T_PDU_ERROR status = PDU_STATUS_NOERROR);

    /// Expects that the target received exactly this call since it was last asked.
    void ExpectSeen(const std::string& name, const std::vector<std::uint64_t>& arguments);

    /// Makes each call in a new session at all combinations of the levels 0 to 2 with LogEnabled 1, and at
    /// some with logging active by LogNewFileCfg alone, and off; at fewer where starting a session is
    /// expensive. Expects its whole text, its status, and that the target received its arguments.
    void ExpectAtAllLevels(const std::vector<LoggedCall>& calls);

    Session session;

private:
    void ExpectAt(const Levels& levels, const LoggedCall& call);
};

/// Call tests whose session runs from the beginning, with arguments and results decoded.
class RunningCallTest : public CallTest
{
protected:
    RunningCallTest() { Start(Levels{}); }

    /// Has the closing lines of call-outs logged too.
    void LogCallOuts()
    {
        Reconfigure({{"LogFnDecodeArgs", "1"}, {"LogFnDecodeRsps", "1"}, {"LogCallOuts", "1"}});
    }
};

} // namespace marvane::testing
