// The local time of day, and broken-down calendar time.
#pragma once

#include <cstdint>
#include <ctime>

namespace marvane::platform {

/// A moment as the system's clock counts it.
struct Moment
{
    std::int64_t Second; ///< since 1970, UTC
    std::uint32_t Milliseconds;
};

/// Reads the clock.
Moment Now();

/// Local time of day.
struct TimeOfDay
{
    std::uint16_t Hour;
    std::uint16_t Minute;
    std::uint16_t Second;
};

/// Local time of day at a second since 1970, by the time-zone rules that apply then.
TimeOfDay LocalTimeOfDay(std::int64_t second);

/// Broken-down local time of now, with a resolution of seconds.
std::tm LocalCalendarTime();

/// Broken-down local time at a second since 1970, by the time-zone rules that apply then.
std::tm LocalCalendarTime(std::int64_t second);

/// Broken-down UTC time of a count of seconds since 1970.
std::tm UtcCalendarTime(std::int64_t seconds);

} // namespace marvane::platform
