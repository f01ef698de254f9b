#include "tool/console/row_text.h"

#include <algorithm>
#include <cstdio>

namespace marvane::tool {

namespace {

bool IsContinuation(char letter)
{
    return (static_cast<unsigned char>(letter) & 0xC0) == 0x80;
}

std::string Formatted(const char* format, auto... values)
{
    char text[64];
    const int length = std::snprintf(text, sizeof text, format, values...);
    return std::string(text, static_cast<std::size_t>(std::clamp(length, 0, 63)));
}

} // namespace

std::size_t Utf8Length(std::string_view text)
{
    const auto first = static_cast<unsigned char>(text.front());
    const std::size_t length = first < 0x80 ? 1 : first < 0xC2 ? 0 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
    if (length == 0 || length > text.size() || first > 0xF4)
        return 0;
    for (std::size_t i = 1; i < length; ++i)
        if (!IsContinuation(text[i]))
            return 0;
    const auto second = length > 1 ? static_cast<unsigned char>(text[1]) : 0u;
    const bool isLong = (first == 0xE0 && second < 0xA0) || (first == 0xF0 && second < 0x90);
    const bool isBeyond = (first == 0xED && second > 0x9F) || (first == 0xF4 && second > 0x8F);
    return isLong || isBeyond ? 0 : length;
}

bool IsControl(std::string_view text)
{
    const auto first = static_cast<unsigned char>(text.front());
    // U+0080 to U+009F, which terminals take for escape sequences too.
    const bool isHigh = first == 0xC2 && text.size() > 1 && static_cast<unsigned char>(text[1]) < 0xA0;
    return first < 0x20 || first == 0x7F || isHigh;
}

std::string ByteText(std::uint8_t byte)
{
    constexpr char digits[] = "0123456789ABCDEF";
    return {digits[byte >> 4], digits[byte & 15]};
}

std::string BytesText(read::Bytes bytes, std::uint64_t size, std::size_t most, std::size_t head)
{
    const std::uint64_t real = std::max<std::uint64_t>(size, bytes.size());
    const std::size_t shown = real <= most ? bytes.size() : std::min(bytes.size(), head);
    std::string text;
    for (const std::uint8_t byte : bytes.first(shown))
        text.append(text.empty() ? "" : " ").append(ByteText(byte));
    if (real > shown)
        text.append(text.empty() ? "+" : " +").append(std::to_string(real - shown));
    return text;
}

std::string MillisecondsText(const read::Latency& latency)
{
    if (latency.IsByLog)
        return "~" + Grouped(latency.Us / 1000);
    const std::uint64_t tenths = (latency.Us + 50) / 100;
    return Grouped(tenths / 10) + "." + std::to_string(tenths % 10);
}

std::string SecondsText(read::LogTime begin, read::LogTime time)
{
    const std::int64_t ms = time - begin;
    const auto absolute = static_cast<unsigned long long>(ms < 0 ? -ms : ms);
    return Formatted("%s%llu.%03llu", ms < 0 ? "-" : "", absolute / 1000, absolute % 1000);
}

std::string ClockText(read::LogTime time)
{
    const unsigned ms = time.TimeOfDay();
    return Formatted("%02u:%02u:%02u.%03u", ms / 3'600'000, ms / 60'000 % 60, ms / 1000 % 60, ms % 1000);
}

std::string DateText(read::LogTime time)
{
    constexpr const char* months[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                      "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    const read::Date date = time.CalendarDate();
    return Formatted("%u %s %d", date.Day, months[std::clamp(date.Month, 1u, 12u) - 1], date.Year);
}

std::string DateTimeText(read::LogTime time)
{
    const read::Date date = time.CalendarDate();
    return Formatted("%04d-%02u-%02uT", date.Year, date.Month, date.Day) + ClockText(time);
}

std::string PositionText(const read::Position& at)
{
    const std::string line = std::to_string(at.Line);
    return at.File == 0 ? line : std::to_string(at.File + 1) + ":" + line;
}

std::string Grouped(std::uint64_t number)
{
    std::string text = std::to_string(number);
    for (std::size_t at = text.size(); at > 3;)
        text.insert(at -= 3, 1, ',');
    return text;
}

std::string Counted(std::uint64_t number, std::string_view one, std::string_view many)
{
    std::string text = Grouped(number) + " ";
    if (number == 1)
        return text.append(one);
    return many.empty() ? text.append(one).append("s") : text.append(many);
}

std::string Printable(std::string_view text)
{
    std::string safe;
    while (!text.empty()) {
        const std::size_t length = Utf8Length(text);
        if (length == 0 || IsControl(text))
            safe += '?';
        else
            safe.append(text.substr(0, length));
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return safe;
}

std::size_t ColumnsOf(std::string_view text)
{
    return text.size() - static_cast<std::size_t>(std::ranges::count_if(text, IsContinuation));
}

std::string Shortened(std::string_view text, std::size_t columns)
{
    if (ColumnsOf(text) <= columns)
        return std::string(text);
    std::size_t end = 0;
    for (std::size_t shown = 0; shown + 2 < columns; ++shown)
        for (++end; end < text.size() && IsContinuation(text[end]);)
            ++end;
    return std::string(text.substr(0, end)) + "..";
}

void PutAt(std::string& row, std::size_t column, std::string_view text)
{
    const std::size_t used = ColumnsOf(row);
    row.append(used < column ? column - used : used == 0 ? 0 : 1, ' ').append(text);
}

void PutBefore(std::string& row, std::size_t column, std::string_view text)
{
    const std::size_t wide = ColumnsOf(text);
    PutAt(row, column > wide ? column - wide : 0, text);
}

std::string Wrapped(std::string row, std::size_t column, std::string_view text, std::size_t end)
{
    const std::size_t width = end > column + 10 ? end - column : 10;
    std::string lines;
    while (ColumnsOf(text) > width) {
        const std::size_t blank = text.substr(0, width + 1).rfind(' ');
        if (blank == std::string_view::npos || blank == 0)
            break;
        PutAt(row, column, text.substr(0, blank));
        lines += Finished(std::move(row));
        row.clear();
        text.remove_prefix(blank + 1);
    }
    PutAt(row, column, text);
    return lines + Finished(std::move(row));
}

std::string Finished(std::string row)
{
    row.erase(row.find_last_not_of(' ') + 1);
    return row += '\n';
}

} // namespace marvane::tool
