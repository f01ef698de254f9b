// PDUStartComPrimitive and PDUCancelComPrimitive: control data, payload and handle.
#include "tests/support/call_test.h"

namespace marvane::testing {
namespace {

class ComPrimitiveCalls : public CallTest
{
protected:
    /// The arguments of the entry line for these pointers, by default with three bytes to be sent.
    std::string Entry(const void* bytes, const void* controlData, const void* handle,
                      const std::string& type = "PDU_COPT_SENDRECV (0x8004)",
                      const std::string& size = "3") const
    {
        return "(hMod=0x00000001, hCLL=0x0000002A, CoPType=" + type + ", \n\t\t\t\tCoPDataSize=" + size +
               ", pCoPData=" + PointerText(bytes) + ", pCoPCtrlData=" + PointerText(controlData) +
               ", pCoPTag=" + PointerText(tag) + ", phCoP=" + PointerText(handle) + ")";
    }

    T_PDU_ERROR StartPrimitive(UNUM32 size = 3)
    {
        return Api().PDUStartComPrimitive(1, 42, PDU_COPT_SENDRECV, size, data, &control, tag, &hCoP);
    }

    /// The decoded lines of a start with the three bytes of `data`.
    std::string Decoded()
    {
        const std::string text = Logged([&] { EXPECT_EQ(StartPrimitive(), PDU_STATUS_NOERROR); });
        const std::string entry = "{stamp} + PDUStartComPrimitive" + Entry(data, &control, &hCoP) + "\n";
        const std::string exit = "{stamp} - PDUStartComPrimitive<PDU_STATUS_NOERROR (0x0000)>\n";
        EXPECT_TRUE(text.starts_with(entry) && text.ends_with(exit)) << text;
        return text.substr(entry.size(), text.size() - entry.size() - exit.size());
    }

    static std::function<void(const FakeCall&)> ReturnHandle(UNUM32 handle)
    {
        return [handle](const FakeCall& call) { At<UNUM32>(call.Arguments[7]) = handle; };
    }

    /// Lines of the control data before its expected responses.
    static constexpr const char* Head = "{stamp}    -->  Time            \t= 500\n"
                                        "{stamp}    -->  NumSendCycles   \t= 1\n"
                                        "{stamp}    -->  NumReceiveCycles\t= <INFINITE>\n"
                                        "{stamp}    -->  TempParamUpdate \t= 0\n"
                                        "{stamp}    -->  pCoPCtrlData->TxFlag->NumFlagBytes\t= 0\n";
    static constexpr const char* NoResponses = "{stamp}    -->  NumExpResps     \t= 0\n";
    static constexpr const char* Payload = "{stamp}    -->  pCoPData       |00000000 <22 F1 90>              "
                                           "                           \"..             |\n";

    UNUM8 data[3] = {0x22, 0xF1, 0x90};
    PDU_COP_CTRL_DATA control = {.Time = 500,
                                 .NumSendCycles = 1,
                                 .NumReceiveCycles = -1,
                                 .TempParamUpdate = 0,
                                 .TxFlag = {0, nullptr},
                                 .NumPossibleExpectedResponses = 0,
                                 .pExpectedResponseArray = nullptr};
    UNUM32 hCoP = 77;
    void* const tag = Unreadable<void>();
};

TEST_F(ComPrimitiveCalls, AStartIsDecodedWholeAndPassesUnchanged)
{
    UNUM8 flagByte = 0x40;
    UNUM8 mask[] = {0xFF, 0xFF};
    UNUM8 pattern[] = {0x62, 0xF1};
    UNUM32 ids[] = {5, PDU_ID_UNDEF};
    PDU_EXP_RESP_DATA responses[] = {{.ResponseType = 0,
                                      .AcceptanceId = 1,
                                      .NumMaskPatternBytes = 2,
                                      .pMaskData = mask,
                                      .pPatternData = pattern,
                                      .NumUniqueRespIds = 2,
                                      .pUniqueRespIds = ids},
                                     {.ResponseType = 1,
                                      .AcceptanceId = 2,
                                      .NumMaskPatternBytes = 0,
                                      .pMaskData = nullptr,
                                      .pPatternData = nullptr,
                                      .NumUniqueRespIds = 0,
                                      .pUniqueRespIds = nullptr}};
    control.TxFlag = {1, &flagByte};
    control.NumPossibleExpectedResponses = 2;
    control.pExpectedResponseArray = responses;
    const std::string cycles = "{stamp}    -->  Time            \t= 500\n"
                               "{stamp}    -->  NumSendCycles   \t= 1\n"
                               "{stamp}    -->  NumReceiveCycles\t= <INFINITE>\n"
                               "{stamp}    -->  TempParamUpdate \t= 0\n";
    const std::string flagLine = "{stamp}     >>> pCoPCtrlData-> |00000000 <40>                              "
                                 "                 @               |\n";
    const std::string first = "{stamp} \t\t -->  [00] 0x40 = SUPPRESS_POS_RESP\n"
                              "{stamp}    -->  Expected response\t= 1 of 2\n"
                              "{stamp}     >>> Type = 0 (POSITIVE), AcceptanceId = 1, Num match bytes\t= 2\n";
    const std::string matches = "{stamp}     >>> MaskData       |00000000 <FF FF>                            "
                                "                ..              |\n"
                                "{stamp}     >>> PatternData    |00000000 <62 F1>                            "
                                "                b.              |\n";
    const std::string second = "{stamp} \t\t -->   URIDs[002]:    5,<PDU_ID_UNDEF> \n"
                               "{stamp}    -->  Expected response\t= 2 of 2\n"
                               "{stamp}     >>> Type = 1 (NEGATIVE), AcceptanceId = 2, Num match bytes\t= 0\n"
                               "{stamp}     >>> Num URIDs      \t= 0\n";
    const std::string result = "{stamp}    <--  hCoP          \t= 0x12345678\n";
    const LoggedCall success = {
        .Name = "PDUStartComPrimitive",
        .Call = [&] { return StartPrimitive(); },
        .Seen = {1, 42, PDU_COPT_SENDRECV, 3, Raw(data), Raw(&control), Raw(tag), Raw(&hCoP)},
        .Effect = ReturnHandle(0x12345678),
        .Arguments = Entry(data, &control, &hCoP),
        .Before = OnlyUnderLogEnabled(
            ArgumentLines(cycles + first + second, cycles + flagLine + first + matches + second + Payload)),
        .After = ResultLines(result)};
    LoggedCall failure = success;
    failure.Status = PDU_ERR_TX_QUEUE_FULL;
    failure.StatusText = "PDU_ERR_TX_QUEUE_FULL (0x0070)";
    ExpectAtAllLevels({success, failure});
    EXPECT_EQ(hCoP, 0x12345678u);
    EXPECT_EQ(data[2], 0x90);
    EXPECT_EQ(control.Time, 500u);
    EXPECT_EQ(control.NumReceiveCycles, -1);
    EXPECT_EQ(control.pExpectedResponseArray, responses);
    EXPECT_EQ(responses[0].pUniqueRespIds, ids);
    EXPECT_EQ(ids[1], PDU_ID_UNDEF);
    EXPECT_EQ(mask[1], 0xFF);
    EXPECT_EQ(pattern[1], 0xF1);
}

TEST_F(ComPrimitiveCalls, NullForEveryPointerIsForwardedAndOnlyTheControlDataIsReported)
{
    const std::string line = "{stamp}    -->  pCoPCtrlData    \t= <NULL>\n";
    const std::string null = PointerText(nullptr);
    ExpectAtAllLevels(
        {{.Name = "PDUStartComPrimitive",
          .Call = [&] { return Api().PDUStartComPrimitive(1, 42, 3, 5, nullptr, nullptr, nullptr, nullptr); },
          .Seen = {1, 42, 3, 5, 0, 0, 0, 0},
          .Arguments = "(hMod=0x00000001, hCLL=0x0000002A, CoPType=<UNKNOWN> (0x0003), "
                       "\n\t\t\t\tCoPDataSize=5, pCoPData=" +
                       null + ", pCoPCtrlData=" + null + ", pCoPTag=" + null + ", phCoP=" + null + ")",
          .Before = OnlyUnderLogEnabled(ArgumentLines(line))}});
}

TEST_F(ComPrimitiveCalls, APayloadOfNoBytesIsReportedEvenAtLogFnCallsOne)
{
    const std::string size = "{stamp}    -->        pCoPData: Size\t= <ZERO>\n";
    const std::string lines = std::string(Head) + NoResponses + size;
    ExpectAtAllLevels({{.Name = "PDUStartComPrimitive",
                        .Call = [&] { return StartPrimitive(0); },
                        .Seen = {1, 42, PDU_COPT_SENDRECV, 0, Raw(data), Raw(&control), Raw(tag), Raw(&hCoP)},
                        .Arguments = Entry(data, &control, &hCoP, "PDU_COPT_SENDRECV (0x8004)", "0"),
                        .Before = OnlyUnderLogEnabled([&](const Levels& levels) {
                            const bool sizeAlone = levels.Calls == 1 && levels.Arguments != 0;
                            return levels.DecodesArguments() ? lines : sizeAlone ? size : "";
                        }),
                        .After = ResultLines("{stamp}    <--  hCoP          \t= 0x0000004D\n")}});
}

TEST_F(ComPrimitiveCalls, CyclesOfMinusOneAndMinusTwoHaveNamesAndAllOthersAreNumbers)
{
    Start({{"LogFnDecodeArgs", "1"}});
    const std::pair<SNUM32, const char*> cases[] = {
        {-1, "<INFINITE>"}, {-2, "<MULTIPLE>"}, {-3, "-3"}, {0, "0"}, {1, "1"}, {2147483647, "2147483647"}};
    for (const auto& [send, sendText] : cases)
        for (const auto& [receive, receiveText] : cases) {
            control.NumSendCycles = send;
            control.NumReceiveCycles = receive;
            EXPECT_EQ(Decoded(), "{stamp}    -->  Time            \t= 500\n"
                                 "{stamp}    -->  NumSendCycles   \t= " +
                                     std::string(sendText) +
                                     "\n"
                                     "{stamp}    -->  NumReceiveCycles\t= " +
                                     receiveText +
                                     "\n"
                                     "{stamp}    -->  TempParamUpdate \t= 0\n"
                                     "{stamp}    -->  pCoPCtrlData->TxFlag->NumFlagBytes\t= 0\n" +
                                     NoResponses);
        }
}

TEST_F(ComPrimitiveCalls, WithLogNewFileCfgAloneTheEntryIsWrittenAndNoArgumentIsDecoded)
{
    for (const char* level : {"0", "1", "2"}) {
        Start({{"LogEnabled", "0"}, {"LogNewFileCfg", "1"}, {"LogFnDecodeArgs", level}});
        EXPECT_EQ(Decoded(), "");
        EXPECT_EQ(Logged([&] {
                      Api().PDUStartComPrimitive(1, 42, PDU_COPT_SENDRECV, 3, data, nullptr, tag, &hCoP);
                  }),
                  "{stamp} + PDUStartComPrimitive" + Entry(data, nullptr, &hCoP) +
                      "\n"
                      "{stamp} - PDUStartComPrimitive<PDU_STATUS_NOERROR (0x0000)>\n");
    }
    Start({{"LogEnabled", "2"}, {"LogNewFileCfg", "1"}, {"LogFnDecodeArgs", "2"}});
    EXPECT_EQ(Decoded(), "");
}

TEST_F(ComPrimitiveCalls, WithoutControlDataThePayloadIsListedAfterOneLine)
{
    Start({{"LogFnDecodeArgs", "2"}});
    EXPECT_EQ(
        Logged([&] { Api().PDUStartComPrimitive(1, 42, PDU_COPT_SENDRECV, 3, data, nullptr, tag, &hCoP); }),
        "{stamp} + PDUStartComPrimitive" + Entry(data, nullptr, &hCoP) +
            "\n"
            "{stamp}    -->  pCoPCtrlData    \t= <NULL>\n" +
            Payload + "{stamp} - PDUStartComPrimitive<PDU_STATUS_NOERROR (0x0000)>\n");
}

TEST_F(ComPrimitiveCalls, WithoutExpectedResponsesTheCountIsShownOtherwiseEachOne)
{
    Start({{"LogFnDecodeArgs", "1"}});
    PDU_EXP_RESP_DATA responses[2] = {};
    responses[1] = {2, 4294967295u, 0, nullptr, nullptr, 0, nullptr};
    control.pExpectedResponseArray = responses;
    EXPECT_EQ(Decoded(), std::string(Head) + NoResponses);
    control.NumPossibleExpectedResponses = 2;
    EXPECT_EQ(Decoded(),
              std::string(Head) +
                  "{stamp}    -->  Expected response\t= 1 of 2\n"
                  "{stamp}     >>> Type = 0 (POSITIVE), AcceptanceId = 0, Num match bytes\t= 0\n"
                  "{stamp}     >>> Num URIDs      \t= 0\n"
                  "{stamp}    -->  Expected response\t= 2 of 2\n"
                  "{stamp}     >>> Type = 2 (NEGATIVE), AcceptanceId = 4294967295, Num match bytes\t= 0\n"
                  "{stamp}     >>> Num URIDs      \t= 0\n");
}

TEST_F(ComPrimitiveCalls, ThreeExpectedResponsesWithoutAnArrayAreAnErrorInTheLogAndForwarded)
{
    Start({{"LogFnDecodeArgs", "2"}});
    control.NumPossibleExpectedResponses = 3;
    EXPECT_EQ(Decoded(), std::string(Head) +
                             "{stamp}    -->  pCoPCtrlData->pExpectedRspArray\t= <NULL>\n"
                             "{stamp}    -->  **ERROR** expected responses with no array! (" +
                             PointerText(nullptr) + ", 3)\n" + Payload);
    ExpectSeen("PDUStartComPrimitive",
               {1, 42, PDU_COPT_SENDRECV, 3, Raw(data), Raw(&control), Raw(tag), Raw(&hCoP)});
}

TEST_F(ComPrimitiveCalls, AResponseWithoutMatchBytesHasNoListing)
{
    Start({{"LogFnDecodeArgs", "2"}});
    UNUM8 byte = 1;
    PDU_EXP_RESP_DATA response = {.ResponseType = 0,
                                  .AcceptanceId = 1,
                                  .NumMaskPatternBytes = 0,
                                  .pMaskData = &byte,
                                  .pPatternData = &byte,
                                  .NumUniqueRespIds = 0,
                                  .pUniqueRespIds = nullptr};
    control.NumPossibleExpectedResponses = 1;
    control.pExpectedResponseArray = &response;
    EXPECT_EQ(Decoded(), std::string(Head) +
                             "{stamp}    -->  Expected response\t= 1 of 1\n"
                             "{stamp}     >>> Type = 0 (POSITIVE), AcceptanceId = 1, Num match bytes\t= 0\n"
                             "{stamp}     >>> Num URIDs      \t= 0\n" +
                             Payload);
}

TEST_F(ComPrimitiveCalls, IdentifiersWithoutAListEndTheResponsesAndThePayloadFollows)
{
    Start({{"LogFnDecodeArgs", "2"}});
    UNUM32 id = 5;
    PDU_EXP_RESP_DATA responses[] = {{.ResponseType = 0,
                                      .AcceptanceId = 1,
                                      .NumMaskPatternBytes = 0,
                                      .pMaskData = nullptr,
                                      .pPatternData = nullptr,
                                      .NumUniqueRespIds = 1,
                                      .pUniqueRespIds = &id},
                                     {.ResponseType = 0,
                                      .AcceptanceId = 2,
                                      .NumMaskPatternBytes = 0,
                                      .pMaskData = nullptr,
                                      .pPatternData = nullptr,
                                      .NumUniqueRespIds = 4,
                                      .pUniqueRespIds = nullptr},
                                     {.ResponseType = 0,
                                      .AcceptanceId = 3,
                                      .NumMaskPatternBytes = 0,
                                      .pMaskData = nullptr,
                                      .pPatternData = nullptr,
                                      .NumUniqueRespIds = 1,
                                      .pUniqueRespIds = &id}};
    control.NumPossibleExpectedResponses = 3;
    control.pExpectedResponseArray = responses;
    EXPECT_EQ(Decoded(), std::string(Head) +
                             "{stamp}    -->  Expected response\t= 1 of 3\n"
                             "{stamp}     >>> Type = 0 (POSITIVE), AcceptanceId = 1, Num match bytes\t= 0\n"
                             "{stamp} \t\t -->   URIDs[001]:    5 \n"
                             "{stamp}    -->  Expected response\t= 2 of 3\n"
                             "{stamp}     >>> Type = 0 (POSITIVE), AcceptanceId = 2, Num match bytes\t= 0\n"
                             "{stamp}     >>> WARNING: NumURIDs=4 - but data array is NULL!\n" +
                             Payload);
}

TEST_F(ComPrimitiveCalls, TheUndefinedIdentifierIsNamedInTheList)
{
    Start({{"LogFnDecodeArgs", "1"}});
    UNUM32 ids[] = {1, PDU_ID_UNDEF, 0xFFFFFFFF, 12345};
    PDU_EXP_RESP_DATA response = {.ResponseType = 0,
                                  .AcceptanceId = 1,
                                  .NumMaskPatternBytes = 0,
                                  .pMaskData = nullptr,
                                  .pPatternData = nullptr,
                                  .NumUniqueRespIds = 4,
                                  .pUniqueRespIds = ids};
    control.NumPossibleExpectedResponses = 1;
    control.pExpectedResponseArray = &response;
    EXPECT_EQ(Decoded(), std::string(Head) +
                             "{stamp}    -->  Expected response\t= 1 of 1\n"
                             "{stamp}     >>> Type = 0 (POSITIVE), AcceptanceId = 1, Num match bytes\t= 0\n"
                             "{stamp} \t\t -->   URIDs[004]:    1,<PDU_ID_UNDEF>,4294967295,12345 \n");
}

TEST_F(ComPrimitiveCalls, LogMaxPduBuffCutsThePayloadAndNeitherMaskNorPattern)
{
    UNUM8 mask[] = {0x41, 0x42, 0x43};
    PDU_EXP_RESP_DATA response = {.ResponseType = 0,
                                  .AcceptanceId = 1,
                                  .NumMaskPatternBytes = 3,
                                  .pMaskData = mask,
                                  .pPatternData = mask,
                                  .NumUniqueRespIds = 0,
                                  .pUniqueRespIds = nullptr};
    control.NumPossibleExpectedResponses = 1;
    control.pExpectedResponseArray = &response;
    const std::string lines = std::string(Head) +
                              "{stamp}    -->  Expected response\t= 1 of 1\n"
                              "{stamp}     >>> Type = 0 (POSITIVE), AcceptanceId = 1, Num match bytes\t= 3\n";
    const std::string end = "{stamp}     >>> Num URIDs      \t= 0\n";
    Start({{"LogFnDecodeArgs", "2"}, {"LogMaxPduBuff", "2"}});
    EXPECT_EQ(Decoded(), lines +
                             "{stamp}     >>> MaskData       |00000000 <41 42 43>                            "
                             "             ABC             |\n"
                             "{stamp}     >>> PatternData    |00000000 <41 42 43>                            "
                             "             ABC             |\n" +
                             end +
                             "{stamp}    -->  pCoPData       |00000000 <22 F1>                               "
                             "             \". ( ...)|\n");
    Start({{"LogFnDecodeArgs", "1"}, {"LogMaxPduBuff", "2"}});
    EXPECT_EQ(Decoded(), lines + end);
}

TEST_F(ComPrimitiveCalls, TheHandleIsShownAfterTheCallOutAndAfterAFailureToo)
{
    Start({{"LogCallOuts", "1"}, {"LogFnDecodeRsps", "1"}});
    Answer("PDUStartComPrimitive", PDU_ERR_CLL_NOT_CONNECTED);
    EXPECT_EQ(Logged([&] { EXPECT_EQ(StartPrimitive(), PDU_ERR_CLL_NOT_CONNECTED); }),
              "{stamp} + PDUStartComPrimitive" + Entry(data, &control, &hCoP) +
                  "\n"
                  "{stamp}     <PDUStartComPrimitive\n"
                  "{stamp}    <--  hCoP          \t= 0x0000004D\n"
                  "{stamp} - PDUStartComPrimitive<PDU_ERR_CLL_NOT_CONNECTED (0x0040)>\n");
    EXPECT_EQ(hCoP, 77u);
}

TEST_F(ComPrimitiveCalls, AnUndefinedHandleIsNamedAmongTheArgumentsAndAsAResult)
{
    constexpr UNUM32 undefined = 0xFFFFFFFF;
    Start({{"LogFnDecodeRsps", "1"}});
    Answer("PDUStartComPrimitive", PDU_STATUS_NOERROR, ReturnHandle(undefined));
    EXPECT_EQ(
        Logged([&] {
            Api().PDUStartComPrimitive(undefined, undefined, undefined, undefined, nullptr, nullptr, tag,
                                       &hCoP);
        }),
        "{stamp} + PDUStartComPrimitive(hMod=<PDU_HANDLE_UNDEF>, hCLL=<PDU_HANDLE_UNDEF>, CoPType=<UNKNOWN> "
        "(0xFFFFFFFF), \n"
        "\t\t\t\tCoPDataSize=4294967295, pCoPData=" +
            PointerText(nullptr) + ", pCoPCtrlData=" + PointerText(nullptr) +
            ", pCoPTag=" + PointerText(tag) + ", phCoP=" + PointerText(&hCoP) +
            ")\n"
            "{stamp}    <--  hCoP          \t= <PDU_HANDLE_UNDEF>\n"
            "{stamp} - PDUStartComPrimitive<PDU_STATUS_NOERROR (0x0000)>\n");
}

TEST_F(ComPrimitiveCalls, EveryTypeHasItsName)
{
    Start({});
    const std::pair<T_PDU_COPT, const char*> types[] = {
        {PDU_COPT_STARTCOMM, "PDU_COPT_STARTCOMM (0x8001)"},
        {PDU_COPT_STOPCOMM, "PDU_COPT_STOPCOMM (0x8002)"},
        {PDU_COPT_UPDATEPARAM, "PDU_COPT_UPDATEPARAM (0x8003)"},
        {PDU_COPT_SENDRECV, "PDU_COPT_SENDRECV (0x8004)"},
        {PDU_COPT_DELAY, "PDU_COPT_DELAY (0x8005)"},
        {PDU_COPT_RESTORE_PARAM, "PDU_COPT_RESTORE_PARAM (0x8006)"},
        {0x8007, "<UNKNOWN> (0x8007)"},
        {0, "<UNKNOWN> (0x0000)"}};
    for (const auto& [type, text] : types)
        EXPECT_EQ(Logged([&, type = type] {
                      Api().PDUStartComPrimitive(1, 42, type, 3, data, &control, tag, &hCoP);
                  }),
                  "{stamp} + PDUStartComPrimitive" + Entry(data, &control, &hCoP, text) +
                      "\n"
                      "{stamp} - PDUStartComPrimitive<PDU_STATUS_NOERROR (0x0000)>\n");
}

TEST_F(ComPrimitiveCalls, ACancelAddsItsArgumentsAndNothingElse)
{
    const LoggedCall success = {.Name = "PDUCancelComPrimitive",
                                .Call = [&] { return Api().PDUCancelComPrimitive(1, 42, 0x1234ABCD); },
                                .Seen = {1, 42, 0x1234ABCD},
                                .Arguments = "(hMod=0x00000001, hCLL=0x0000002A, hCoP=0x1234ABCD)"};
    const LoggedCall failure = {
        .Name = "PDUCancelComPrimitive",
        .Call = [&] { return Api().PDUCancelComPrimitive(0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF); },
        .Seen = {0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF},
        .Status = PDU_ERR_INVALID_HANDLE,
        .StatusText = "PDU_ERR_INVALID_HANDLE (0x0060)",
        .Arguments = "(hMod=<PDU_HANDLE_UNDEF>, hCLL=<PDU_HANDLE_UNDEF>, hCoP=<PDU_HANDLE_UNDEF>)"};
    ExpectAtAllLevels({success, failure});
}

TEST_F(ComPrimitiveCalls, ControlDataLargerThanTheBufferIsCutAndTheCallContinues)
{
    Start({{"LogFnDecodeArgs", "2"}});
    std::vector<PDU_EXP_RESP_DATA> responses(1000);
    control.NumPossibleExpectedResponses = 1000;
    control.pExpectedResponseArray = responses.data();
    const std::string text = Logged([&] { EXPECT_EQ(StartPrimitive(), PDU_STATUS_NOERROR); });
    EXPECT_TRUE(text.starts_with("{stamp} + PDUStartComPrimitive" + Entry(data, &control, &hCoP) + "\n" +
                                 Head + "{stamp}    -->  Expected response\t= 1 of 1000\n"));
    const std::string end = "\t\t\t\t...\n{stamp} - PDUStartComPrimitive<PDU_STATUS_NOERROR (0x0000)>\n";
    EXPECT_TRUE(text.ends_with(end));
    EXPECT_EQ(text.find("\t\t\t\t...\n"), text.size() - end.size());
    ExpectSeen("PDUStartComPrimitive",
               {1, 42, PDU_COPT_SENDRECV, 3, Raw(data), Raw(&control), Raw(tag), Raw(&hCoP)});
}

using ComPrimitiveCallsDeathTest = ComPrimitiveCalls;

TEST_F(ComPrimitiveCallsDeathTest, AListOf700BytesEndsTheProcessAndNothingOfItIsLogged)
{
    Start({{"LogFnDecodeArgs", "1"}});
    std::vector<UNUM32> ids(136, 7);
    PDU_EXP_RESP_DATA response = {.ResponseType = 0,
                                  .AcceptanceId = 1,
                                  .NumMaskPatternBytes = 0,
                                  .pMaskData = nullptr,
                                  .pPatternData = nullptr,
                                  .NumUniqueRespIds = 136,
                                  .pUniqueRespIds = ids.data()};
    control.NumPossibleExpectedResponses = 1;
    control.pExpectedResponseArray = &response;
    EXPECT_EQ(Logged([&] { EXPECT_DEATH(StartPrimitive(), ""); }), "");
}

TEST_F(ComPrimitiveCalls, AListOf700BytesIsHarmlessWhileArgumentsAreNotDecoded)
{
    Start({{"LogFnDecodeArgs", "0"}, {"LogFnDecodeRsps", "0"}});
    std::vector<UNUM32> ids(136, 7);
    PDU_EXP_RESP_DATA response = {.ResponseType = 0,
                                  .AcceptanceId = 1,
                                  .NumMaskPatternBytes = 0,
                                  .pMaskData = nullptr,
                                  .pPatternData = nullptr,
                                  .NumUniqueRespIds = 136,
                                  .pUniqueRespIds = ids.data()};
    control.NumPossibleExpectedResponses = 1;
    control.pExpectedResponseArray = &response;
    EXPECT_EQ(Decoded(), "");
}

TEST(ComPrimitiveCallsWithoutATarget, EachCallIsNotLoadedAndReadsNoRecord)
{
    Session session({{"LogFnDecodeArgs", "2"}, {"LogFnDecodeRsps", "2"}}, "no_such_library");
    session.Construct();
    EXPECT_EQ(session.Logged([&] {
        EXPECT_EQ(session.Api().PDUStartComPrimitive(1, 2, 3, 4, Unreadable<UNUM8>(),
                                                     Unreadable<PDU_COP_CTRL_DATA>(), nullptr,
                                                     Unreadable<UNUM32>()),
                  0x20u);
        EXPECT_EQ(session.Api().PDUCancelComPrimitive(1, 2, 3), 0x20u);
    }),
              "{stamp} PDUStartComPrimitive - Called but library not loaded!\n"
              "{stamp} PDUCancelComPrimitive - Called but library not loaded!\n");
}

} // namespace
} // namespace marvane::testing
