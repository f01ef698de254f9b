#include "text/format.h"

#include <cstdio>
#include <memory>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "platform/files.h"
#include "tests/support/run_time_format.h"

namespace marvane {
namespace {

const bool OnLinux = platform::PathSeparator == '/';

std::string FormattedList(std::string_view format, const std::vector<FormatArgument>& arguments,
                          std::size_t room = 500)
{
    // On the heap, so that a sanitizer sees a byte written past the room.
    const auto text = std::make_unique<char[]>(room);
    const char* const end = testing::FormatAtRunTime(text.get(), text.get() + room, format, arguments.data());
    return {text.get(), static_cast<std::size_t>(end - text.get())};
}

template <class Format, class... Arguments>
std::string Formatted(Format format, const Arguments&... arguments)
{
    return FormattedList(format.Text, {FormatArgument(arguments)...});
}

/// What the C library makes of the same.
template <class... Arguments> std::string Printed(const std::string& format, Arguments... arguments)
{
    char text[500];
    const int length = std::snprintf(text, sizeof text, format.c_str(), arguments...);
    return {text, static_cast<std::size_t>(length)};
}

/// Numbers of all magnitudes, the same in each run.
class Numbers
{
public:
    std::uint32_t Next()
    {
        const auto value = static_cast<std::uint32_t>(random_());
        switch (random_() % 8) {
        case 0:
            return value % 3;
        case 1:
            return 0xFFFFFFFF - value % 3;
        case 2:
            return 0x7FFFFFFF + value % 3;
        default:
            return value >> random_() % 32;
        }
    }

    /// That conversion with random flags and width.
    std::string Conversion(const std::string& specifier, bool zeros)
    {
        std::string conversion = "%";
        const auto flags = random_() % 4;
        if (flags == 1)
            conversion += "-";
        if (flags == 2 && zeros)
            conversion += "0";
        if (random_() % 3 != 0)
            conversion += std::to_string(1 + random_() % 40);
        return conversion + specifier;
    }

private:
    std::mt19937 random_{4711};
};

TEST(LogFormat, NumbersComeOutAsTheCLibraryPrintsThem)
{
    Numbers numbers;
    for (int i = 0; i < 20000; ++i) {
        const std::uint32_t value = numbers.Next();
        for (const char* conversion : {"u", "x", "X"}) {
            const std::string format = std::string("<") + numbers.Conversion(conversion, true) + ">";
            ASSERT_EQ(FormattedList(format, {value}), Printed(format, value)) << format << " of " << value;
        }
        const auto number = static_cast<std::int32_t>(value);
        const std::string format = std::string("<") + numbers.Conversion("d", true) + ">";
        ASSERT_EQ(FormattedList(format, {number}), Printed(format, number)) << format << " of " << number;
    }
}

TEST(LogFormat, NarrowNumbersComeOutAsTheCLibraryPrintsThem)
{
    Numbers numbers;
    for (int i = 0; i < 20000; ++i) {
        // Wider than the conversion takes: it takes the low bits.
        const std::uint32_t value = numbers.Next();
        const auto halfWord = static_cast<unsigned short>(value);
        const auto byte = static_cast<unsigned char>(value);
        for (const char* conversion : {"u", "x", "X"}) {
            const std::string ofHalfWord = numbers.Conversion(std::string("h") + conversion, true);
            ASSERT_EQ(FormattedList(ofHalfWord, {value}), Printed(ofHalfWord, halfWord)) << ofHalfWord;
            const std::string ofByte = numbers.Conversion(std::string("hh") + conversion, true);
            ASSERT_EQ(FormattedList(ofByte, {value}), Printed(ofByte, byte)) << ofByte;
        }
        const std::string signedHalfWord = numbers.Conversion("hd", true);
        ASSERT_EQ(FormattedList(signedHalfWord, {value}),
                  Printed(signedHalfWord, static_cast<short>(halfWord)));
        const std::string signedByte = numbers.Conversion("hhd", true);
        ASSERT_EQ(FormattedList(signedByte, {value}), Printed(signedByte, static_cast<signed char>(byte)));
    }
}

TEST(LogFormat, ALongNumberHas32BitsWhateverTheSystemTakesItFor)
{
    EXPECT_EQ(Formatted("%lu %ld %08lX"_fmt, 4294967295u, -1, 0xABCDEFu), "4294967295 -1 00ABCDEF");
    EXPECT_EQ(Formatted("%lX"_fmt, -2), "FFFFFFFE");
}

TEST(LogFormat, TextsAndCharactersComeOutAsTheCLibraryPrintsThem)
{
    Numbers numbers;
    for (int i = 0; i < 5000; ++i) {
        std::string text(numbers.Next() % 50, ' ');
        for (char& character : text)
            character = static_cast<char>(1 + numbers.Next() % 255);
        const std::string format = std::string("<") + numbers.Conversion("s", false) + ">";
        const std::string expected = Printed(format, text.c_str());
        ASSERT_EQ(FormattedList(format, {text.c_str()}), expected) << format;
        ASSERT_EQ(FormattedList(format, {text}), expected) << format;
        ASSERT_EQ(FormattedList(format, {std::string_view(text)}), expected) << format;
        const std::string single = numbers.Conversion("c", false);
        ASSERT_EQ(FormattedList(single, {text.empty() ? 'e' : text[0]}),
                  Printed(single, text.empty() ? 'e' : text[0]))
            << single;
    }
}

/// As Microsoft's runtime prints a pointer: all its digits.
std::string AllDigits(std::uintptr_t address)
{
    char digits[20];
    std::snprintf(digits, sizeof digits, "%0*llX", static_cast<int>(2 * sizeof address),
                  static_cast<unsigned long long>(address));
    return digits;
}

TEST(LogFormat, PointersComeOutAsTheSystemsOwnLibraryPrintsThem)
{
    const auto at = [](std::uintptr_t address) { return reinterpret_cast<const void*>(address); };
    const auto expect = [](const std::string& text, const char* onLinux, std::uintptr_t address) {
        EXPECT_EQ(text, "<" + (OnLinux ? onLinux : AllDigits(address)) + ">");
    };
    constexpr std::uintptr_t highest = ~std::uintptr_t{0};
    expect(Formatted("<%8p>"_fmt, at(0x12AB34CD)), "0x12ab34cd", 0x12AB34CD);
    expect(Formatted("<%8p>"_fmt, at(0x1F)), "    0x1f", 0x1F);
    expect(Formatted("<%-8p>"_fmt, at(0x1F)), "0x1f    ", 0x1F);
    expect(Formatted("<%8p>"_fmt, at(0)), "   (nil)", 0);
    expect(Formatted("<%p>"_fmt, at(highest)), sizeof highest == 8 ? "0xffffffffffffffff" : "0xffffffff",
           highest);
    Numbers numbers;
    for (int i = 0; i < 5000; ++i) {
        const auto address =
            static_cast<std::uintptr_t>(std::uint64_t{numbers.Next()} << 32 | numbers.Next());
        const std::string format = std::string("<") + numbers.Conversion("p", false) + ">";
        std::string asText = format;
        asText[asText.size() - 2] = 's';
        ASSERT_EQ(FormattedList(format, {at(address)}),
                  OnLinux ? Printed(format, at(address)) : Printed(asText, AllDigits(address).c_str()));
    }
}

void SomeFunction() {}

TEST(LogFormat, PointersOfAnyTypeArePrintedAsAddresses)
{
    int number = 0;
    const volatile int* const constant = &number;
    const std::string expected = Formatted("%8p"_fmt, static_cast<const void*>(&number));
    EXPECT_EQ(Formatted("%8p"_fmt, &number), expected);
    EXPECT_EQ(Formatted("%8p"_fmt, constant), expected);
    EXPECT_EQ(Formatted("%8p"_fmt, &SomeFunction),
              Formatted("%8p"_fmt, reinterpret_cast<const void*>(&SomeFunction)));
}

TEST(LogFormat, LiteralTextAndSeveralConversionsAreInOrder)
{
    EXPECT_EQ(Formatted("nothing to fill in"_fmt), "nothing to fill in");
    EXPECT_EQ(Formatted(""_fmt), "");
    EXPECT_EQ(Formatted("%s%c=%u, %02X|%-5d|"_fmt, "key", '?', 7u, 0xAu, -3), "key?=7, 0A|-3   |");
    EXPECT_EQ(Formatted("- %s<%s (0x%04X)>\n"_fmt, "PDUConnect", "PDU_ERR_FCT_FAILED", 1u),
              "- PDUConnect<PDU_ERR_FCT_FAILED (0x0001)>\n");
}

TEST(LogFormat, ATextWithPercentSignsIsNeverAFormat)
{
    const char* const text = "100 %s %n %d %% %";
    EXPECT_EQ(Formatted("<%s>"_fmt, text), "<100 %s %n %d %% %>");
    EXPECT_EQ(Formatted("%s%u"_fmt, std::string("%u%u"), 5u), "%u%u5");
}

TEST(LogFormat, ANullTextIsNamedAndAnEmptyOneIsNothing)
{
    EXPECT_EQ(Formatted("<%s>"_fmt, static_cast<const char*>(nullptr)), "<(null)>");
    EXPECT_EQ(Formatted("<%8s>"_fmt, static_cast<const char*>(nullptr)), "<  (null)>");
    EXPECT_EQ(Formatted("<%s|%3s>"_fmt, std::string_view(), std::string_view()), "<|   >");
}

TEST(LogFormat, ATextOfKnownLengthNeedsNoNul)
{
    const char letters[] = {'a', 'b', 'c', 'd'};
    EXPECT_EQ(Formatted("<%-5s>"_fmt, std::string_view(letters, 3)), "<abc  >");
}

TEST(LogFormat, WhatDoesNotFitTheRoomIsCutWhereTheCLibraryCutsIt)
{
    const std::string format = "ab%5dcd%-6s|%14s|%08X%c%u";
    const std::string whole = Printed(format, -12, "left", "twenty characters ..", 0xBEEFu, '!', 4294967295u);
    const std::vector<FormatArgument> arguments = {-12,     "left", "twenty characters ..",
                                                   0xBEEFu, '!',    4294967295u};
    for (std::size_t room = 0; room <= whole.size() + 2; ++room)
        EXPECT_EQ(FormattedList(format, arguments, room), whole.substr(0, room)) << room;
}

TEST(LogFormat, ATextWithoutAnEndIsReadNoFurtherThanTheRoomReaches)
{
    const std::vector<char> endless(50, 'x');
    EXPECT_EQ(FormattedList("<%s", {static_cast<const char*>(endless.data())}, 20),
              std::string("<") + std::string(19, 'x'));
}

} // namespace
} // namespace marvane
