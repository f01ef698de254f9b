// Which calls `show` shows.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tool/commands/log_lines.h"
#include "tool/input/time_range.h"

namespace marvane::tool {

class ShowFilter
{
public:
    /// Throws UsageError for a value that is none.
    ShowFilter(const Arguments& arguments, TimeRange range);

    /// Whether a call or callback is meant. `link` is the name of its link, empty if it is unknown.
    bool Takes(const read::Call& call, bool isEvent, std::string_view link, const LogLines& lines) const;

    /// Whether lines that belong to no call are meant: they are not if the filter asks for something that
    /// only calls have.
    bool TakesLoose(const LogLines& lines, std::uint32_t thread) const;
    const TimeRange& Range() const { return range_; }
    /// Whether Takes needs the name of the link.
    bool AsksForLinks() const { return !links_.empty(); }

private:
    bool TakesText(const LogLines& lines) const;
    bool TakesName(const read::Call& call) const;
    bool TakesStatus(const read::Call& call) const;
    bool TakesLink(const read::Call& call, std::string_view link) const;

    TimeRange range_;
    std::vector<std::string> names_;
    std::vector<std::string> statuses_;
    std::vector<std::string> links_;
    std::vector<TextSearch> texts_;
    std::optional<std::uint32_t> module_;
    std::optional<std::uint32_t> thread_;
    std::uint64_t firstCall_ = 0;
    std::uint64_t lastCall_ = UINT64_MAX;
    bool errors_ = false;
    bool inverted_ = false;
    bool isAboutCalls_ = false;
};

} // namespace marvane::tool
