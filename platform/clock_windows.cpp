#include "platform/clock.h"

#include <windows.h>

namespace marvane::platform {

namespace {

// The system counts tenths of a microsecond since 1601.
constexpr std::uint64_t TicksASecond = 10000000;
constexpr std::int64_t SecondsTo1970 = 11644473600;

} // namespace

Moment Now()
{
    FILETIME now;
    GetSystemTimeAsFileTime(&now);
    const std::uint64_t ticks = std::uint64_t{now.dwHighDateTime} << 32 | now.dwLowDateTime;
    return {static_cast<std::int64_t>(ticks / TicksASecond) - SecondsTo1970,
            static_cast<std::uint32_t>(ticks % TicksASecond / 10000)};
}

TimeOfDay LocalTimeOfDay(std::int64_t second)
{
    SYSTEMTIME utc;
    SYSTEMTIME local;
    const std::uint64_t ticks = static_cast<std::uint64_t>(second + SecondsTo1970) * TicksASecond;
    const FILETIME time = {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
    if (!FileTimeToSystemTime(&time, &utc) || !SystemTimeToTzSpecificLocalTime(nullptr, &utc, &local))
        GetLocalTime(&local);
    return {local.wHour, local.wMinute, local.wSecond};
}

std::tm LocalCalendarTime()
{
    const std::time_t now = std::time(nullptr);
    std::tm calendar = {};
    localtime_s(&calendar, &now);
    return calendar;
}

std::tm UtcCalendarTime(std::time_t seconds)
{
    std::tm calendar = {};
    gmtime_s(&calendar, &seconds);
    return calendar;
}

} // namespace marvane::platform
