// Modules, links and resource locks: what each call logs, and the forced rotation.
#include "tests/support/call_test.h"

namespace marvane::testing {
namespace {

class ModuleAndLinkCalls : public CallTest
{
protected:
    /// The calls that log their arguments and decode nothing.
    std::vector<LoggedCall> PlainCalls(T_PDU_ERROR status, const std::string& text)
    {
        const std::string link = "(hMod=0x00000001, hCLL=0x0000002A)";
        const auto& api = Api();
        std::vector<LoggedCall> calls = {
            {.Name = "PDUModuleConnect",
             .Call = [&] { return api.PDUModuleConnect(1); },
             .Seen = {1},
             .Arguments = "(hMod=0x00000001)"},
            {.Name = "PDUModuleDisconnect",
             .Call = [&] { return api.PDUModuleDisconnect(1); },
             .Seen = {1},
             .Arguments = "(hMod=0x00000001)"},
            {.Name = "PDUDestroyComLogicalLink",
             .Call = [&] { return api.PDUDestroyComLogicalLink(1, 42); },
             .Seen = {1, 42},
             .Arguments = link},
            {.Name = "PDUConnect",
             .Call = [&] { return api.PDUConnect(1, 42); },
             .Seen = {1, 42},
             .Arguments = link},
            {.Name = "PDUDisconnect",
             .Call = [&] { return api.PDUDisconnect(1, 42); },
             .Seen = {1, 42},
             .Arguments = link},
            {.Name = "PDULockResource",
             .Call = [&] { return api.PDULockResource(1, 42, 3); },
             .Seen = {1, 42, 3},
             .Arguments = "(hMod=0x00000001, hCLL=0x0000002A, LockMask=3)"},
            {.Name = "PDUUnlockResource",
             .Call = [&] { return api.PDUUnlockResource(1, 42, 0xFFFFFFFF); },
             .Seen = {1, 42, 0xFFFFFFFF},
             .Arguments = "(hMod=0x00000001, hCLL=0x0000002A, LockMask=4294967295)"},
        };
        for (LoggedCall& call : calls) {
            call.Status = status;
            call.StatusText = text;
        }
        return calls;
    }

    /// The target creates links with this handle.
    void AnswerWithLink(UNUM32 handle, T_PDU_ERROR status = PDU_STATUS_NOERROR)
    {
        Answer("PDUCreateComLogicalLink", status,
               [handle](const FakeCall& call) { At<UNUM32>(call.Arguments[4]) = handle; });
    }

    /// The text without the lines of a header that show settings.
    static std::string WithoutSettings(const std::string& text)
    {
        std::string rest;
        for (std::size_t at = 0; at < text.size();) {
            const std::string line = text.substr(at, text.find('\n', at) + 1 - at);
            if (!line.starts_with("{stamp} Config setting: "))
                rest += line;
            at += line.size();
        }
        return rest;
    }

    std::string LoggedDisconnect()
    {
        return WithoutSettings(Logged([&] { Api().PDUModuleDisconnect(1); }));
    }

    std::string ChangeOfFile() const
    {
        return "{stamp} # PDUModuleDisconnect - Changing log file\n"
               "{stamp} # PDUModuleDisconnect - Continuation file\n"
               "{stamp} ########## D-PDU API LOGGER VERSION: R01.000.0000.0000 ##########\n"
               "{stamp} LogHeader{Loaded=1}\n"
               "{stamp}    <--  LOADED:  Version 'R04.003.0002.0001' of '" +
               session.TargetPath() + LibraryName("fake_target") + "'\n";
    }

    static constexpr const char* DisconnectLines =
        "{stamp} + PDUModuleDisconnect(hMod=0x00000001)\n"
        "{stamp} - PDUModuleDisconnect<PDU_STATUS_NOERROR (0x0000)>\n";

    PDU_PIN_DATA pins[2] = {{.DLCPinNumber = 6, .DLCPinTypeId = 13},
                            {.DLCPinNumber = 14, .DLCPinTypeId = 15}};
    PDU_RSC_DATA resource = {.BusTypeId = 11, .ProtocolId = 12, .NumPinData = 2, .pDLCPinData = pins};
    UNUM8 flagByte = 0x80;
    PDU_FLAG_DATA flags = {.NumFlagBytes = 1, .pFlagData = &flagByte};
    UNUM32 hCLL = 77;
    void* const tag = Unreadable<void>();
};

TEST_F(ModuleAndLinkCalls, PlainCallsAddTheirArgumentsAndNothingElse)
{
    ExpectAtAllLevels(PlainCalls(PDU_STATUS_NOERROR, "PDU_STATUS_NOERROR (0x0000)"));
}

TEST_F(ModuleAndLinkCalls, PlainCallsThatFailDifferInTheirStatusOnly)
{
    ExpectAtAllLevels(
        PlainCalls(PDU_ERR_RSC_LOCKED_BY_OTHER_CLL, "PDU_ERR_RSC_LOCKED_BY_OTHER_CLL (0x00A1)"));
}

TEST_F(ModuleAndLinkCalls, ANewLinkShowsItsResourceItsFlagsAndItsHandleInDecimal)
{
    const std::string pinLines = "{stamp}    -->  pRscData       : BusTypeId = <UNKNOWN> (11), ProtocolId = "
                                 "<UNKNOWN> (12), NumPinData = 2\n"
                                 "{stamp}     >>> pDLCPinData[0]:\tNum =  6, Type = <UNKNOWN> (13)\n"
                                 "{stamp}     >>> pDLCPinData[1]:\tNum = 14, Type = <UNKNOWN> (15)\n";
    const std::string flagLine = "{stamp}     >>> pCLLCreateFlag |00000000 <80>                              "
                                 "                 .               |\n";
    const std::string bitLine = "{stamp} \t\t -->  [00] 0x80 = RawMode\n";
    const std::string result = "{stamp}    <--  phCLL = 305419896\n";
    ExpectAtAllLevels(
        {{.Name = "PDUCreateComLogicalLink",
          .Call = [&] { return Api().PDUCreateComLogicalLink(1, &resource, 7, tag, &hCLL, &flags); },
          .Seen = {1, Raw(&resource), 7, Raw(tag), Raw(&hCLL), Raw(&flags)},
          .Effect = [](const FakeCall& call) { At<UNUM32>(call.Arguments[4]) = 0x12345678; },
          .Arguments = "(hMod=0x00000001, pRscData=" + PointerText(&resource) +
                       ", resourceId=<UNKNOWN> (7), pCLLTag=" + PointerText(tag) +
                       ", phCLL=" + PointerText(&hCLL) + ", pCLLCreateFlag=" + PointerText(&flags) + ")",
          .Before = ArgumentLines(pinLines + bitLine, pinLines + flagLine + bitLine),
          .After = ResultLines(result)}});
    EXPECT_EQ(hCLL, 0x12345678u);
    EXPECT_EQ(resource.BusTypeId, 11u);
    EXPECT_EQ(resource.ProtocolId, 12u);
    EXPECT_EQ(resource.NumPinData, 2u);
    EXPECT_EQ(resource.pDLCPinData, pins);
    EXPECT_EQ(flags.NumFlagBytes, 1u);
    EXPECT_EQ(flags.pFlagData, &flagByte);
    EXPECT_EQ(flagByte, 0x80);
}

TEST_F(ModuleAndLinkCalls, AFailedLinkShowsNoHandleAlthoughTheTargetWroteOne)
{
    Start({{"LogFnDecodeRsps", "2"}});
    AnswerWithLink(0x12345678, PDU_ERR_RESOURCE_BUSY);
    EXPECT_EQ(Logged([&] {
                  EXPECT_EQ(Api().PDUCreateComLogicalLink(1, &resource, 7, tag, &hCLL, &flags),
                            PDU_ERR_RESOURCE_BUSY);
              }),
              "{stamp} + PDUCreateComLogicalLink(hMod=0x00000001, pRscData=" + PointerText(&resource) +
                  ", resourceId=<UNKNOWN> (7), pCLLTag=" + PointerText(tag) +
                  ", phCLL=" + PointerText(&hCLL) + ", pCLLCreateFlag=" + PointerText(&flags) +
                  ")\n"
                  "{stamp} - PDUCreateComLogicalLink<PDU_ERR_RESOURCE_BUSY (0x0030)>\n");
    EXPECT_EQ(hCLL, 0x12345678u);
}

TEST_F(ModuleAndLinkCalls, AFailureReadsNothingThroughTheOutputPointer)
{
    Start({{"LogFnDecodeRsps", "2"}});
    Answer("PDUCreateComLogicalLink", PDU_ERR_FCT_FAILED);
    EXPECT_EQ(Api().PDUCreateComLogicalLink(1, &resource, 7, tag, Unreadable<UNUM32>(), &flags),
              PDU_ERR_FCT_FAILED);
    ExpectSeen("PDUCreateComLogicalLink", {1, Raw(&resource), 7, Raw(tag), 0x10, Raw(&flags)});
}

TEST_F(ModuleAndLinkCalls, NullForEveryPointerOfALinkIsReportedAndForwarded)
{
    const std::string null = PointerText(nullptr);
    const std::string warning = "{stamp}    -->  WARNING - phCLL write-back\t= <NULL>\n";
    const std::string lines = "{stamp}    -->  pRscData\t= <NULL>\n"
                              "{stamp}    -->  pCLLCreateFlag\t= <NULL>\n" +
                              warning;
    ExpectAtAllLevels(
        {{.Name = "PDUCreateComLogicalLink",
          .Call = [&] { return Api().PDUCreateComLogicalLink(1, nullptr, 7, nullptr, nullptr, nullptr); },
          .Seen = {1, 0, 7, 0, 0, 0},
          .Arguments = "(hMod=0x00000001, pRscData=" + null + ", resourceId=<UNKNOWN> (7), pCLLTag=" + null +
                       ", phCLL=" + null + ", pCLLCreateFlag=" + null + ")",
          .Before = ArgumentLines(lines)}});
}

TEST_F(ModuleAndLinkCalls, WithLogFnDecodeArgsZeroANullOutputPointerGivesNoWarningAndIsForwarded)
{
    Start({{"LogFnDecodeRsps", "2"}});
    EXPECT_EQ(Logged([&] {
                  EXPECT_EQ(Api().PDUCreateComLogicalLink(1, &resource, 7, tag, nullptr, &flags),
                            PDU_STATUS_NOERROR);
              }),
              "{stamp} + PDUCreateComLogicalLink(hMod=0x00000001, pRscData=" + PointerText(&resource) +
                  ", resourceId=<UNKNOWN> (7), pCLLTag=" + PointerText(tag) +
                  ", phCLL=" + PointerText(nullptr) + ", pCLLCreateFlag=" + PointerText(&flags) +
                  ")\n"
                  "{stamp} - PDUCreateComLogicalLink<PDU_STATUS_NOERROR (0x0000)>\n");
    ExpectSeen("PDUCreateComLogicalLink", {1, Raw(&resource), 7, Raw(tag), 0, Raw(&flags)});
}

TEST_F(ModuleAndLinkCalls, WithLogFnCallsOneThereAreOnlyTheEntryAndTheStatusLine)
{
    Start({{"LogFnCalls", "1"}, {"LogFnDecodeArgs", "2"}, {"LogFnDecodeRsps", "2"}});
    EXPECT_EQ(Logged([&] { Api().PDUCreateComLogicalLink(1, &resource, 7, tag, nullptr, &flags); }),
              "{stamp} + PDUCreateComLogicalLink\n"
              "{stamp} - PDUCreateComLogicalLink<PDU_STATUS_NOERROR (0x0000)>\n");
}

TEST_F(ModuleAndLinkCalls, TheHandleIsBetweenTheClosingLineOfTheCallOutAndTheStatus)
{
    Start({{"LogCallOuts", "1"}, {"LogFnDecodeRsps", "1"}});
    AnswerWithLink(5);
    EXPECT_EQ(Logged([&] { Api().PDUCreateComLogicalLink(0xFFFFFFFF, &resource, 7, tag, &hCLL, &flags); }),
              "{stamp} + PDUCreateComLogicalLink(hMod=<PDU_HANDLE_UNDEF>, pRscData=" +
                  PointerText(&resource) + ", resourceId=<UNKNOWN> (7), pCLLTag=" + PointerText(tag) +
                  ", phCLL=" + PointerText(&hCLL) + ", pCLLCreateFlag=" + PointerText(&flags) +
                  ")\n"
                  "{stamp}     <PDUCreateComLogicalLink\n"
                  "{stamp}    <--  phCLL = 5\n"
                  "{stamp} - PDUCreateComLogicalLink<PDU_STATUS_NOERROR (0x0000)>\n");
}

TEST_F(ModuleAndLinkCalls, AnUndefinedHandleIsNamedAndForwardedUnchanged)
{
    constexpr UNUM32 undefined = 0xFFFFFFFF;
    Start({});
    EXPECT_EQ(Logged([&] {
                  Api().PDUModuleConnect(undefined);
                  Api().PDUModuleDisconnect(undefined);
                  Api().PDUDestroyComLogicalLink(undefined, 42);
                  Api().PDUConnect(1, undefined);
                  Api().PDUDisconnect(undefined, undefined);
                  Api().PDULockResource(undefined, undefined, 3);
                  Api().PDUUnlockResource(undefined, 0xFFFFFFFE, 0);
              }),
              "{stamp} + PDUModuleConnect(hMod=<PDU_HANDLE_UNDEF>)\n"
              "{stamp} - PDUModuleConnect<PDU_STATUS_NOERROR (0x0000)>\n"
              "{stamp} + PDUModuleDisconnect(hMod=<PDU_HANDLE_UNDEF>)\n"
              "{stamp} - PDUModuleDisconnect<PDU_STATUS_NOERROR (0x0000)>\n"
              "{stamp} + PDUDestroyComLogicalLink(hMod=<PDU_HANDLE_UNDEF>, hCLL=0x0000002A)\n"
              "{stamp} - PDUDestroyComLogicalLink<PDU_STATUS_NOERROR (0x0000)>\n"
              "{stamp} + PDUConnect(hMod=0x00000001, hCLL=<PDU_HANDLE_UNDEF>)\n"
              "{stamp} - PDUConnect<PDU_STATUS_NOERROR (0x0000)>\n"
              "{stamp} + PDUDisconnect(hMod=<PDU_HANDLE_UNDEF>, hCLL=<PDU_HANDLE_UNDEF>)\n"
              "{stamp} - PDUDisconnect<PDU_STATUS_NOERROR (0x0000)>\n"
              "{stamp} + PDULockResource(hMod=<PDU_HANDLE_UNDEF>, hCLL=<PDU_HANDLE_UNDEF>, LockMask=3)\n"
              "{stamp} - PDULockResource<PDU_STATUS_NOERROR (0x0000)>\n"
              "{stamp} + PDUUnlockResource(hMod=<PDU_HANDLE_UNDEF>, hCLL=0xFFFFFFFE, LockMask=0)\n"
              "{stamp} - PDUUnlockResource<PDU_STATUS_NOERROR (0x0000)>\n");
    const std::vector<std::vector<std::uint64_t>> expected = {{undefined},
                                                              {undefined},
                                                              {undefined, 42},
                                                              {1, undefined},
                                                              {undefined, undefined},
                                                              {undefined, undefined, 3},
                                                              {undefined, 0xFFFFFFFE, 0}};
    std::vector<std::vector<std::uint64_t>> seen;
    for (const SeenCall& call : session.Fake().TakeCalls())
        seen.push_back(call.Arguments);
    EXPECT_EQ(seen, expected);
}

TEST_F(ModuleAndLinkCalls, AResourceIsUnknownUntilTheApplicationAsksForItsId)
{
    Start({});
    const auto entry = [&] {
        const std::string text =
            Logged([&] { Api().PDUCreateComLogicalLink(1, nullptr, 7, nullptr, nullptr, nullptr); });
        return text.substr(0, text.find(", pCLLTag="));
    };
    const std::string unknown =
        "{stamp} + PDUCreateComLogicalLink(hMod=0x00000001, pRscData=" + PointerText(nullptr) +
        ", resourceId=<UNKNOWN> (7)";
    EXPECT_EQ(entry(), unknown);
    AskObjectId(PDU_OBJT_RESOURCE, "RSC_CAN", 7, PDU_ERR_INVALID_PARAMETERS);
    AskObjectId(PDU_OBJT_BUSTYPE, "BUS_CAN", 7);
    AskObjectId(PDU_OBJT_RESOURCE, "RSC_LIN", 8);
    EXPECT_EQ(entry(), unknown);
    AskObjectId(PDU_OBJT_RESOURCE, "RSC_CAN", 7);
    EXPECT_EQ(entry(), "{stamp} + PDUCreateComLogicalLink(hMod=0x00000001, pRscData=" + PointerText(nullptr) +
                           ", resourceId=RSC_CAN (7)");
}

TEST_F(ModuleAndLinkCalls, TheRecordOfAResourceShowsTheNamesThatWereLearned)
{
    Start({{"LogFnDecodeArgs", "1"}});
    AskObjectId(PDU_OBJT_BUSTYPE, "BUS_CAN", 11);
    AskObjectId(PDU_OBJT_PROTOCOL, "UDS", 12);
    AskObjectId(PDU_OBJT_PINTYPE, "HI", 13);
    const std::string text =
        Logged([&] { Api().PDUCreateComLogicalLink(1, &resource, 7, tag, &hCLL, nullptr); });
    EXPECT_EQ(
        text.substr(text.find('\n') + 1),
        "{stamp}    -->  pRscData       : BusTypeId = BUS_CAN (11), ProtocolId = UDS (12), NumPinData = 2\n"
        "{stamp}     >>> pDLCPinData[0]:\tNum =  6, Type = HI (13)\n"
        "{stamp}     >>> pDLCPinData[1]:\tNum = 14, Type = <UNKNOWN> (15)\n"
        "{stamp}    -->  pCLLCreateFlag\t= <NULL>\n"
        "{stamp} - PDUCreateComLogicalLink<PDU_STATUS_NOERROR (0x0000)>\n");
}

TEST(ModuleAndLinkCallsWithoutATarget, EachCallIsNotLoadedAndTheHandleIsUnchanged)
{
    Session session({{"LogFnDecodeArgs", "2"}, {"LogFnDecodeRsps", "2"}}, "no_such_library");
    session.Construct();
    UNUM32 hCLL = 77;
    const auto& api = session.Api();
    EXPECT_EQ(session.Logged([&] {
        EXPECT_EQ(api.PDUModuleConnect(1), 0x20u);
        EXPECT_EQ(api.PDUModuleDisconnect(1), 0x20u);
        EXPECT_EQ(api.PDUCreateComLogicalLink(1, Unreadable<PDU_RSC_DATA>(), 7, nullptr, &hCLL,
                                              Unreadable<PDU_FLAG_DATA>()),
                  0x20u);
        EXPECT_EQ(api.PDUDestroyComLogicalLink(1, 2), 0x20u);
        EXPECT_EQ(api.PDUConnect(1, 2), 0x20u);
        EXPECT_EQ(api.PDUDisconnect(1, 2), 0x20u);
        EXPECT_EQ(api.PDULockResource(1, 2, 3), 0x20u);
        EXPECT_EQ(api.PDUUnlockResource(1, 2, 3), 0x20u);
    }),
              "{stamp} PDUModuleConnect - Called but library not loaded!\n"
              "{stamp} PDUModuleDisconnect - Called but library not loaded!\n"
              "{stamp} PDUCreateComLogicalLink - Called but library not loaded!\n"
              "{stamp} PDUDestroyComLogicalLink - Called but library not loaded!\n"
              "{stamp} PDUConnect - Called but library not loaded!\n"
              "{stamp} PDUDisconnect - Called but library not loaded!\n"
              "{stamp} PDULockResource - Called but library not loaded!\n"
              "{stamp} PDUUnlockResource - Called but library not loaded!\n");
    EXPECT_EQ(hCLL, 77u);
}

TEST_F(ModuleAndLinkCalls, EveryDisconnectOfAModuleChangesTheFileAndNoConnectDoes)
{
    Start({{"LogNewFileCfg", "1"}, {"LogFileMaxSize", "0"}, {"LogFileMaxNum", "9"}});
    for (int round = 0; round < 3; ++round) {
        EXPECT_EQ(Logged([&] { Api().PDUModuleConnect(1); }),
                  "{stamp} + PDUModuleConnect(hMod=0x00000001)\n"
                  "{stamp} - PDUModuleConnect<PDU_STATUS_NOERROR (0x0000)>\n");
        EXPECT_EQ(LoggedDisconnect(), DisconnectLines + ChangeOfFile());
    }
}

TEST_F(ModuleAndLinkCalls, NoOtherModuleOrLinkCallChangesTheFile)
{
    Start({{"LogNewFileCfg", "1"}, {"LogFileMaxNum", "9"}, {"LogFnCalls", "0"}});
    EXPECT_EQ(Logged([&] {
                  Api().PDUModuleConnect(1);
                  Api().PDUCreateComLogicalLink(1, &resource, 7, tag, &hCLL, &flags);
                  Api().PDUConnect(1, 2);
                  Api().PDULockResource(1, 2, 3);
                  Api().PDUUnlockResource(1, 2, 3);
                  Api().PDUDisconnect(1, 2);
                  Api().PDUDestroyComLogicalLink(1, 2);
              }),
              "");
}

TEST_F(ModuleAndLinkCalls, ADisconnectThatFailsChangesTheFileToo)
{
    Start({{"LogNewFileCfg", "1"}, {"LogFileMaxNum", "9"}});
    Answer("PDUModuleDisconnect", PDU_ERR_INVALID_HANDLE);
    EXPECT_EQ(LoggedDisconnect(), "{stamp} + PDUModuleDisconnect(hMod=0x00000001)\n"
                                  "{stamp} - PDUModuleDisconnect<PDU_ERR_INVALID_HANDLE (0x0060)>\n" +
                                      ChangeOfFile());
}

TEST_F(ModuleAndLinkCalls, WithLogFnCallsZeroOnlyTheLinesOfTheRotationAreWritten)
{
    Start({{"LogNewFileCfg", "1"}, {"LogFileMaxNum", "9"}, {"LogFnCalls", "0"}, {"LogCallOuts", "1"}});
    EXPECT_EQ(LoggedDisconnect(), ChangeOfFile());
    ExpectSeen("PDUModuleDisconnect", {1});
}

TEST_F(ModuleAndLinkCalls, WithLogFileMaxNumZeroAForcedRotationAppendsToTheSoleFile)
{
    Start({{"LogNewFileCfg", "1"}});
    EXPECT_EQ(LoggedDisconnect(), DisconnectLines + ChangeOfFile());
    EXPECT_EQ(session.LogNames().size(), 1u);
}

TEST_F(ModuleAndLinkCalls, WithLogEnabledZeroNoRotationIsForced)
{
    Start({{"LogNewFileCfg", "1"}, {"LogEnabled", "0"}, {"LogFileMaxNum", "9"}});
    EXPECT_EQ(LoggedDisconnect(), DisconnectLines);
}

TEST_F(ModuleAndLinkCalls, OnlyTheValueOneForcesANewFile)
{
    Start({}); // LogEnabled 2 composes no target path, but keeps a target that an earlier start loaded.
    Start({{"LogNewFileCfg", "1"}, {"LogEnabled", "2"}, {"LogFileMaxNum", "9"}});
    EXPECT_EQ(LoggedDisconnect(), DisconnectLines);
    Start({{"LogNewFileCfg", "2"}, {"LogEnabled", "1"}, {"LogFileMaxNum", "9"}});
    EXPECT_EQ(LoggedDisconnect(), DisconnectLines);
}

TEST_F(ModuleAndLinkCalls, AForcedRotationIgnoresTheSizeLimit)
{
    Start({{"LogNewFileCfg", "1"}, {"LogFileMaxSize", "99999999"}, {"LogFileMaxNum", "9"}});
    EXPECT_EQ(LoggedDisconnect(), DisconnectLines + ChangeOfFile());
}

TEST_F(ModuleAndLinkCalls, WithoutForceADisconnectChangesAFileAboveItsLimit)
{
    Start({{"LogFileMaxSize", "1"}, {"LogFileMaxNum", "9"}});
    EXPECT_EQ(LoggedDisconnect(), DisconnectLines + ChangeOfFile());
    Start({{"LogFileMaxSize", "99999999"}, {"LogFileMaxNum", "9"}});
    EXPECT_EQ(LoggedDisconnect(), DisconnectLines);
    Start({{"LogFileMaxSize", "1"}, {"LogFileMaxNum", "0"}});
    EXPECT_EQ(LoggedDisconnect(), DisconnectLines);
    Start({{"LogFileMaxSize", "0"}, {"LogFileMaxNum", "9"}});
    EXPECT_EQ(LoggedDisconnect(), DisconnectLines);
}

} // namespace
} // namespace marvane::testing
