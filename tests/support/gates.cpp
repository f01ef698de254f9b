#include "tests/support/gates.h"

#include <utility>

#include <gtest/gtest.h>

namespace marvane::testing {

namespace {

/// All levels from 0 to 2 with LogEnabled 1; with another LogEnabled, where LogNewFileCfg keeps logging
/// active, the decoded lines' gates open and shut.
std::vector<Gates> AllGates()
{
    std::vector<Gates> all;
    for (UNUM32 calls = 0; calls < 3; ++calls)
        for (UNUM32 arguments = 0; arguments < 3; ++arguments)
            for (UNUM32 results = 0; results < 3; ++results)
                all.push_back({calls, arguments, results, 1});
    for (const UNUM32 enabled : {0u, 2u})
        for (UNUM32 arguments = 0; arguments < 2; ++arguments)
            for (UNUM32 results = 0; results < 2; ++results)
                all.push_back({2, arguments, results, enabled});
    return all;
}

} // namespace

std::string ExpectedText(const CallText& text, const Gates& gates, const std::string& before,
                         const std::string& behind)
{
    if (gates.Calls == 0)
        return before; // what stands behind the call-out is lost without an exit line
    const std::string arguments = gates.Calls >= 2 ? text.Arguments : "";
    return "{stamp} + " + text.Function + arguments + "\n" + before + behind + "{stamp} - " + text.Function +
           "<" + text.Status + ">\n";
}

std::string ExpectedText(const CallText& text, const Gates& gates)
{
    return ExpectedText(text, gates, gates.ArgumentsOpen() ? text.ArgumentLines : "",
                        gates.ResultsOpen() ? text.ResultLines : "");
}

void Reconfigure(Session& session, Changes changes)
{
    session.Configure(changes);
    auto answer = std::exchange(session.Fake().Answer, nullptr);
    session.Construct();
    session.Fake().Answer = std::move(answer);
    session.Fake().TakeCalls();
}

void SetGates(Session& session, const Gates& gates)
{
    Reconfigure(session, {{"LogEnabled", std::to_string(gates.Enabled)},
                          {"LogNewFileCfg", gates.Enabled == 1 ? "0" : "1"},
                          {"LogFnCalls", std::to_string(gates.Calls)},
                          {"LogFnDecodeArgs", std::to_string(gates.Arguments)},
                          {"LogFnDecodeRsps", std::to_string(gates.Results)}});
}

void ExpectAtAllGates(Session& session, const std::function<void()>& call,
                      const std::function<std::string(const Gates&)>& expected)
{
    for (const Gates& gates : AllGates()) {
        SetGates(session, gates);
        EXPECT_EQ(session.Logged(call), expected(gates))
            << "LogEnabled " << gates.Enabled << ", LogFnCalls " << gates.Calls << ", LogFnDecodeArgs "
            << gates.Arguments << ", LogFnDecodeRsps " << gates.Results;
    }
}

void ExpectAtAllGates(Session& session, const std::function<void()>& call, const CallText& text)
{
    ExpectAtAllGates(session, call, [&](const Gates& gates) { return ExpectedText(text, gates); });
}

void Learn(Session& session, T_PDU_OBJT type, const std::string& name, UNUM32 id)
{
    auto answer = std::exchange(session.Fake().Answer, [id](const FakeCall& call) {
        At<UNUM32>(call.Arguments[2]) = id;
        return PDU_STATUS_NOERROR;
    });
    std::string asked = name;
    UNUM32 place = 0;
    EXPECT_EQ(session.Api().PDUGetObjectId(type, asked.data(), &place), PDU_STATUS_NOERROR);
    EXPECT_EQ(place, id);
    session.Fake().Answer = std::move(answer);
    session.Fake().TakeCalls();
}

} // namespace marvane::testing
