#include "line/file_names.h"

#include "text/digits.h"
#include "text/read_digits.h"

namespace marvane {

namespace {

// Escaped, since "??-" is a trigraph.
constexpr std::string_view EndingPattern = "_\?\?-\?\?-\?\?\?\?_\?\?-\?\?-\?\?.LGR";

// Columns of the numbers of an ending.
constexpr std::size_t Day = 1;
constexpr std::size_t Month = 4;
constexpr std::size_t Year = 7;
constexpr std::size_t Hour = 12;
constexpr std::size_t Minute = 15;
constexpr std::size_t Second = 18;

/// True if all that is no number is as in the pattern.
bool HasFrame(std::string_view ending)
{
    for (std::size_t i = 0; i < EndingPattern.size(); ++i)
        if (EndingPattern[i] != '?' && ending[i] != EndingPattern[i])
            return false;
    return true;
}

bool IsTime(const FileTime& time)
{
    return time.Month >= 1 && time.Month <= 12 && time.Day >= 1 && time.Day <= 31 && time.Hour <= 23 &&
           time.Minute <= 59 && time.Second <= 60;
}

std::optional<FileTime> ParseEnding(std::string_view ending)
{
    FileTime time;
    const char* const at = ending.data();
    const bool isNumbers = HasFrame(ending) && ReadDecimal<2>(at + Day, time.Day) &&
                           ReadDecimal<2>(at + Month, time.Month) && ReadDecimal<4>(at + Year, time.Year) &&
                           ReadDecimal<2>(at + Hour, time.Hour) && ReadDecimal<2>(at + Minute, time.Minute) &&
                           ReadDecimal<2>(at + Second, time.Second);
    return isNumbers && IsTime(time) ? std::optional(time) : std::nullopt;
}

} // namespace

std::string MakeLogFileName(LogFamily family, const std::tm& begun)
{
    // Not by strftime: the one of Windows refuses a leap second.
    char ending[] = "_00-00-0000_00-00-00.LGR";
    const auto put = [&](std::size_t column, int value) {
        PutTwoDigits(ending + column, static_cast<unsigned>(value));
    };
    put(Day, begun.tm_mday);
    put(Month, begun.tm_mon + 1);
    const int year = begun.tm_year + 1900;
    put(Year, year / 100);
    put(Year + 2, year % 100);
    put(Hour, begun.tm_hour);
    put(Minute, begun.tm_min);
    put(Second, begun.tm_sec);
    return std::string(BaseName(family)).append(ending);
}

std::string LogFilePattern(LogFamily family)
{
    return std::string(BaseName(family)).append(EndingPattern);
}

std::optional<LogFileName> ParseLogFileName(std::string_view name)
{
    if (name.size() < EndingPattern.size())
        return std::nullopt;
    const std::size_t endingAt = name.size() - EndingPattern.size();
    const std::optional<FileTime> begun = ParseEnding(name.substr(endingAt));
    if (!begun)
        return std::nullopt;
    const std::string_view base = name.substr(0, endingAt);
    if (base == BaseName(LogFamily::Api))
        return LogFileName{{}, LogFamily::Api, *begun};
    const std::string_view comms = BaseName(LogFamily::Comms);
    if (base.ends_with(comms))
        return LogFileName{base.substr(0, base.size() - comms.size()), LogFamily::Comms, *begun};
    return std::nullopt;
}

} // namespace marvane
