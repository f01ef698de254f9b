#include "line/arrows.h"

#include <string>

#include <gtest/gtest.h>

namespace marvane {
namespace {

TEST(Arrow, ShowsDirectionAndDepth)
{
    EXPECT_EQ(Arrow(Direction::ToTarget).Text(), "   -->  ");
    EXPECT_EQ(Arrow(Direction::ToTarget, 1).Text(), "    >>> ");
    EXPECT_EQ(Arrow(Direction::ToTarget, 2).Text(), "\t\t -->  ");
    EXPECT_EQ(Arrow(Direction::ToTarget, 3).Text(), "\t\t  >>> ");
    EXPECT_EQ(Arrow(Direction::FromTarget).Text(), "   <--  ");
    EXPECT_EQ(Arrow(Direction::FromTarget, 1).Text(), "    <<< ");
    EXPECT_EQ(Arrow(Direction::FromTarget, 2).Text(), "\t\t <--  ");
    EXPECT_EQ(Arrow(Direction::FromTarget, 3).Text(), "\t\t  <<< ");
}

TEST(Arrow, TurnsRoundBelowTheFourthDepth)
{
    const Arrow towards(Direction::ToTarget, 3);
    EXPECT_EQ(towards.Deeper().Text(), "   <--  ");
    EXPECT_EQ(towards.Deeper(2).Text(), "    <<< ");
    const Arrow back(Direction::FromTarget, 3);
    EXPECT_EQ(back.Deeper().Text(), "\t\t\t\t...\n");
    EXPECT_EQ(back.Deeper(2).Text(), "");
    EXPECT_EQ(back.Deeper(3).Text(), "");
}

TEST(Arrow, IsReadBack)
{
    for (const Direction direction : {Direction::ToTarget, Direction::FromTarget})
        for (unsigned depth = 0; depth < 4; ++depth) {
            const Arrow arrow(direction, depth);
            const std::string line = std::string(arrow.Text()) + "Time\t= 0";
            EXPECT_EQ(ParseArrow(line), arrow) << line;
            EXPECT_EQ(ParseArrow(line)->ShownDirection(), direction);
            EXPECT_EQ(ParseArrow(line)->ShownDepth(), depth);
        }
}

TEST(Arrow, OtherTextsHaveNone)
{
    for (const std::string_view text :
         {"", "   -->", "    <PDUConnect", "  -->   x", "\t\t\t\t...\n", "+ PDUConnect"})
        EXPECT_EQ(ParseArrow(text), std::nullopt) << text;
}

TEST(ReportArrow, IsReadBack)
{
    EXPECT_EQ(ReportArrow(Direction::ToTarget), " -> ");
    EXPECT_EQ(ReportArrow(Direction::FromTarget), " <- ");
    EXPECT_EQ(ParseReportArrow(" ->  Diagnostic message"), Direction::ToTarget);
    EXPECT_EQ(ParseReportArrow(" <-  Diagnostic message"), Direction::FromTarget);
    EXPECT_EQ(ParseReportArrow(" - Diagnostic message"), std::nullopt);
    EXPECT_EQ(ParseReportArrow(""), std::nullopt);
}

} // namespace
} // namespace marvane
