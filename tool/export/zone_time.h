// Times of the log as RFC 3339 has them: with date, milliseconds and the offset of the zone.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "tool/read/log_time.h"

namespace marvane::tool {

/// "+01:00", "-05:30", "Z" in minutes; none for anything else.
std::optional<int> ParseZone(std::string_view text);

/// Appends times. Without a zone the machine's applies, with the offset that it has at each time.
class ZoneTime
{
public:
    explicit ZoneTime(std::optional<int> zone = {}) : zone_(zone) {}

    /// "2026-11-25T14:03:07.250+01:00"
    void Append(std::string& out, read::LogTime time);
    /// Minutes between UTC and local time then.
    int OffsetAt(read::LogTime time);

private:
    void Renew(read::LogTime time);

    std::optional<int> zone_;
    std::int64_t hour_ = INT64_MIN; ///< the hour that the texts are of
    std::string before_;            ///< "2026-11-25T14:"
    std::string after_;             ///< "+01:00"
};

/// "2026-11-25"
std::string DayText(std::int64_t day);

} // namespace marvane::tool
