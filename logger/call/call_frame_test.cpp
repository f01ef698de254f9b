// The frame with hand-made parts: their order, and the situations that no session brings about.
#include "logger/call/call_frame.h"

#include "logger/state/process_texts.h"
#include "tests/support/logger_state.h"
#include "tests/support/session.h"

namespace marvane {
namespace {

/// The logger is up and a target library is loaded, which no part here calls.
class Frame : public testing::LoggerState
{
protected:
    Frame()
    {
        SetSetting(NumericKey::LogFnCalls, 2);
        TargetLibraryPath = testing::BuildFolder() + testing::LibraryName("fake_target");
        LoadTargetLibrary();
        Loaded = 1;
    }
    ~Frame() override { UnloadTargetLibrary(); }

    std::string Text() const { return testing::WithoutStamps(Log()); }

    /// A call whose forward answers 0 and notes what the log held then.
    T_PDU_ERROR Call()
    {
        return LogCall({.name = "Call", .forward = [this](const CPduDll&) {
                            atForward = Text();
                            return PDU_STATUS_NOERROR;
                        }});
    }

    std::string atForward;
};

TEST_F(Frame, ThePartsRunInTheirOrderAndTheirTextIsWrittenInTwoPhases)
{
    SetSetting(NumericKey::LogCallOuts, 1);
    std::string parts;
    const T_PDU_ERROR status = LogCall({
        .name = "Call",
        .arguments =
            [&](PhaseText& text) {
                parts += "arguments ";
                text.Add("(arguments)"_fmt);
            },
        .before =
            [&](PhaseText& text) {
                parts += "before ";
                text.AddLine("before"_fmt);
            },
        .forward =
            [&](const CPduDll& target) {
                parts += "forward ";
                atForward = Text();
                EXPECT_EQ(&target, TargetLibrary());
                return PDU_ERR_FCT_FAILED;
            },
        .after =
            [&](PhaseText& text, T_PDU_ERROR answer) {
                parts += "after ";
                text.AddLine("after %u"_fmt, answer);
            },
        .finish =
            [&](PhaseText&) {
                parts += "finish";
                EXPECT_TRUE(Text().ends_with("{stamp} - Call<PDU_ERR_FCT_FAILED (0x0001)>\n"));
            },
    });
    EXPECT_EQ(status, PDU_ERR_FCT_FAILED);
    EXPECT_EQ(parts, "arguments before forward after finish");
    EXPECT_EQ(atForward, "{stamp} + Call(arguments)\n"
                         "before\n");
    EXPECT_EQ(Text(), "{stamp} + Call(arguments)\n"
                      "before\n"
                      "{stamp}     <Call\n"
                      "after 1\n"
                      "{stamp} - Call<PDU_ERR_FCT_FAILED (0x0001)>\n");
}

TEST_F(Frame, WithoutAnArgumentPartTheArgumentsAreEmptyBrackets)
{
    Call();
    EXPECT_EQ(Text(), "{stamp} + Call()\n{stamp} - Call<PDU_STATUS_NOERROR (0x0000)>\n");
}

TEST_F(Frame, WithLogFnCallsZeroAnEmptyTextIsWrittenAllTheSame)
{
    SetSetting(NumericKey::LogFnCalls, 0);
    SetSetting(NumericKey::LogCallOuts, 1);
    SetSetting(NumericKey::LogFlush, 1);
    // The flush that belongs to the write brings out what waited.
    ApiLogFile.load()->Write("waiting", false);
    EXPECT_EQ(testing::FileText(LogPath()), "");
    LogCall({.name = "Call", .forward = [&](const CPduDll&) {
                 atForward = testing::FileText(LogPath());
                 return PDU_STATUS_NOERROR;
             }});
    EXPECT_EQ(atForward, "waiting");
    EXPECT_EQ(testing::FileText(LogPath()), "waiting");
}

TEST_F(Frame, AResultOf14790BytesStillLetsTheExitLinesStampIn)
{
    const std::string result(14790, 'r');
    LogCall({
        .name = "Call",
        .forward = [](const CPduDll&) { return PDU_STATUS_NOERROR; },
        .after = [&](PhaseText& text, T_PDU_ERROR) { text.Add("%s"_fmt, result); },
    });
    EXPECT_EQ(Text(), "{stamp} + Call()\n" + result + "{stamp} \t\t\t\t...\n");
}

TEST_F(Frame, AResultOf14791BytesIsFollowedByTheMarkerAndNoExitLine)
{
    const std::string result(14791, 'r');
    LogCall({
        .name = "Call",
        .forward = [](const CPduDll&) { return PDU_STATUS_NOERROR; },
        .after = [&](PhaseText& text, T_PDU_ERROR) { text.Add("%s"_fmt, result); },
    });
    EXPECT_EQ(Text(), "{stamp} + Call()\n" + result + "\t\t\t\t...\n");
}

TEST_F(Frame, ArgumentsThatFillTheBufferLeaveTheExitLineAlone)
{
    const std::string argument(20000, 'a');
    LogCall({
        .name = "Call",
        .arguments = [&](PhaseText& text) { text.Add("(%s)"_fmt, argument); },
        .before = [](PhaseText& text) { text.AddLine("dropped"_fmt); },
        .forward = [](const CPduDll&) { return PDU_STATUS_NOERROR; },
    });
    const std::string text = Log();
    const std::size_t marker = text.find("\t\t\t\t...\n");
    EXPECT_EQ(marker, 14991u);
    EXPECT_EQ(testing::WithoutStamps(text.substr(marker + 8)),
              "{stamp} - Call<PDU_STATUS_NOERROR (0x0000)>\n");
}

TEST_F(Frame, ATargetWithoutAStartedLoggerIsForwardedToAndNothingElse)
{
    Loaded = 0;
    SetSetting(NumericKey::LogFileMaxSize, 1);
    SetSetting(NumericKey::LogFileMaxNum, 1);
    const auto never = [](const char* part) { ADD_FAILURE() << part; };
    EXPECT_EQ(LogCall({
                  .name = "Call",
                  .arguments = [&](PhaseText&) { never("arguments"); },
                  .forward = [](const CPduDll&) { return PDU_ERR_FCT_FAILED; },
                  .after = [&](PhaseText&, T_PDU_ERROR) { never("after"); },
                  .finish = [&](PhaseText&) { never("finish"); },
              }),
              PDU_ERR_FCT_FAILED);
    EXPECT_EQ(Text(), "");
}

TEST_F(Frame, AStopOfTheLoggerDuringTheForwardEndsTheLoggingOfTheCall)
{
    EXPECT_EQ(LogCall({
                  .name = "Call",
                  .forward =
                      [](const CPduDll&) {
                          Loaded = 0;
                          return PDU_ERR_FCT_FAILED;
                      },
                  .after = [](PhaseText&, T_PDU_ERROR) { ADD_FAILURE() << "after"; },
                  .finish = [](PhaseText&) { ADD_FAILURE() << "finish"; },
              }),
              PDU_ERR_FCT_FAILED);
    EXPECT_EQ(Text(), "{stamp} + Call()\n");
}

TEST_F(Frame, WithoutATargetTheCallIsAnsweredAndOneLineTellsSo)
{
    UnloadTargetLibrary();
    EXPECT_EQ(Call(), PDU_ERR_PDUAPI_NOT_CONSTRUCTED);
    EXPECT_EQ(Text(), "{stamp} Call - Called but library not loaded!\n");
    EXPECT_EQ(atForward, "");
}

TEST_F(Frame, WithoutATargetAndAStartedLoggerTheCallIsAnsweredWithoutALine)
{
    UnloadTargetLibrary();
    Loaded = 0;
    EXPECT_EQ(Call(), PDU_ERR_PDUAPI_NOT_CONSTRUCTED);
    EXPECT_EQ(Text(), "");
}

TEST_F(Frame, TheSettingsAreReadAfreshInEachPhase)
{
    LogCall({.name = "Call", .forward = [](const CPduDll&) {
                 SetSetting(NumericKey::LogFnCalls, 0);
                 return PDU_STATUS_NOERROR;
             }});
    EXPECT_EQ(Text(), "{stamp} + Call()\n");
}

TEST_F(Frame, LimitsThatAreSetDuringTheForwardChangeTheFileWithLoggingOffToo)
{
    LogDirectory = folder.Path().string();
    ApiLogFile.load()->Write("more than a byte", true);
    SetSetting(NumericKey::LogEnabled, 0);
    LogCall({.name = "Call", .forward = [](const CPduDll&) {
                 SetSetting(NumericKey::LogFileMaxSize, 1);
                 SetSetting(NumericKey::LogFileMaxNum, 1);
                 return PDU_STATUS_NOERROR;
             }});
    EXPECT_EQ(Log(), "more than a byte");
    EXPECT_EQ(ApiLogFile.load()->FlushedSize(), 0u);
}

TEST_F(Frame, WithoutAnOpenFileACallIsForwardedAndAnswered)
{
    CloseLogFiles();
    EXPECT_EQ(LogCall({.name = "Call", .forward = [](const CPduDll&) { return PDU_ERR_FCT_FAILED; }}),
              PDU_ERR_FCT_FAILED);
}

} // namespace
} // namespace marvane
