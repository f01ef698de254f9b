#include "tests/support/call_test.h"

#include <utility>

#include "platform/files.h"

namespace marvane::testing {

namespace {

/// The same for systems where starting a session takes some 20 ms (Wine): each level of each setting, logging
/// active by LogNewFileCfg alone, and off. What is left out differs in nothing that belongs to a system.
std::vector<Levels> SomeLevels()
{
    return {{.Calls = 0, .Arguments = 1, .Results = 2},
            {.Calls = 1, .Arguments = 2, .Results = 1},
            {.Calls = 2, .Arguments = 0, .Results = 1},
            {.Calls = 2, .Arguments = 1, .Results = 0},
            {.Calls = 2, .Arguments = 2, .Results = 2},
            {.Calls = 2, .Arguments = 1, .Results = 1, .Enabled = 0, .NewFile = 1},
            {.Calls = 2, .Arguments = 1, .Results = 1, .Enabled = 0, .NewFile = 0}};
}

/// Every combination of the levels 0 to 2 with LogEnabled 1; LogNewFileCfg alone, at a selection; logging
/// off.
std::vector<Levels> AllLevels()
{
    if (platform::PathSeparator != '/')
        return SomeLevels();
    std::vector<Levels> all;
    for (UNUM32 calls = 0; calls < 3; ++calls)
        for (UNUM32 arguments = 0; arguments < 3; ++arguments)
            for (UNUM32 results = 0; results < 3; ++results)
                all.push_back({.Calls = calls, .Arguments = arguments, .Results = results});
    for (const UNUM32 enabled : {0u, 2u})
        for (UNUM32 arguments = 0; arguments < 2; ++arguments)
            for (UNUM32 results = 0; results < 2; ++results)
                all.push_back({.Calls = 2,
                               .Arguments = arguments,
                               .Results = results,
                               .Enabled = enabled,
                               .NewFile = 1});
    for (const UNUM32 newFile : {0u, 1u})
        for (UNUM32 level = 0; level < 3; ++level)
            all.push_back(
                {.Calls = level, .Arguments = level, .Results = level, .Enabled = 0, .NewFile = newFile});
    return all;
}

/// The lines at level 1 and from level 2 on of a setting that decodes.
std::string AtLevel(UNUM32 level, const std::string& atOne, const std::string& atTwo)
{
    return level >= 2 ? atTwo : level == 1 ? atOne : "";
}

/// Passes the levels on as changes to a configuration.
void With(const Levels& levels, const std::function<void(Changes)>& apply)
{
    apply({{"LogEnabled", std::to_string(levels.Enabled)},
           {"LogNewFileCfg", std::to_string(levels.NewFile)},
           {"LogFnCalls", std::to_string(levels.Calls)},
           {"LogFnDecodeArgs", std::to_string(levels.Arguments)},
           {"LogFnDecodeRsps", std::to_string(levels.Results)}});
}

} // namespace

LinesAt ArgumentLines(std::string atOne, std::string atTwo)
{
    return [=](const Levels& levels) {
        return levels.Calls >= 2 ? AtLevel(levels.Arguments, atOne, atTwo) : "";
    };
}

LinesAt ArgumentLines(const std::string& lines)
{
    return ArgumentLines(lines, lines);
}

LinesAt ResultLines(std::string atOne, std::string atTwo)
{
    return
        [=](const Levels& levels) { return levels.Calls >= 2 ? AtLevel(levels.Results, atOne, atTwo) : ""; };
}

LinesAt ResultLines(const std::string& lines)
{
    return ResultLines(lines, lines);
}

LinesAt Always(const std::string& lines)
{
    return [lines](const Levels&) { return lines; };
}

LinesAt Join(LinesAt first, LinesAt second)
{
    return [first = std::move(first), second = std::move(second)](const Levels& levels) {
        return first(levels) + second(levels);
    };
}

LinesAt OnlyUnderLogEnabled(LinesAt lines)
{
    return
        [lines = std::move(lines)](const Levels& levels) { return levels.Enabled == 1 ? lines(levels) : ""; };
}

std::string ExpectedText(const LoggedCall& call, const Levels& levels)
{
    if (!levels.Active())
        return "";
    // Without an exit line, what was decoded after the call is never committed.
    if (levels.Calls == 0)
        return call.Before(levels);
    return "{stamp} + " + call.Name + (levels.Calls >= 2 ? call.Arguments : "") + "\n" + call.Before(levels) +
           call.After(levels) + "{stamp} - " + call.Name + "<" + call.StatusText + ">\n";
}

void CallTest::Start(Changes changes)
{
    Fake().Answer = nullptr;
    Api().PDUDestruct();
    session.Configure(changes);
    EXPECT_EQ(session.Construct(), PDU_STATUS_NOERROR);
    Fake().TakeCalls();
}

void CallTest::Start(const Levels& levels)
{
    With(levels, [this](Changes changes) { Start(changes); });
}

void CallTest::Reconfigure(Changes changes)
{
    session.Configure(changes);
    auto answer = std::exchange(Fake().Answer, nullptr);
    EXPECT_EQ(session.Construct(), PDU_STATUS_NOERROR);
    Fake().Answer = std::move(answer);
    Fake().TakeCalls();
}

void CallTest::Reconfigure(const Levels& levels)
{
    With(levels, [this](Changes changes) { Reconfigure(changes); });
}

void CallTest::Answer(const std::string& function, T_PDU_ERROR status,
                      std::function<void(const FakeCall&)> effect)
{
    Fake().Answer = [=](const FakeCall& call) {
        if (function != call.Function)
            return PDU_STATUS_NOERROR;
        if (effect)
            effect(call);
        return status;
    };
}

void CallTest::AnswerAll(T_PDU_ERROR status)
{
    Fake().Answer = [status](const FakeCall&) { return status; };
}

void CallTest::AskObjectId(T_PDU_OBJT type, const std::string& name, UNUM32 id, T_PDU_ERROR status)
{
    auto answer = std::exchange(Fake().Answer, nullptr);
    Answer("PDUGetObjectId", status, [id](const FakeCall& call) { At<UNUM32>(call.Arguments[2]) = id; });
    std::string asked = name;
    UNUM32 place = 0;
    EXPECT_EQ(Api().PDUGetObjectId(type, asked.data(), &place), status);
    EXPECT_EQ(place, id);
    Fake().Answer = std::move(answer);
    Fake().TakeCalls();
}

void CallTest::ExpectSeen(const std::string& name, const std::vector<std::uint64_t>& arguments)
{
    ExpectForwarded(Fake(), name, arguments);
}

void CallTest::ExpectAtAllLevels(const std::vector<LoggedCall>& calls)
{
    for (const Levels& levels : AllLevels()) {
        Start(levels);
        for (const LoggedCall& call : calls)
            ExpectAt(levels, call);
    }
    Fake().Answer = nullptr;
}

void CallTest::ExpectAt(const Levels& levels, const LoggedCall& call)
{
    SCOPED_TRACE(::testing::Message()
                 << call.Name << ", LogEnabled " << levels.Enabled << ", LogNewFileCfg " << levels.NewFile
                 << ", LogFnCalls " << levels.Calls << ", LogFnDecodeArgs " << levels.Arguments
                 << ", LogFnDecodeRsps " << levels.Results);
    Answer(call.Name, call.Status, call.Effect);
    EXPECT_EQ(Logged([&] { EXPECT_EQ(call.Call(), call.Status); }), ExpectedText(call, levels));
    ExpectSeen(call.Name, call.Seen);
}

} // namespace marvane::testing
