#include "tool/setup/finding.h"

#include <gtest/gtest.h>

namespace marvane::tool {
namespace {

TEST(ShownFindings, HaveAMarkAPlaceAndAText)
{
    EXPECT_EQ(ShownFinding({FindingLevel::Ok, "LogFileDir", "can be written"}),
              "  ok  LogFileDir      can be written\n");
    EXPECT_EQ(ShownFinding({FindingLevel::Note, "LogFlush", "one\ntwo"}),
              "  --  LogFlush        one\n                      two\n");
    EXPECT_EQ(ShownFinding({FindingLevel::Warning, {}, "text", 7}), "   !  line 7          text\n");
    EXPECT_EQ(ShownFinding({FindingLevel::Error, "a place that is long", "text"}),
              "   X  a place that is long text\n");
}

TEST(ShownFindings, AreWrappedAtHundredColumns)
{
    const std::string word(39, 'w');
    EXPECT_EQ(ShownFinding({FindingLevel::Ok, "place", word + " " + word.substr(1) + " " + word}),
              "  ok  place           " + word + " " + word.substr(1) + "\n" + std::string(22, ' ') + word +
                  "\n");
    const std::string longer(200, 'l');
    EXPECT_EQ(ShownFinding({FindingLevel::Ok, "place", "a " + longer + " b"}),
              "  ok  place           a\n" + std::string(22, ' ') + longer + "\n" + std::string(22, ' ') +
                  "b\n");
}

TEST(ShownFindings, AreCounted)
{
    const CheckFindings findings = {{FindingLevel::Error, "", ""},
                                    {FindingLevel::Warning, "", ""},
                                    {FindingLevel::Warning, "", ""},
                                    {FindingLevel::Note, "", ""}};
    EXPECT_EQ(CountedFindings(findings), "1 error, 2 warnings");
    EXPECT_EQ(CountedFindings({}), "0 errors, 0 warnings");
}

} // namespace
} // namespace marvane::tool
