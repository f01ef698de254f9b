#include "tool/export/zone_time.h"

#include <cstdio>
#include <cstdlib>
#include <ctime>

#include "platform/clock.h"

namespace marvane::tool {

namespace {

constexpr std::int64_t SecondsPerDay = 24 * 60 * 60;
constexpr std::uint32_t MsPerHour = 60 * 60 * 1000;

/// Seconds since 1970 that a broken-down time would be in UTC.
std::int64_t SecondsOf(const std::tm& time)
{
    const std::int64_t days = read::DaysOf(
        {time.tm_year + 1900, static_cast<unsigned>(time.tm_mon + 1), static_cast<unsigned>(time.tm_mday)});
    return days * SecondsPerDay + time.tm_hour * 3600 + time.tm_min * 60 + time.tm_sec;
}

/// Minutes between UTC and the machine's local time at a second of local time.
int MachineOffset(std::int64_t local)
{
    std::int64_t offset = 0;
    for (int pass = 0; pass < 2; ++pass) // The second pass knows on which side of a change of offset it is.
        offset = SecondsOf(platform::LocalCalendarTime(local - offset)) - (local - offset);
    return static_cast<int>(offset / 60);
}

std::string OffsetText(int minutes)
{
    char text[16];
    const int size = std::abs(minutes);
    std::snprintf(text, sizeof text, "%c%02d:%02d", minutes < 0 ? '-' : '+', size / 60 % 24, size % 60);
    return text;
}

void AppendDigits(std::string& out, std::uint32_t number, int count)
{
    char digits[4];
    for (int i = count - 1; i >= 0; --i, number /= 10)
        digits[i] = static_cast<char>('0' + number % 10);
    out.append(digits, static_cast<std::size_t>(count));
}

} // namespace

std::optional<int> ParseZone(std::string_view text)
{
    if (text == "Z")
        return 0;
    const auto digit = [&](std::size_t at) { return text[at] - '0'; };
    if (text.size() != 6 || (text[0] != '+' && text[0] != '-') || text[3] != ':')
        return std::nullopt;
    for (const std::size_t at : {1u, 2u, 4u, 5u})
        if (digit(at) < 0 || digit(at) > 9)
            return std::nullopt;
    const int hours = digit(1) * 10 + digit(2);
    const int minutes = digit(4) * 10 + digit(5);
    if (hours > 23 || minutes > 59)
        return std::nullopt;
    return (text[0] == '-' ? -1 : 1) * (hours * 60 + minutes);
}

std::string DayText(std::int64_t day)
{
    const read::Date date = read::DateOf(day);
    char text[48];
    std::snprintf(text, sizeof text, "%04d-%02u-%02u", date.Year, date.Month, date.Day);
    return text;
}

int ZoneTime::OffsetAt(read::LogTime time)
{
    return zone_ ? *zone_ : MachineOffset(time.Ms / 1000);
}

void ZoneTime::Renew(read::LogTime time)
{
    before_ = DayText(time.Day()) + "T";
    AppendDigits(before_, time.TimeOfDay() / MsPerHour, 2);
    before_ += ':';
    after_ = OffsetText(OffsetAt(time));
}

void ZoneTime::Append(std::string& out, read::LogTime time)
{
    const std::uint32_t ms = time.TimeOfDay();
    const std::int64_t hour = time.Day() * 24 + ms / MsPerHour;
    if (hour != hour_)
        Renew(time);
    hour_ = hour;
    out += before_;
    AppendDigits(out, ms / 60'000 % 60, 2);
    out += ':';
    AppendDigits(out, ms / 1000 % 60, 2);
    out += '.';
    AppendDigits(out, ms % 1000, 3);
    out += after_;
}

} // namespace marvane::tool
