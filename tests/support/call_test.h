// Tests of single calls: what a call logs under each setting, and that it passes unchanged under all of them.
#pragma once

#include <array>

#include <gtest/gtest.h>

#include "tests/support/forwarded.h"
#include "tests/support/session.h"

namespace marvane::testing {

/// A call, what the target makes of it, and all that it may log.
struct LoggedCall
{
    std::string Name;
    std::function<T_PDU_ERROR()> Call;
    std::vector<std::uint64_t> Seen;                     ///< arguments that the target has to see
    std::function<void(const FakeCall&)> Effect;         ///< what the target does; may be none
    T_PDU_ERROR Status;                                  ///< what the target returns
    std::string StatusText;                              ///< as the exit line has it
    std::string Arguments;                               ///< of the entry line
    std::array<std::string, 3> DecodedArguments = {};    ///< by LogFnDecodeArgs
    std::array<std::string, 3> DecodedResults = {};      ///< by LogFnDecodeRsps
    std::array<std::string, 3> ArgumentsAtCallsOne = {}; ///< decoded although LogFnCalls is 1
    bool DecodesUnderLogEnabledOnly = false;             ///< its arguments, that is
};

/// One session, started by the test and as often as it likes.
class CallTest : public ::testing::Test
{
protected:
    /// Stops what runs and starts under these changes; the target answers all with success and has seen
    /// nothing.
    void Start(Changes changes)
    {
        session.Fake().Answer = nullptr;
        session.Api().PDUDestruct();
        session.Configure(changes);
        EXPECT_EQ(session.Construct(), PDU_STATUS_NOERROR);
        session.Fake().TakeCalls();
    }

    const CPduDll& Api() const { return session.Api(); }
    std::string Logged(const std::function<void()>& action) const { return session.Logged(action); }

    /// From now on the target answers this function with a status, all others with success.
    void Answer(const std::string& function, T_PDU_ERROR status,
                std::function<void(const FakeCall&)> effect = nullptr)
    {
        session.Fake().Answer = [=](const FakeCall& call) {
            if (function != call.Function)
                return PDU_STATUS_NOERROR;
            if (effect)
                effect(call);
            return status;
        };
    }

    /// The application asks for an object's id, and the target knows it or fails.
    void AskObjectId(T_PDU_OBJT type, std::string name, UNUM32 id, T_PDU_ERROR status = PDU_STATUS_NOERROR)
    {
        Answer("PDUGetObjectId", status, [id](const FakeCall& call) { At<UNUM32>(call.Arguments[2]) = id; });
        UNUM32 place = 0;
        EXPECT_EQ(Api().PDUGetObjectId(type, name.data(), &place), status);
        EXPECT_EQ(place, id);
        session.Fake().TakeCalls();
        session.Fake().Answer = nullptr;
    }

    void ExpectSeen(const std::string& name, const std::vector<std::uint64_t>& arguments)
    {
        ExpectForwarded(session.Fake(), name, arguments);
    }

    /// Makes each call under every combination of LogFnCalls, LogFnDecodeArgs and LogFnDecodeRsps with
    /// logging on by LogEnabled, and under three of them with it on by LogNewFileCfg alone, and off. Expects
    /// its text, and that it passes unchanged.
    void ExpectUnderAllSettings(const std::vector<LoggedCall>& calls)
    {
        for (std::size_t levels = 0; levels < 27; ++levels)
            ExpectUnder(calls, "1", "0", levels / 9, levels / 3 % 3, levels % 3);
        for (const std::string newFile : {"0", "1"})
            for (std::size_t level = 0; level < 3; ++level)
                ExpectUnder(calls, "0", newFile, level, level, level);
    }

    Session session;

private:
    void ExpectUnder(const std::vector<LoggedCall>& calls, const std::string& enabled,
                     const std::string& newFile, std::size_t fnCalls, std::size_t args, std::size_t rsps)
    {
        Start({{"LogEnabled", enabled},
               {"LogNewFileCfg", newFile},
               {"LogFnCalls", std::to_string(fnCalls)},
               {"LogFnDecodeArgs", std::to_string(args)},
               {"LogFnDecodeRsps", std::to_string(rsps)}});
        for (const LoggedCall& call : calls) {
            SCOPED_TRACE(call.Name + ", LogEnabled " + enabled + ", LogNewFileCfg " + newFile + ", levels " +
                         std::to_string(fnCalls) + std::to_string(args) + std::to_string(rsps));
            const bool active = enabled == "1" || newFile == "1";
            const bool decodes = enabled == "1" || !call.DecodesUnderLogEnabledOnly;
            Answer(call.Name, call.Status, call.Effect);
            EXPECT_EQ(Logged([&] { EXPECT_EQ(call.Call(), call.Status); }),
                      active ? Text(call, fnCalls, decodes ? args : 0, rsps) : "");
            ExpectSeen(call.Name, call.Seen);
        }
    }

    static std::string Text(const LoggedCall& call, std::size_t fnCalls, std::size_t args, std::size_t rsps)
    {
        const std::string exit = "{stamp} - " + call.Name + "<" + call.StatusText + ">\n";
        if (fnCalls == 0)
            return "";
        if (fnCalls == 1)
            return "{stamp} + " + call.Name + "\n" + call.ArgumentsAtCallsOne[args] + exit;
        return "{stamp} + " + call.Name + call.Arguments + "\n" + call.DecodedArguments[args] +
               call.DecodedResults[rsps] + exit;
    }
};

} // namespace marvane::testing
