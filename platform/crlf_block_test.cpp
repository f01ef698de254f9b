#include "platform/crlf_block.h"

#include <string>

#include <gtest/gtest.h>

namespace marvane {
namespace {

using platform::CrLfBlock;

/// The same, character by character.
std::string Converted(const std::string& text)
{
    std::string converted;
    for (const char c : text)
        converted += c == '\n' ? "\r\n" : std::string(1, c);
    return converted;
}

/// What a block takes from a text.
std::string Taken(std::string_view& text)
{
    CrLfBlock block;
    block.TakeLines(text);
    return std::string(block.Bytes());
}

TEST(CrLfBlock, ConvertsALineEndAtEachPlaceOfAWord)
{
    for (std::size_t length = 0; length < 20; ++length)
        for (std::size_t at = 0; at < length; ++at) {
            std::string text(length, 'x');
            text[at] = '\n';
            std::string_view rest = text;
            EXPECT_EQ(Taken(rest), Converted(text));
            EXPECT_EQ(rest, "");
        }
}

TEST(CrLfBlock, ConvertsLineEndsSideBySide)
{
    for (std::size_t length = 0; length < 40; ++length) {
        const std::string text(length, '\n');
        std::string_view rest = text;
        EXPECT_EQ(Taken(rest), Converted(text));
    }
}

TEST(CrLfBlock, LeavesEveryOtherByteAsItIs)
{
    std::string text;
    for (int first = 0; first < 256; ++first)
        for (const int second : {0x09, 0x0A, 0x0B, 0x0D, 0x8A, 0xFF})
            text += {static_cast<char>(first), static_cast<char>(second)};
    std::string_view rest = text;
    EXPECT_EQ(Taken(rest), Converted(text));
}

TEST(CrLfBlock, TakesSeveralTexts)
{
    CrLfBlock block;
    for (std::string_view text : {"one\ntwo", "", "\nthree is longer\n"})
        block.TakeLines(text);
    EXPECT_EQ(block.Bytes(), "one\r\ntwo\r\nthree is longer\r\n");
}

TEST(CrLfBlock, LeavesALineThatHasNoRoomToTheNextOne)
{
    const std::string line(99, 'x');
    std::string text;
    while (text.size() < CrLfBlock::Size)
        text += line + "\n";
    std::string_view rest = text;
    const std::size_t lines = CrLfBlock::Size / 101;
    EXPECT_EQ(Taken(rest), Converted(text.substr(0, lines * 100)));
    EXPECT_EQ(rest, text.substr(lines * 100));
}

TEST(CrLfBlock, LeavesATextThatHasNoRoomBehindALineToTheNextOne)
{
    CrLfBlock block;
    std::string_view first = "line\n";
    block.TakeLines(first);
    const std::string text(CrLfBlock::Size, 'x');
    std::string_view rest = text;
    block.TakeLines(rest);
    EXPECT_EQ(block.Bytes(), "line\r\n");
    EXPECT_EQ(rest, text);
}

TEST(CrLfBlock, TakesALineThatIsLongerThanItInParts)
{
    for (std::size_t length = CrLfBlock::Size - 10; length < CrLfBlock::Size + 10; ++length) {
        const std::string text = std::string(length, 'x') + "\n";
        std::string_view rest = text;
        std::string all;
        while (!rest.empty())
            all += Taken(rest);
        EXPECT_EQ(all, Converted(text));
    }
}

TEST(CrLfBlock, FillsWithLineEndsToItsLastByte)
{
    const std::string text(CrLfBlock::Size, '\n');
    std::string_view rest = text;
    EXPECT_EQ(Taken(rest).size(), CrLfBlock::Size);
    EXPECT_EQ(rest.size(), CrLfBlock::Size / 2);
}

} // namespace
} // namespace marvane
