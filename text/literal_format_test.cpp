#include "text/literal_format.h"

#include <limits>
#include <memory>

#include <gtest/gtest.h>

#include "logger/log/log_buffer.h"
#include "tests/support/run_time_format.h"

namespace marvane {
namespace {

/// Statements are written in two ways, one where they stand and one, near the end of the buffer, by the
/// formatter. The formatter is compared with the C library, and here the first way with the formatter.
class StatementTest : public ::testing::Test
{
protected:
    template <class Format, class... Arguments> void Check(Format format, const Arguments&... arguments)
    {
        char place[500];
        const auto text = [&](const char* end) {
            return std::string(place, static_cast<std::size_t>(end - place));
        };
        const literal_format::List<Arguments...> list = {FormatArgument(arguments)...};
        const std::string expected =
            text(testing::FormatAtRunTime(place, std::end(place), Format::Text, list.data()));
        buffer->Clear();
        buffer->Append(format, arguments...);
        ASSERT_EQ(buffer->Text(), expected);
        ASSERT_EQ(text(FormatText(place, std::end(place), format, arguments...)), expected);
        ASSERT_EQ(text(FormatText(place, place + 5, format, arguments...)), expected.substr(0, 5));
    }

    const std::unique_ptr<LogBuffer> buffer = std::make_unique<LogBuffer>();
};

/// Numbers of every length, decimal and hexadecimal, and the ends of what the narrow ones hold.
std::vector<UNUM32> Numbers()
{
    std::vector<UNUM32> numbers = {0, std::numeric_limits<UNUM32>::max()};
    for (std::uint64_t power = 1; power <= 0xFFFFFFFF; power *= 10)
        for (const int offset : {-1, 0, 1})
            numbers.push_back(static_cast<UNUM32>(power) + static_cast<UNUM32>(offset));
    for (unsigned bit = 0; bit < 32; ++bit)
        for (const int offset : {-1, 0, 1})
            numbers.push_back((UNUM32{1} << bit) + static_cast<UNUM32>(offset));
    return numbers;
}

TEST_F(StatementTest, HexadecimalNumbersComeOutAsTheFormatterPrintsThem)
{
    for (const UNUM32 number : Numbers()) {
        Check("<%X>"_fmt, number);
        Check("<%x>"_fmt, number);
        Check("<%02X>"_fmt, number);
        Check("<%02x>"_fmt, number);
        Check("<%04X>"_fmt, number);
        Check("<%08X>"_fmt, number);
        Check("<%08lX>"_fmt, number);
        Check("<%012X>"_fmt, number);
        Check("<%5X>"_fmt, number);
        Check("<%-5x>"_fmt, number);
        Check("<%hhX>"_fmt, static_cast<UNUM8>(number));
        Check("<%04hX>"_fmt, static_cast<SNUM16>(number));
        Check("<%02X>"_fmt, static_cast<SNUM8>(number));
    }
}

TEST_F(StatementTest, DecimalNumbersComeOutAsTheFormatterPrintsThem)
{
    for (const UNUM32 number : Numbers()) {
        const auto asSigned = static_cast<SNUM32>(number);
        Check("<%u>"_fmt, number);
        Check("<%d>"_fmt, asSigned);
        Check("<%u>"_fmt, asSigned);
        Check("<%lu>"_fmt, number);
        Check("<%02u>"_fmt, number);
        Check("<%03u>"_fmt, number);
        Check("<%04d>"_fmt, asSigned);
        Check("<%3u>"_fmt, number);
        Check("<%10u>"_fmt, number);
        Check("<%10d>"_fmt, asSigned);
        Check("<%-12d>"_fmt, asSigned);
        Check("<%40u>"_fmt, number);
        Check("<%hhu>"_fmt, static_cast<UNUM8>(number));
        Check("<%hhd>"_fmt, static_cast<SNUM8>(number));
        Check("<%hu>"_fmt, static_cast<UNUM16>(number));
        Check("<%hd>"_fmt, static_cast<SNUM16>(number));
    }
}

TEST_F(StatementTest, TextsComeOutAsTheFormatterPrintsThem)
{
    for (std::size_t length = 0; length < 120; ++length) {
        const std::string text(length, static_cast<char>('a' + length % 26));
        const std::string_view view = text;
        Check("<%s>"_fmt, text);
        Check("<%s>"_fmt, view);
        Check("<%s>"_fmt, text.c_str());
        Check("<%14s>"_fmt, view);
        Check("<%-30s>"_fmt, text.c_str());
        Check("%s%s|%-20s"_fmt, view, text, view);
    }
    Check("<%s>"_fmt, static_cast<const char*>(nullptr));
    Check("<%-9s>"_fmt, static_cast<const char*>(nullptr));
    Check("<%9s>"_fmt, std::string_view());
    Check("<%s>"_fmt, "100 %s %n %d %% %");
}

TEST_F(StatementTest, HandlesAndIdentifiersComeOutAsTheFormatterPrintsThem)
{
    for (const UNUM32 number : Numbers()) {
        Check("(%s)"_fmt, HandleText(number));
        Check("(%s, %s)"_fmt, HandleText(number), UridText(number));
        Check("(%4s,%-16s)"_fmt, UridText(number), UridText(number));
        Check("(%20s)"_fmt, HandleText(number));
    }
}

TEST_F(StatementTest, PointersAndCharactersComeOutAsTheFormatterPrintsThem)
{
    constexpr unsigned width = 8 * sizeof(void*);
    for (unsigned bits = 0; bits <= width; ++bits) {
        const auto value = bits == 0 ? 0 : ~std::uintptr_t{0} >> (width - bits);
        const auto* const pointer = reinterpret_cast<const void*>(value);
        Check("<%p>"_fmt, pointer);
        Check("<%8p>"_fmt, pointer);
        Check("<%-8p>"_fmt, pointer);
        Check("<%24p>"_fmt, pointer);
    }
    for (int character = 0; character < 256; ++character) {
        Check("<%c>"_fmt, static_cast<char>(character));
        Check("<%5c>"_fmt, static_cast<char>(character));
        Check("<%-5c>"_fmt, static_cast<char>(character));
    }
}

TEST_F(StatementTest, LiteralsOfAnyLengthStandBetweenTheConversions)
{
    Check(""_fmt);
    Check("no conversion, and more characters than two registers hold: what follows comes after them"_fmt);
    Check("%u"_fmt, 1u);
    Check("%u%u"_fmt, 1u, 22u);
    Check("a%ubc%udef%ughij"_fmt, 1u, 22u, 333u);
    Check("a literal of more than thirty-two characters %u and another one of forty or so characters\n"_fmt,
          4u);
}

TEST_F(StatementTest, AtEveryDistanceFromTheEndOfTheBufferTheTextIsTheSame)
{
    constexpr std::string_view expected = "name       = 4294967295 (0xFFFFFFFF)\n";
    for (std::size_t filled = LogBuffer::Capacity - 500; filled < LogBuffer::Capacity - 200; ++filled) {
        const std::string before(filled, 'f');
        buffer->Clear();
        buffer->Append("%s"_fmt, before);
        const bool room = buffer->HasRoom();
        ASSERT_TRUE(room) << filled;
        buffer->Append("%-10s = %u (0x%08X)\n"_fmt, "name", 0xFFFFFFFFu, 0xFFFFFFFFu);
        const bool inMargin = filled + expected.size() + LogBuffer::Margin >= LogBuffer::Capacity;
        ASSERT_EQ(buffer->Text(),
                  before + std::string(expected) + std::string(inMargin ? marks::BufferFull : ""))
            << filled;
    }
}

TEST_F(StatementTest, ATextWithoutAnEndIsReadNoFurtherThanTheRoomReaches)
{
    // On the heap, so that a sanitizer sees a byte read past it.
    const std::size_t filled = 14000;
    const std::vector<char> endless(LogBuffer::Capacity - filled, 'x');
    buffer->Append("%s"_fmt, std::string(filled, 'f'));
    buffer->Append("%s"_fmt, static_cast<const char*>(endless.data()));
    EXPECT_EQ(buffer->Text(), std::string(filled, 'f') + std::string(endless.begin(), endless.end()) +
                                  std::string(marks::BufferFull));
}

} // namespace
} // namespace marvane
