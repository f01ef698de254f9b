// Local time of a log line: the stamp's time of day on the date that follows from the file's name.
#pragma once

#include <compare>
#include <cstdint>

namespace marvane::read {

/// A calendar date of the proleptic Gregorian calendar.
struct Date
{
    int Year = 1970;
    unsigned Month = 1; ///< from 1
    unsigned Day = 1;   ///< from 1
    friend bool operator==(const Date&, const Date&) = default;
};

/// Days from 1970-01-01 to `date`.
std::int64_t DaysOf(Date date);
/// The date `days` after 1970-01-01.
Date DateOf(std::int64_t days);

constexpr std::int64_t MillisecondsPerDay = 24LL * 60 * 60 * 1000;

/// Milliseconds of local time since 1970-01-01 00:00:00.000 local time. The zone is not known here.
struct LogTime
{
    std::int64_t Ms = 0;

    std::int64_t Day() const;        ///< days since 1970-01-01
    std::uint32_t TimeOfDay() const; ///< milliseconds since midnight
    Date CalendarDate() const { return DateOf(Day()); }

    friend auto operator<=>(const LogTime&, const LogTime&) = default;
    /// Milliseconds from `earlier` to `later`.
    friend std::int64_t operator-(LogTime later, LogTime earlier) { return later.Ms - earlier.Ms; }
};

} // namespace marvane::read
