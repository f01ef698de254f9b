// Arrows: how a decoded line shows which way its data goes and how deep it is nested.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "line/marks.h"

namespace marvane {

/// Which way data goes, seen from the application.
enum class Direction : std::uint8_t
{
    ToTarget,  ///< towards the target library: arguments, and what is sent to a vehicle
    FromTarget ///< back from it: results, and what is received
};

/// Characters of every arrow, tabs counted as one: the text of a decoded line begins after them.
inline constexpr std::size_t ArrowLength = 8;

/// The beginnings of decoded lines, by direction times 4 plus depth. ComParams inside response tables are
/// nested deeper than 3: towards the target library they then show the arrows of the other direction, and
/// back from it the last three texts. Kept: log readers match these lines.
inline constexpr std::array<std::string_view, 11> ArrowTable = {
    "   -->  ",   "    >>> ",   "\t\t -->  ",      "\t\t  >>> ", "   <--  ", "    <<< ",
    "\t\t <--  ", "\t\t  <<< ", marks::BufferFull, "",           ""};

/// Direction and depth of a decoded line.
class Arrow
{
public:
    /// `depth` is at most 3 here; Deeper goes further.
    constexpr explicit Arrow(Direction direction, unsigned depth = 0)
        : index_(static_cast<std::size_t>(direction) * Depths + depth)
    {
    }

    /// The arrow of a line nested `levels` deeper; ArrowTable tells where that ends.
    constexpr Arrow Deeper(unsigned levels = 1) const
    {
        Arrow deeper = *this;
        deeper.index_ += levels;
        return deeper;
    }

    /// What the line begins with.
    constexpr std::string_view Text() const { return ArrowTable[index_]; }

    /// The direction and depth that the text shows. Only for the eight arrows, not for the texts past them.
    constexpr Direction ShownDirection() const { return static_cast<Direction>(index_ / Depths); }
    constexpr unsigned ShownDepth() const { return static_cast<unsigned>(index_ % Depths); }

    bool operator==(const Arrow&) const = default;

private:
    static constexpr std::size_t Depths = 4;

    std::size_t index_;
};

/// The arrows of lines that are not nested.
inline constexpr Arrow ToTarget(Direction::ToTarget);
inline constexpr Arrow FromTarget(Direction::FromTarget);

/// The arrow that a text begins with: one of the eight. The text is that of a line after its stamp.
std::optional<Arrow> ParseArrow(std::string_view text);

/// The arrow between the label and the text of a comms report, blanks included.
constexpr std::string_view ReportArrow(Direction direction)
{
    return direction == Direction::ToTarget ? " -> " : " <- ";
}

/// The direction of a comms report, from its text after the label.
std::optional<Direction> ParseReportArrow(std::string_view text);

} // namespace marvane
