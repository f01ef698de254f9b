#include "tool/input/time_range.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace marvane::tool {

namespace {

using read::LogTime;

constexpr std::int64_t Second = 1000;
constexpr std::int64_t Minute = 60 * Second;
constexpr std::int64_t Hour = 60 * Minute;

/// Takes a number with this many digits, or any if `digits` is 0, from the beginning of a text.
std::optional<unsigned> TakeNumber(std::string_view& text, std::size_t digits)
{
    unsigned number = 0;
    const char* const limit = text.data() + (digits == 0 ? text.size() : std::min(digits, text.size()));
    const auto [end, error] = std::from_chars(text.data(), limit, number);
    const auto taken = static_cast<std::size_t>(end - text.data());
    if (error != std::errc() || (digits != 0 && taken != digits))
        return std::nullopt;
    text.remove_prefix(taken);
    return number;
}

bool Take(std::string_view& text, char letter)
{
    if (!text.starts_with(letter))
        return false;
    text.remove_prefix(1);
    return true;
}

/// "500ms", "5s", "1.5s", "5m", "2h", or seconds without a unit.
std::optional<std::int64_t> ParseSpan(std::string_view text)
{
    double number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || number < 0 || number > 1e9)
        return std::nullopt;
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    std::int64_t unit = 0;
    if (text.empty() || text == "s")
        unit = Second;
    else if (text == "ms")
        unit = 1;
    else if (text == "m" || text == "min")
        unit = Minute;
    else if (text == "h")
        unit = Hour;
    if (unit == 0)
        return std::nullopt;
    return std::llround(number * static_cast<double>(unit));
}

/// Takes ".250", any number of digits.
std::optional<std::int64_t> TakeFraction(std::string_view& text)
{
    std::int64_t milliseconds = 0;
    std::int64_t place = 100;
    if (text.empty())
        return std::nullopt;
    for (; !text.empty(); text.remove_prefix(1), place /= 10) {
        if (text.front() < '0' || text.front() > '9')
            return std::nullopt;
        milliseconds += place * (text.front() - '0');
    }
    return milliseconds;
}

/// "14:03", "14:03:07", "14:03:07.250": the whole text.
std::optional<std::int64_t> ParseClock(std::string_view text)
{
    const std::optional<unsigned> hour = TakeNumber(text, text.size() > 1 && text[1] == ':' ? 1 : 2);
    if (!hour || *hour > 23 || !Take(text, ':'))
        return std::nullopt;
    const std::optional<unsigned> minute = TakeNumber(text, 2);
    if (!minute || *minute > 59)
        return std::nullopt;
    std::int64_t time = *hour * Hour + *minute * Minute;
    if (text.empty())
        return time;
    if (!Take(text, ':'))
        return std::nullopt;
    const std::optional<unsigned> second = TakeNumber(text, 2);
    if (!second || *second > 60)
        return std::nullopt;
    time += *second * Second;
    if (text.empty())
        return time;
    const std::optional<std::int64_t> fraction = Take(text, '.') ? TakeFraction(text) : std::nullopt;
    return fraction ? std::optional(time + *fraction) : std::nullopt;
}

/// Takes "2026-11-25" or "25-11-2026".
std::optional<read::Date> TakeDate(std::string_view& text)
{
    const bool yearFirst = text.size() > 4 && text[4] == '-';
    const std::optional<unsigned> first = TakeNumber(text, yearFirst ? 4 : 2);
    if (!first || !Take(text, '-'))
        return std::nullopt;
    const std::optional<unsigned> month = TakeNumber(text, 2);
    if (!month || !Take(text, '-'))
        return std::nullopt;
    const std::optional<unsigned> last = TakeNumber(text, yearFirst ? 2 : 4);
    if (!last)
        return std::nullopt;
    const unsigned year = yearFirst ? *first : *last;
    const unsigned day = yearFirst ? *last : *first;
    if (*month < 1 || *month > 12 || day < 1 || day > 31)
        return std::nullopt;
    return read::Date{static_cast<int>(year), *month, day};
}

LogTime Moment(read::Date day, std::int64_t timeOfDay)
{
    return {read::DaysOf(day) * read::MillisecondsPerDay + timeOfDay};
}

/// Finds the time of the last line.
struct LastTime : read::LogSink
{
    std::optional<LogTime> Last;
    void OnLine(const read::Line& line) override { Last = std::max(Last.value_or(line.Time), line.Time); }
};

/// The end of a log: that of its last files, of which only the ends are read where they are plain.
LogTime EndOf(const std::vector<read::LogFile>& files)
{
    constexpr std::size_t families = 2; // A comms log may end after the API log.
    LastTime sink;
    read::LogReader reader(sink, read::Wants::Lines);
    const std::size_t first = files.size() - std::min(files.size(), families);
    for (std::size_t i = first; i < files.size(); ++i) {
        if (files[i].IsStandardInput)
            throw Trouble("a time before the end of the log needs a file, not standard input");
        read::ReadLogFile(files[i], reader, {LogTime{std::numeric_limits<std::int64_t>::max() / 2}});
    }
    reader.Finish();
    return sink.Last.value_or(files.back().Begin.NameTime);
}

} // namespace

std::optional<TimeText> ParseTime(std::string_view text)
{
    if (Take(text, '-')) {
        const std::optional<std::int64_t> span = ParseSpan(text);
        return span ? std::optional(TimeText{{}, 0, span}) : std::nullopt;
    }
    TimeText time;
    if (text.size() > 2 && text.substr(0, 5).find(':') == std::string_view::npos) {
        time.Day = TakeDate(text);
        if (!time.Day || (!text.empty() && !Take(text, ' ') && !Take(text, 'T')))
            return std::nullopt;
        if (text.empty())
            return time;
    }
    const std::optional<std::int64_t> clock = ParseClock(text);
    if (!clock)
        return std::nullopt;
    time.TimeOfDay = *clock;
    return time;
}

LogTime Resolve(const TimeText& time, LogTime begin, LogTime end)
{
    if (time.BeforeEnd)
        return {end.Ms - *time.BeforeEnd};
    if (time.Day)
        return Moment(*time.Day, time.TimeOfDay);
    const LogTime sameDay = {begin.Day() * read::MillisecondsPerDay + time.TimeOfDay};
    // Only a log that reaches into the next day can mean that one.
    const LogTime nextDay = {sameDay.Ms + read::MillisecondsPerDay};
    return sameDay < begin && nextDay <= end ? nextDay : sameDay;
}

std::optional<LogTime> TimeOf(std::string_view option, const Arguments& arguments,
                              const std::vector<read::LogFile>& files)
{
    const std::optional<std::string> text = arguments.Value(option);
    if (!text)
        return std::nullopt;
    const std::optional<TimeText> time = ParseTime(*text);
    if (!time)
        throw UsageError(std::string(option) +
                         " takes a time such as 14:03:07, '2026-11-25 14:03' or -5m, not '" + *text + "'");
    if (files.empty())
        return LogTime();
    const LogTime begin = files.front().Begin.NameTime;
    const bool needsEnd = time->BeforeEnd || (!time->Day && begin.TimeOfDay() > time->TimeOfDay &&
                                              files.front().Begin.HasNameTime);
    return Resolve(*time, begin, needsEnd ? EndOf(files) : begin);
}

TimeRange TimeRangeOf(const Arguments& arguments, const std::vector<read::LogFile>& files)
{
    return {TimeOf("--since", arguments, files), TimeOf("--until", arguments, files)};
}

} // namespace marvane::tool
