// The lines of `marvane show`.
#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <string>

#include "tool/commands/call_stream.h"
#include "tool/console/console.h"

namespace marvane::tool {

enum class TimeStyle : std::uint8_t
{
    Absolute, ///< the stamp as the log has it
    Relative, ///< since the beginning of the log
    Delta,    ///< since the line that was shown before
};

/// Writes units that are selected, with context and separators between those that are apart.
class UnitPrinter
{
public:
    struct Style
    {
        TimeStyle Time = TimeStyle::Absolute;
        std::uint64_t Before = 0; ///< units of context
        std::uint64_t After = 0;
        std::uint64_t Most = UINT64_MAX; ///< selected units that are written
    };

    /// `console` outlives it.
    UnitPrinter(const Style& style, Console& console) : console_(console), style_(style) {}

    bool HasContext() const { return style_.Before + style_.After > 0; }
    /// Nothing that is given from now on will be written.
    bool IsDone() const { return shown_ >= style_.Most && afterLeft_ == 0; }
    std::uint64_t Shown() const { return shown_; }

    /// The time that the log begins; only the first one counts.
    void Begin(read::LogTime time);

    /// All units in their order, selected or not; only selected ones if no context is wanted.
    void Give(const Unit& unit);

private:
    void Remember(const Unit& unit);
    void WriteContext();
    void Write(const Unit& unit);
    void WriteLine(const Unit& unit, const LogLines::Entry& entry);
    std::string Stamp(const LogLines::Entry& entry, std::string_view whole) const;

    Console& console_;
    Style style_;
    std::uint64_t shown_ = 0;
    std::uint64_t afterLeft_ = 0;
    bool hasGap_ = false; ///< since the unit that was shown last, some were left out
    std::deque<Unit> context_;
    std::optional<read::LogTime> zero_;
    std::optional<read::LogTime> last_;
};

} // namespace marvane::tool
