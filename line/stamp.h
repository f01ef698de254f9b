// The stamp that every line of a log begins with: "{14:03:07.250 - 00001A2C} ".
//
// All lines of one phase of a call carry one stamp, so the time is that of the phase and not of the line.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "text/digits.h"

namespace marvane {

/// What a stamp says: local time of day, and the id of the thread that wrote the line.
struct Stamp
{
    std::uint16_t Hour = 0;
    std::uint16_t Minute = 0;
    std::uint16_t Second = 0; ///< 60 in a leap second
    std::uint16_t Milliseconds = 0;
    std::uint32_t Thread = 0;

    bool operator==(const Stamp&) const = default;
};

/// Characters of a stamp, the blank after it included.
inline constexpr std::size_t StampLength = 26;

/// Writes the StampLength characters of a stamp. Returns their end. The time must be one that ParseStamp
/// accepts.
char* PutStamp(char* out, Stamp stamp);

/// Overwrites the milliseconds of a stamp that PutStamp wrote: within a second nothing else changes.
inline void PutStampMilliseconds(char* stamp, unsigned milliseconds)
{
    constexpr std::size_t column = 10;
    stamp[column] = static_cast<char>('0' + milliseconds / 100);
    PutTwoDigits(stamp + column + 1, milliseconds % 100);
}

/// The stamp that a text begins with, if it begins with one. Lines that are the continuation of a text with
/// line breaks have none.
std::optional<Stamp> ParseStamp(std::string_view text);

} // namespace marvane
