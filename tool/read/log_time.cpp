#include "tool/read/log_time.h"

namespace marvane::read {

namespace {

constexpr std::int64_t FloorDiv(std::int64_t value, std::int64_t by)
{
    return value / by - (value % by < 0 ? 1 : 0);
}

constexpr std::int64_t DaysPerEra = 146097; ///< 400 years
constexpr std::int64_t EpochShift = 719468; ///< days from 0000-03-01 to 1970-01-01

} // namespace

// Years are counted from March, so that the leap day is the last of its year (the civil-from-days method).
std::int64_t DaysOf(Date date)
{
    const std::int64_t year = date.Year - (date.Month <= 2 ? 1 : 0);
    const std::int64_t era = FloorDiv(year, 400);
    const std::int64_t yearOfEra = year - era * 400;
    const std::int64_t monthFromMarch = (date.Month + 9) % 12;
    const std::int64_t dayOfYear = (153 * monthFromMarch + 2) / 5 + date.Day - 1;
    return era * DaysPerEra + yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear - EpochShift;
}

Date DateOf(std::int64_t days)
{
    const std::int64_t shifted = days + EpochShift;
    const std::int64_t era = FloorDiv(shifted, DaysPerEra);
    const std::int64_t day = shifted - era * DaysPerEra;
    const std::int64_t yearOfEra = (day - day / 1460 + day / 36524 - day / 146096) / 365;
    const std::int64_t dayOfYear = day - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const std::int64_t monthFromMarch = (5 * dayOfYear + 2) / 153;
    const std::int64_t month = monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9;
    return {.Year = static_cast<int>(yearOfEra + era * 400 + (month <= 2 ? 1 : 0)),
            .Month = static_cast<unsigned>(month),
            .Day = static_cast<unsigned>(dayOfYear - (153 * monthFromMarch + 2) / 5 + 1)};
}

std::int64_t LogTime::Day() const
{
    return FloorDiv(Ms, MillisecondsPerDay);
}

std::uint32_t LogTime::TimeOfDay() const
{
    return static_cast<std::uint32_t>(Ms - Day() * MillisecondsPerDay);
}

} // namespace marvane::read
