#include <gtest/gtest.h>

#include "tool/read/call_text.h"

namespace marvane::read {

TEST(CallText, FindsArgumentsByName)
{
    constexpr std::string_view arguments = "hMod=0x00000001, hCLL=<PDU_HANDLE_UNDEF>, ParamID=CP_A, B (12), "
                                           "pParamItem=   (nil)";
    EXPECT_EQ(Argument(arguments, "hMod"), "0x00000001");
    EXPECT_EQ(Argument(arguments, "ParamID"), "CP_A, B (12)");
    EXPECT_EQ(Argument(arguments, "pParamItem"), "(nil)");
    EXPECT_EQ(Argument(arguments, "Mod"), std::nullopt);
}

TEST(CallText, NamesTheCommandOfAnIoCtl)
{
    EXPECT_EQ(CommandName("hMod=1, IoCtlCommandId=502 (PDU_IOCTL_READ_VBATT), pInputData=   (nil)"),
              "READ_VBATT");
    EXPECT_EQ(CommandName("hMod=1, IoCtlCommandId=502 (OWN_COMMAND), pInputData=   (nil)"), "OWN_COMMAND");
    EXPECT_EQ(CommandName("hMod=1, IoCtlCommandId=502, pInputData=   (nil)"), "");
    EXPECT_EQ(CommandName("hMod=1"), "");
}

TEST(CallText, DoesNotLookForArgumentsInStrings)
{
    constexpr std::string_view arguments =
        "pduObjectType=X (0x8024), pShortname=\"a\", b=\"c\", pPduObjectId=1";
    EXPECT_EQ(Argument(arguments, "pShortname"), "a\", b=\"c");
    EXPECT_EQ(Argument(arguments, "b"), std::nullopt);
    EXPECT_EQ(Argument(arguments, "pPduObjectId"), "1");
}

TEST(CallText, GivesWhatIsLeftOfAStringThatWasCut)
{
    constexpr std::string_view arguments = "pduObjectType=X (0x8024), pShortname=\"ab=c, d=e";
    EXPECT_EQ(Argument(arguments, "pShortname"), "ab=c, d=e");
    EXPECT_EQ(Argument(arguments, "d"), std::nullopt);
    EXPECT_EQ(Argument("pShortname=\"", "pShortname"), "");
}

TEST(CallText, FindsArgumentsOnBothLinesOfAStart)
{
    constexpr std::string_view arguments =
        "hMod=0x00000001, CoPType=X (0x8004), \n\t\t\t\tCoPDataSize=3, phCoP=4";
    EXPECT_EQ(Argument(arguments, "CoPType"), "X (0x8004)");
    EXPECT_EQ(Argument(arguments, "CoPDataSize"), "3");
    EXPECT_EQ(Argument(arguments, "phCoP"), "4");
}

TEST(CallText, ReadsNumbersAsLogsPrintThem)
{
    EXPECT_EQ(NumberInValue("12"), 12u);
    EXPECT_EQ(NumberInValue("0x0000000A"), 10u);
    EXPECT_EQ(NumberInValue("-1"), 0xFFFFFFFFu);
    EXPECT_EQ(NumberInValue("PDU_IT_RESULT (0x1300)"), 0x1300u);
    EXPECT_EQ(NumberInValue("a (b) (12)"), 12u);
    EXPECT_EQ(NumberInValue("<PDU_HANDLE_UNDEF>"), UndefinedHandle);
    EXPECT_EQ(NumberInValue("<PDU_ID_UNDEF>"), UndefinedId);
    for (const std::string_view wrong : {"", "x", "1x", "(", ")", "()", "99999999999", "0x"})
        EXPECT_EQ(NumberInValue(wrong), std::nullopt) << wrong;
}

TEST(CallText, AnUndefinedHandleIsNone)
{
    EXPECT_EQ(HandleArgument("hMod=0x00000007", "hMod"), 7u);
    EXPECT_EQ(HandleArgument("hMod=<PDU_HANDLE_UNDEF>", "hMod"), std::nullopt);
}

TEST(CallText, TakesADecodedLineApart)
{
    const DecodedText text = CallLine{1, "\t\t <--  MaxEntries\t= 1"}.Decode();
    EXPECT_EQ(text.Way, Direction::FromTarget);
    EXPECT_EQ(text.Depth, 2);
    EXPECT_EQ(text.Label, "MaxEntries");
    EXPECT_EQ(text.Value, "1");
    EXPECT_FALSE(text.Dump);
}

class DumpOfTest : public ::testing::Test
{
protected:
    static constexpr std::string_view First =
        "    <<< pDataBytes     |00000000 <62 F1 90 57 53 49 4D 56 43 31 45 32 46 33 30 30>  b..WSIMVC1E2F300|";
    static constexpr std::string_view Second =
        "    <<< pDataBytes     |00000010 <30 30>                                            00              |";

    std::size_t CountOf(const std::vector<CallLine>& lines, bool& isCut)
    {
        storage_.clear();
        const Payload payload = DumpOf(lines, "pDataBytes", storage_);
        isCut = payload.IsCut;
        return payload.Shown.size();
    }

    std::vector<std::uint8_t> storage_;
};

TEST_F(DumpOfTest, JoinsTheLinesOfAListing)
{
    bool isCut = true;
    EXPECT_EQ(CountOf({{1, First}, {2, Second}}, isCut), 18u);
    EXPECT_FALSE(isCut);
    EXPECT_EQ(storage_.back(), 0x30);
}

TEST_F(DumpOfTest, EndsWhereALineIsMissing)
{
    bool isCut = false;
    EXPECT_EQ(CountOf({{2, Second}}, isCut), 0u);
    EXPECT_TRUE(isCut);
}

TEST_F(DumpOfTest, EndsBeforeTheNextListingOfTheLabel)
{
    bool isCut = true;
    EXPECT_EQ(CountOf({{1, First}, {2, First}}, isCut), 16u);
    EXPECT_FALSE(isCut);
}

TEST_F(DumpOfTest, KnowsAnEmptyBuffer)
{
    const std::vector<CallLine> lines = {{1, "   -->        pCoPData: Size\t= <ZERO>"}};
    const Payload payload = DumpOf(lines, "pCoPData", storage_);
    EXPECT_TRUE(payload.IsPresent);
    EXPECT_FALSE(payload.IsCut);
    EXPECT_EQ(payload.Size, 0u);
}

TEST_F(DumpOfTest, IsCutIfTheLogStatesMore)
{
    const std::vector<CallLine> lines = {{1, First}};
    const Payload payload = DumpOf(lines, "pDataBytes", storage_, 40);
    EXPECT_TRUE(payload.IsCut);
    EXPECT_EQ(payload.Size, 40u);
}

} // namespace marvane::read
