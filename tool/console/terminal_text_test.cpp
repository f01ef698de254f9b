#include "tool/console/terminal_text.h"

#include <gtest/gtest.h>

namespace marvane::tool {
namespace {

TEST(TerminalText, KeepsLinesTabsLettersAndTheColoursOfThisProgram)
{
    const std::string text = "a\tb\n\x1b[31mred\x1b[0m \x1b[2mdim\x1b[0m Ger\xC3\xA4t\n";
    EXPECT_EQ(TerminalText(text), text);
}

TEST(TerminalText, HasAQuestionMarkForEachControlCharacter)
{
    EXPECT_EQ(TerminalText("\a\b\r\x7F"), "????");
    EXPECT_EQ(TerminalText("\x1b]0;title\a"), "?]0;title?") << "the title of the window";
    EXPECT_EQ(TerminalText("\x1b[8mhidden"), "?[8mhidden");
    EXPECT_EQ(TerminalText("\x1b[2J\x1b[31"), "?[2J?[31");
    EXPECT_EQ(TerminalText("\xC2\x9B"
                           "2J"),
              "?2J")
        << "one character in two bytes";
    EXPECT_EQ(TerminalText("Ger\xE4t\x1b"), "Ger?t?");
}

} // namespace
} // namespace marvane::tool
