#include "tests/fuzz/odd_lines.h"

#include <gtest/gtest.h>

namespace marvane::testing {
namespace {

const std::string Stamp = "{10:00:00.000 - 0000000A} ";
const std::string Start = Stamp + "+ PDUStartComPrimitive(hMod=0x00000001, \n";

TEST(OddLines, LinesWithAStampAreNotOdd)
{
    EXPECT_EQ(FirstOddLine(""), "");
    EXPECT_EQ(FirstOddLine(Stamp + "anything\n" + Stamp + "\n"), "");
}

TEST(OddLines, TheKnownContinuationsAreNotOdd)
{
    EXPECT_EQ(FirstOddLine(Start + "\t\t\t\tCoPDataSize=0, phCoP=1)\n"), "");
    EXPECT_EQ(FirstOddLine(Stamp + "\t\t\t\t...\nsession\t= 1\n" + Stamp + "    <<< a = 1\n\t\t\t\t...\n"),
              "");
}

TEST(OddLines, ALineWithoutStampIsOdd)
{
    EXPECT_EQ(FirstOddLine(Stamp + "- PDUConnect<X (0x0000)>\nfoo\n"), "foo");
    EXPECT_EQ(FirstOddLine("foo\n"), "foo");
    EXPECT_EQ(FirstOddLine(Stamp + "    <<< a = 1\n\n"), "an empty line");
}

TEST(OddLines, ALineThatGoesOnWithAStringIsOdd)
{
    EXPECT_EQ(FirstOddLine(Stamp + "+ PDUConstruct(OptionStr= \"a\nb\", pAPITag= (nil))\n"),
              "b\", pAPITag= (nil))");
}

TEST(OddLines, InAFileWhoseTextsWereCutALineMayEndAnywhere)
{
    EXPECT_EQ(FirstOddBeginning(Stamp + "+ PDUCon\n{10:00:0\n\t\t\t\t...\n"), "");
    EXPECT_EQ(FirstOddBeginning(Stamp + "    <<< a = 1\n" + Stamp + "\t\t\t\t...\nsession\t= 1\n"), "");
    EXPECT_EQ(FirstOddBeginning(Stamp + "+ PDUCon\n{10:0x\n"), "{10:0x");
    EXPECT_EQ(FirstOddBeginning(Stamp + "+ PDUCon\nnect\n"), "nect");
}

TEST(OddLines, ALineThatBelongsToNothingIsDamaged)
{
    EXPECT_EQ(FirstDamagedLine(Stamp + "+ PDUConnect()\n" + Stamp + "- PDUConnect<X (0x0000)>\n"), "");
    EXPECT_EQ(FirstDamagedLine(Stamp + "+ PDUConnect()\n" + Stamp + "foo\n"), "line 2: foo");
}

} // namespace
} // namespace marvane::testing
