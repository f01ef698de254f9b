#include "line/arrows.h"

#include <cstring>

namespace marvane {

namespace {

using Word = std::uint64_t;
static_assert(sizeof(Word) == ArrowLength);

Word WordOf(std::string_view arrow)
{
    Word word;
    std::memcpy(&word, arrow.data(), sizeof word);
    return word;
}

} // namespace

std::optional<Arrow> ParseArrow(std::string_view text)
{
    constexpr unsigned directions = 2;
    constexpr unsigned depths = 4;
    if (text.size() < ArrowLength)
        return std::nullopt;
    // One comparison of eight characters an arrow: compilers make constants of the table's words.
    const Word word = WordOf(text);
    for (unsigned direction = 0; direction < directions; ++direction)
        for (unsigned depth = 0; depth < depths; ++depth) {
            const Arrow arrow(static_cast<Direction>(direction), depth);
            if (word == WordOf(arrow.Text()))
                return arrow;
        }
    return std::nullopt;
}

std::optional<Direction> ParseReportArrow(std::string_view text)
{
    for (const Direction direction : {Direction::ToTarget, Direction::FromTarget})
        if (text.starts_with(ReportArrow(direction)))
            return direction;
    return std::nullopt;
}

} // namespace marvane
