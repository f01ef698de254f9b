#include <gtest/gtest.h>

#include "tool/read/reader_test_kit.h"

namespace marvane::read::testing {

namespace {

const std::string NoSession = "session 1 process 1 no beginning\n";

std::string ReadLines(std::string_view lines)
{
    return ReadText(LogOf(lines));
}

} // namespace

TEST(LogReader, JoinsTheHalvesOfACall)
{
    EXPECT_EQ(ReadLines("1 + PDUGetTimestamp(hMod=0x00000001, pTimestamp=0x7ffd)\n"
                        "1@003     <PDUGetTimestamp\n"
                        "1@003    <--  pTimestamp              \t= 55\n"
                        "1@003 - PDUGetTimestamp<PDU_STATUS_NOERROR (0x0000)>\n"),
              NoSession + "1..4 call PDUGetTimestamp returned 0 thread 1 depth 0 in 0 out 1 3 ms\n");
}

TEST(LogReader, NestsCallbacksInCallsAndCallsInCallbacks)
{
    EXPECT_EQ(ReadLines("1 + PDUConnect(hMod=0x00000001, hCLL=0x00000001)\n"
                        "1 + PDUCallbackTrap(Type=0x801, hMod=0x00000001, hCLL=0x00000001, pCLLTag=1, "
                        "pAPITag=2, Handler = 3)\n"
                        "1 + PDUConnect(hMod=0x00000001, hCLL=0x00000002)\n"
                        "1 - PDUConnect<PDU_ERR_FCT_FAILED (0x0001)>\n"
                        "1 - PDUCallbackTrap\n"
                        "1 - PDUConnect<PDU_STATUS_NOERROR (0x0000)>\n"),
              NoSession + "3..4 call PDUConnect returned 1 thread 1 depth 2 in 0 out 0 0 ms\n"
                          "2..5 event 0x801 returned thread 1 depth 1 in 0 out 0 0 ms\n"
                          "1..6 call PDUConnect returned 0 thread 1 depth 0 in 0 out 0 0 ms\n");
}

TEST(LogReader, KeepsThreadsApart)
{
    EXPECT_EQ(ReadLines("1 + PDUConnect\n"
                        "2 + PDUDisconnect\n"
                        "1 - PDUConnect<PDU_STATUS_NOERROR (0x0000)>\n"
                        "2 - PDUDisconnect<PDU_STATUS_NOERROR (0x0000)>\n"),
              NoSession + "1..3 call PDUConnect returned 0 thread 1 depth 0 in 0 out 0 0 ms\n"
                          "2..4 call PDUDisconnect returned 0 thread 2 depth 0 in 0 out 0 0 ms\n");
}

TEST(LogReader, TellsWhatIsInFlightAtTheEndInTheOrderOfEntry)
{
    EXPECT_EQ(ReadLines("2 + PDUConnect\n"
                        "1 + PDUDisconnect\n"),
              NoSession + "1..1 call PDUConnect in flight thread 2 depth 0 in 0 out 0 0 ms\n"
                          "1 in flight: PDUConnect\n"
                          "2..2 call PDUDisconnect in flight thread 1 depth 0 in 0 out 0 0 ms\n"
                          "2 in flight: PDUDisconnect\n");
}

TEST(LogReader, LeavesACallWhoseResultsHaveNoExitLine)
{
    EXPECT_EQ(ReadLines("1 + PDUConnect\n"
                        "1     <PDUConnect\n"
                        "1 + PDUDisconnect\n"
                        "1 - PDUDisconnect<PDU_STATUS_NOERROR (0x0000)>\n"),
              NoSession + "1..2 call PDUConnect in flight thread 1 depth 0 in 0 out 0 0 ms\n"
                          "1 in flight: PDUConnect\n"
                          "3..4 call PDUDisconnect returned 0 thread 1 depth 0 in 0 out 0 0 ms\n");
}

TEST(LogReader, DoesNotPutACallInsideOneThatCanNotBeOpen)
{
    EXPECT_EQ(ReadLines("1 LogHeader{Loaded=0}\n"
                        "1 Config setting: LogCbCalls           =         1 (0x00000001)\n"
                        "1 + PDUConnect\n"
                        "1 + PDUDisconnect\n"
                        "1 - PDUDisconnect<PDU_STATUS_NOERROR (0x0000)>\n"),
              NoSession + "4..5 call PDUDisconnect returned 0 thread 1 depth 0 in 0 out 0 0 ms\n"
                          "3..3 call PDUConnect in flight thread 1 depth 0 in 0 out 0 0 ms\n"
                          "3 in flight: PDUConnect\n");
}

TEST(LogReader, JoinsACallThatWasDoubtedAllTheSame)
{
    EXPECT_EQ(ReadLines("1 Config setting: LogCbCalls           =         1 (0x00000001)\n"
                        "1 + PDUConnect\n"
                        "1 + PDUDisconnect\n"
                        "1 - PDUDisconnect<PDU_STATUS_NOERROR (0x0000)>\n"
                        "1 - PDUConnect<PDU_STATUS_NOERROR (0x0000)>\n"),
              NoSession + "3..4 call PDUDisconnect returned 0 thread 1 depth 0 in 0 out 0 0 ms\n"
                          "2..5 call PDUConnect returned 0 thread 1 depth 0 in 0 out 0 0 ms\n");
}

TEST(LogReader, NestsCallsIfCallbacksAreNotLogged)
{
    EXPECT_EQ(ReadLines("1 Config setting: LogCbCalls           =         0 (0x00000000)\n"
                        "1 + PDUConnect\n"
                        "1 + PDUDisconnect\n"
                        "1 - PDUDisconnect<PDU_STATUS_NOERROR (0x0000)>\n"
                        "1 - PDUConnect<PDU_STATUS_NOERROR (0x0000)>\n"),
              NoSession + "3..4 call PDUDisconnect returned 0 thread 1 depth 1 in 0 out 0 0 ms\n"
                          "2..5 call PDUConnect returned 0 thread 1 depth 0 in 0 out 0 0 ms\n");
}

TEST(LogReader, TellsASecondHalfWithoutItsFirstOnce)
{
    EXPECT_EQ(ReadLines("1     <PDUGetStatus\n"
                        "1    <--  pStatusCode\t= PDU_CLLST_ONLINE (0x8051)\n"
                        "1 - PDUGetStatus<PDU_STATUS_NOERROR (0x0000)>\n"),
              NoSession + "3 exit without entry: PDUGetStatus<PDU_STATUS_NOERROR (0x0000)>\n");
}

TEST(LogReader, TellsEachDecodedLineThatBelongsToNoCall)
{
    EXPECT_EQ(ReadLines("1    <--  pStatusCode\t= PDU_CLLST_ONLINE (0x8051)\n"
                        "1    <--  pTimestamp\t= 1\n"
                        "1 + PDUConnect\n"
                        "1 - PDUConnect<PDU_STATUS_NOERROR (0x0000)>\n"),
              NoSession + "1 damaged:    <--  pStatusCode\t= PDU_CLLST_ONLINE (0x8051)\n"
                          "2 damaged:    <--  pTimestamp\t= 1\n"
                          "3..4 call PDUConnect returned 0 thread 1 depth 0 in 0 out 0 0 ms\n");
}

TEST(LogReader, ReadsTheTwoLinesOfAStart)
{
    EXPECT_EQ(
        ReadLines("1 + PDUStartComPrimitive(hMod=0x00000001, hCLL=0x00000001, CoPType=PDU_COPT_SENDRECV "
                  "(0x8004), \n"
                  "|\t\t\t\tCoPDataSize=0, pCoPData=1, pCoPCtrlData=2, pCoPTag=3, phCoP=4)\n"
                  "|\t\t\t\tCoPDataSize=0, pCoPData=1, pCoPCtrlData=2, pCoPTag=3, phCoP=4)\n"),
        NoSession + "3 damaged: \t\t\t\tCoPDataSize=0, pCoPData=1, pCoPCtrlData=2, pCoPTag=3, phCoP=4)\n"
                    "1..1 call PDUStartComPrimitive in flight thread 1 depth 0 in 0 out 0 0 ms\n"
                    "1 in flight: PDUStartComPrimitive\n");
}

TEST(LogReader, ReadsItemsWithTheirBytes)
{
    EXPECT_EQ(
        ReadLines(
            "1 + PDUGetEventItem(hMod=0x00000001, hCLL=0x00000001, ppEventItem=1)\n"
            "1    <--  *ppEventItem (2) type= PDU_IT_RESULT (0x1300), hCoP=0x00000003, Timestamp = 5, "
            "pCoPTag = 1\n"
            "1     <<< DataSize\t\t= 3\n"
            "1     <<< pDataBytes     |00000000 <62 F1>                                            b.              |\n"
            "1 - PDUGetEventItem<PDU_STATUS_NOERROR (0x0000)>\n"),
        NoSession + "1..5 call PDUGetEventItem returned 0 thread 1 depth 0 in 0 out 3 0 ms\n"
                    "2 item 0x1300 hCoP 3  62f1 cut\n");
}

TEST(LogReader, ReadsReportsWhoseParametersAreOfAnyKind)
{
    EXPECT_EQ(
        ReadLines("1 [DoIP] ->  Diagnostic message\n"
                  "1    -->  Address             \t= 0x00001010\n"
                  "1    -->  Message        |00000000 <22>                                               "
                  "\"               |\n"
                  "1    -->  Unhandled parameter - Type= 0x1001\n"
                  "1 NULL <-  nothing\n"),
        NoSession + "1 sent '[DoIP]' 'Diagnostic message' lines 3 22\n"
                    "5 received '' 'nothing' lines 0\n");
}

TEST(LogReader, ReadsComParams)
{
    EXPECT_EQ(
        ReadLines("1 + PDUSetComParam(hMod=0x00000001, hCLL=0x00000001, pParamItem=1)\n"
                  "1    -->  ComParam (1) Id = CP_X (id=600), DataType = PDU_PT_SNUM8 (0x0102), Class = "
                  "PDU_PC_COM (0x0003)\n"
                  "1     >>> CP_X                           (id=600): =\t(s 8)        -1\t(0xFFFFFFFF)\n"
                  "1 - PDUSetComParam<PDU_STATUS_NOERROR (0x0000)>\n"),
        NoSession + "1..4 call PDUSetComParam returned 0 thread 1 depth 0 in 2 out 0 0 ms\n"
                    "1 set 600 'CP_X' -1\n");
}

TEST(LogReader, SplitsTheLineThatHasNoLineEnd)
{
    EXPECT_EQ(ReadLines("1 ########## INITIALISE ##########\n"
                        "1 \tERROR: Couldn't find library path (a{b){10:00:00.000 - 00000001} - "
                        "LOGGER_Initialise<PDU_STATUS_NOERROR (0x0000)>\n"),
              "session 1 process 1\n");
}

TEST(LogReader, KnowsTheLineThatIsWrittenAlthoughCallsAreNot)
{
    EXPECT_EQ(ReadLines("1 Config setting: LogFnCalls           =         0 (0x00000000)\n"
                        "1    -->  *ppOutputData\t=    (nil)\n"
                        "1 + PDUCallbackTrap\n"
                        "1    -->  *ppOutputData\t=    (nil)\n"
                        "1 - PDUCallbackTrap\n"),
              NoSession + "3..5 event 0x0 returned thread 1 depth 0 in 0 out 0 0 ms\n");
}

TEST(LogReader, KnowsTheHeaderOfATargetBesideTheLogger)
{
    EXPECT_EQ(ReadLines("1 ########## INITIALISE ##########\n"
                        "1 LogHeader{Loaded=0}\n"
                        "1    -->  StandAlone installation\n"
                        "1    -->  LOADING: DLL = \"/opt/libpdu.so\"\n"
                        "1 - LOGGER_Initialise<PDU_STATUS_NOERROR (0x0000)>\n"),
              "session 1 process 1\n");
}

TEST(LogReader, TakesASecondStartOfTheSameProcessAsANewSessionOfIt)
{
    EXPECT_EQ(ReadLines("1 ########## INITIALISE ##########\n"
                        "1 LogHeader{Loaded=0}\n"
                        "2 ########## INITIALISE ##########\n"
                        "2 LogHeader{Loaded=1}\n"
                        "1 - LOGGER_Initialise<PDU_STATUS_NOERROR (0x0000)>\n"),
              "session 2 process 1\n");
}

TEST(LogReader, EndsTheCallsOfAProcessWhoseThreadBelongsToAnother)
{
    EXPECT_EQ(ReadLines("1 ########## INITIALISE ##########\n"
                        "1 LogHeader{Loaded=0}\n"
                        "2 + PDUConnect\n"
                        "1 - LOGGER_Initialise<PDU_STATUS_NOERROR (0x0000)>\n"
                        "1 ########## INITIALISE ##########\n"
                        "1 LogHeader{Loaded=0}\n"
                        "2 + PDUDisconnect\n"),
              "session 1 process 1\n"
              "3..3 call PDUConnect in flight thread 2 depth 0 in 0 out 0 0 ms\n"
              "3 in flight: PDUConnect\n"
              "7..7 call PDUDisconnect in flight thread 2 depth 0 in 0 out 0 0 ms\n"
              "7 in flight: PDUDisconnect\n"
              "session 2 process 2\n");
}

TEST(LogReader, ReadsTheSameInPiecesOfAnySize)
{
    const std::string log =
        LogOf("1 + PDUStartComPrimitive(hMod=0x00000001, hCLL=0x00000001, CoPType=X (0x8004), \n"
              "|\t\t\t\tCoPDataSize=0, pCoPData=1, pCoPCtrlData=2, pCoPTag=3, phCoP=4)\n"
              "1    -->  Time            \t= 0\n"
              "1 - PDUStartComPrimitive<PDU_STATUS_NOERROR (0x0000)>\n"
              "|\t\t\t\t...\n"
              "|foreign\n");
    const std::string whole = ReadText(log);
    EXPECT_NE(whole.find("6 damaged: foreign"), std::string::npos) << whole;
    for (std::size_t piece = 1; piece <= log.size(); ++piece)
        ASSERT_EQ(ReadText(log, piece), whole) << piece;
}

TEST(LogReader, BoundsWhatALogCanMakeItRemember)
{
    std::string log;
    for (int thread = 0; thread < 20000; ++thread) {
        char line[64];
        std::snprintf(line, sizeof line, "{10:00:00.000 - %08X} + PDUConnect\n",
                      static_cast<unsigned>(thread));
        log += line;
    }
    struct : LogSink
    {
        std::size_t Left = 0;
        void OnCall(const Call&) override { ++Left; }
    } sink;
    LogReader reader(sink);
    reader.BeginFile({});
    reader.Feed(log);
    EXPECT_GT(sink.Left, 10000u);
    reader.Finish();
    EXPECT_EQ(sink.Left, 20000u);
}

} // namespace marvane::read::testing
