#include "platform/clock.h"

#include <windows.h>

namespace marvane::platform {

namespace {

// The system counts tenths of a microsecond since 1601.
constexpr std::uint64_t TicksASecond = 10000000;
constexpr std::int64_t SecondsTo1970 = 11644473600;

std::uint64_t Ticks(const FILETIME& time)
{
    return std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime;
}

std::int64_t SecondsSince1970(std::uint64_t ticks)
{
    return static_cast<std::int64_t>(ticks / TicksASecond) - SecondsTo1970;
}

/// Local time by the zone of the system. The C library's localtime obeys TZ, which shells from Unix set in a
/// form that it misreads.
SYSTEMTIME LocalTime(std::int64_t second)
{
    SYSTEMTIME utc;
    SYSTEMTIME local;
    const std::uint64_t ticks = static_cast<std::uint64_t>(second + SecondsTo1970) * TicksASecond;
    const FILETIME time = {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
    if (!FileTimeToSystemTime(&time, &utc) || !SystemTimeToTzSpecificLocalTime(nullptr, &utc, &local))
        GetLocalTime(&local);
    return local;
}

} // namespace

Moment Now()
{
    // The plain GetSystemTimeAsFileTime moves in steps of up to 15.6 ms.
    FILETIME now;
    GetSystemTimePreciseAsFileTime(&now);
    const std::uint64_t ticks = Ticks(now);
    return {SecondsSince1970(ticks), static_cast<std::uint32_t>(ticks % TicksASecond / 10000)};
}

TimeOfDay LocalTimeOfDay(std::int64_t second)
{
    const SYSTEMTIME local = LocalTime(second);
    return {local.wHour, local.wMinute, local.wSecond};
}

std::tm LocalCalendarTime()
{
    return LocalCalendarTime(Now().Second);
}

std::tm LocalCalendarTime(std::int64_t second)
{
    const SYSTEMTIME local = LocalTime(second);
    FILETIME asUtc = {};
    SystemTimeToFileTime(&local, &asUtc);
    return UtcCalendarTime(SecondsSince1970(Ticks(asUtc)));
}

std::tm UtcCalendarTime(std::int64_t seconds)
{
    const __time64_t wide = seconds; // time_t has 32 bits in programs of 32 bits
    std::tm calendar = {};
    _gmtime64_s(&calendar, &wide);
    return calendar;
}

} // namespace marvane::platform
