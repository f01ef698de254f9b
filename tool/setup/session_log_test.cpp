#include "tool/setup/session_log.h"

#include <gtest/gtest.h>

namespace marvane::tool {
namespace {

constexpr const char* One = "{14:03:07.250 - 00001A2C} ";
constexpr const char* Two = "{14:03:07.251 - 0000000B} ";

/// A log of lines of the first thread.
std::string OfOne(const std::string& line)
{
    return NormalisedLog(One + std::string("+ PDUConstruct()\n") + One + line + "\n");
}
std::string Expected(const std::string& line)
{
    return "== thread 1\n+ PDUConstruct()\n" + line + "\n";
}

TEST(NormalisedSessionLog, BeginsWithTheFirstCallAndPutsThreadsAfterEachOther)
{
    const std::string log = std::string(One) + "LogHeader{Loaded=0}\n" + One +
                            "+ PDUConnect(hMod=0x00000001,\r\n" + "\t\t\t\thCLL=1)\r\n" + Two +
                            "+ PDUCallbackTrap()\n" + One + "- PDUConnect<OK>\n" + Two +
                            "- PDUCallbackTrap\n";
    EXPECT_EQ(NormalisedLog(log),
              "== thread 1\n+ PDUConnect(hMod=0x00000001,\n\t\t\t\thCLL=1)\n- PDUConnect<OK>\n"
              "== thread 2\n+ PDUCallbackTrap()\n- PDUCallbackTrap\n");
}

TEST(NormalisedSessionLog, MasksAddressesOfEverySystemAndNoHandles)
{
    for (const char* address : {"0x7ffd5c0a1b20", "000000000021F7A0", "0021F7A0", "0xff8a1b20"})
        EXPECT_EQ(OfOne(std::string("x(p=") + address + ")"), Expected("x(p=<address>)")) << address;
    for (const char* null : {"   (nil)", "0000000000000000", "00000000"})
        EXPECT_EQ(OfOne(std::string("x(p=") + null + ")"), Expected("x(p=<null>)")) << null;
    EXPECT_EQ(OfOne("hCLL=0x00000001 (0x8004)"), Expected("hCLL=0x00000001 (0x8004)"));
    EXPECT_EQ(OfOne("   -->  pData |00000010 <22>  \" |"), Expected("   -->  pData |00000010 <22>  \" |"));
}

TEST(NormalisedSessionLog, MasksTimesOfTheLibrary)
{
    EXPECT_EQ(OfOne("   <--  pTimestamp\t= 152"), Expected("   <--  pTimestamp\t= N"));
    EXPECT_EQ(OfOne("    <<< TxMsgDoneTimestamp  \t= 4711"), Expected("    <<< TxMsgDoneTimestamp  \t= N"));
    EXPECT_EQ(OfOne("x, Timestamp = 65, y = 7"), Expected("x, Timestamp = N, y = 7"));
}

TEST(NormalisedSessionLog, LeavesOutWhatIsRepeatedByChance)
{
    EXPECT_EQ(
        OfOne(
            "+ PDUGetEventItem(hMod=1)\n{14:03:07.252 - 00001A2C} - "
            "PDUGetEventItem<PDU_ERR_EVENT_QUEUE_EMPTY (0x0071)>\n{14:03:07.252 - 00001A2C} - PDUConstruct<>"),
        Expected("- PDUConstruct<>"));
    const std::string report = "NULL ->  CAN message\n   -->  Message |00000000 <3E 80> |";
    EXPECT_EQ(OfOne(report + "\n+ a()\n" + report + "\nNULL <-  other\n" + report),
              Expected(report + "\n+ a()\nNULL <-  other\n" + report));
}

TEST(NormalisedSessionLog, IsCounted)
{
    const CallCount count =
        CountCalls("- PDUConnect<OK>\n- PDUConnect<OK>\n- PDUCallbackTrap\n- PDUDestruct<OK>\n");
    EXPECT_EQ(count.Calls, 3u);
    EXPECT_EQ(count.Functions, 2u);
}

TEST(FirstDifferenceOfTexts, IsNamedWithItsLine)
{
    EXPECT_EQ(FirstDifference("a\nb\n", "a\nb\n"), "");
    EXPECT_EQ(FirstDifference("a\nb\n", "a\nc\n"), "line 2: expected \"b\", found \"c\"");
    EXPECT_EQ(FirstDifference("a\n", "a\nc\n"), "line 2: expected the end, found \"c\"");
    EXPECT_EQ(FirstDifference("a\nb\n", "a\n"), "line 2: expected \"b\", found the end");
}

} // namespace
} // namespace marvane::tool
