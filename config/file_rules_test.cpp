#include "config/file_rules.h"

#include <gtest/gtest.h>

namespace marvane {
namespace {

constexpr const char* Opening = "<?xml version=\"1.0\"?>\n<D_PDU_API_CFG>\n";

CharacterSource Characters(const std::string& text)
{
    return [text, at = std::size_t{0}]() mutable {
        return at < text.size() ? static_cast<unsigned char>(text[at++]) : -1;
    };
}

/// The steps of a file: "number:line" for each line of the body, then the last step.
std::string Steps(const std::string& text)
{
    static constexpr const char* names[] = {"body", "closed", "no header", "no block name", "no line"};
    ConfigurationReader reader(Characters(text));
    std::string steps;
    ReadingStep step = reader.Next();
    for (; step == ReadingStep::Body; step = reader.Next())
        steps += std::to_string(reader.LineNumber()) + ":" + reader.Line() + "\n";
    return steps + std::to_string(reader.LineNumber()) + " " + names[static_cast<std::size_t>(step)];
}

TEST(ConfigurationFile, HasAHeaderABlockAndAnEnd)
{
    EXPECT_EQ(Steps(std::string(Opening) + "one\n\ntwo\n</D_PDU_API_CFG>\nmore\n"),
              "3:one\n4:\n5:two\n6 closed");
    EXPECT_EQ(Steps("any\r\n<D_PDU_API_CFG>\r\none\r\n</D_PDU_API_CFG>"), "3:one\n4 closed");
}

TEST(ConfigurationFile, NeedsItsFirstTwoLines)
{
    EXPECT_EQ(Steps(""), "1 no header");
    EXPECT_EQ(Steps(std::string(1000, 'h') + "\n<D_PDU_API_CFG>\n"), "1 no header");
    EXPECT_EQ(Steps("any\n"), "2 no block name");
    EXPECT_EQ(Steps("any\n<D_PDU_API_CFG> \n"), "2 no block name");
    EXPECT_EQ(Steps("any\n\n<D_PDU_API_CFG>\n"), "2 no block name");
}

TEST(ConfigurationFile, EndsWithoutAClosingTagOrAtALongLine)
{
    EXPECT_EQ(Steps(Opening), "3 no line");
    EXPECT_EQ(Steps(std::string(Opening) + " </D_PDU_API_CFG>\n"), "3: </D_PDU_API_CFG>\n4 no line");
    EXPECT_EQ(Steps(std::string(Opening) + std::string(1000, 'x') + "\none\n"), "3 no line");
    EXPECT_EQ(Steps(std::string(Opening) + std::string(1000, 'x')), "3 no line");
}

TEST(ConfigurationLine, HoldsUpTo999CharactersWithoutItsEnd)
{
    EXPECT_EQ(ReadLine(Characters(std::string(999, 'x') + "\n")), std::string(999, 'x'));
    EXPECT_EQ(ReadLine(Characters(std::string(999, 'x') + "\r\n")), std::string(999, 'x'));
    EXPECT_EQ(ReadLine(Characters(std::string(999, 'x'))), std::string(999, 'x'));
    EXPECT_EQ(ReadLine(Characters(std::string(1000, 'x') + "\n")), std::nullopt);
    EXPECT_EQ(ReadLine(Characters("a\r")), "a\r");
    EXPECT_EQ(ReadLine(Characters("")), std::nullopt);
}

} // namespace
} // namespace marvane
