// Text with the line ends of Windows, a block at a time.
//
// Finding the line ends, copying between them and counting them for the size of the file are one pass of
// eight characters a step. Three passes, of which two go character by character in the C library, cost 130 of
// 400 ns a two-line call.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace marvane::platform {

/// As much converted text as is written at once: 15,000 characters of a call and their line ends, or a page
/// of buffered lines and a common call. Used by one thread.
class CrLfBlock
{
public:
    static constexpr std::size_t Size = 20000;

    // Left uninitialised: `size_` says what is valid.
    CrLfBlock() {}

    /// Takes as many whole lines from the beginning of `text` as have room, or else what has: a line that is
    /// longer than the block is taken in parts.
    void TakeLines(std::string_view& text)
    {
        Place place = {text.data(), bytes_ + size_};
        Place lineStart = place;
        const char* const textEnd = text.data() + text.size();
        while (textEnd - place.From >= WordSize && bytes_ + Size - place.To > WordSize)
            if (CopyWord(place))
                lineStart = place;
        while (place.From != textEnd && CopyCharacter(place))
            if (place.From[-1] == '\n')
                lineStart = place;
        if (place.From != textEnd && lineStart.To != bytes_)
            place = lineStart;
        text.remove_prefix(static_cast<std::size_t>(place.From - text.data()));
        size_ = static_cast<std::size_t>(place.To - bytes_);
    }

    std::string_view Bytes() const { return {bytes_, size_}; }

private:
    struct Place
    {
        const char* From;
        char* To;
    };

    static constexpr std::ptrdiff_t WordSize = sizeof(std::uint64_t);
    static_assert(std::endian::native == std::endian::little);

    /// Copies eight characters, or as many as there are up to a line end and this. True if there was one.
    /// Writes up to a byte more than that.
    static bool CopyWord(Place& place)
    {
        std::uint64_t word;
        std::memcpy(&word, place.From, sizeof word);
        std::memcpy(place.To, &word, sizeof word);
        // A byte of `lineEnds` has its highest bit set where a line end is; above the lowest, perhaps
        // elsewhere.
        constexpr std::uint64_t everyByte = 0x0101010101010101;
        const std::uint64_t differences = word ^ ('\n' * everyByte);
        const std::uint64_t lineEnds = (differences - everyByte) & ~differences & (0x80 * everyByte);
        if (lineEnds == 0) {
            place.From += WordSize;
            place.To += WordSize;
            return false;
        }
        const int length = std::countr_zero(lineEnds) / 8;
        place.To[length] = '\r';
        place.To[length + 1] = '\n';
        place.From += length + 1;
        place.To += length + 2;
        return true;
    }

    /// Copies a character. False if it has no room.
    bool CopyCharacter(Place& place)
    {
        const bool isLineEnd = *place.From == '\n';
        if (bytes_ + Size - place.To < (isLineEnd ? 2 : 1))
            return false;
        if (isLineEnd)
            *place.To++ = '\r';
        *place.To++ = *place.From++;
        return true;
    }

    std::size_t size_ = 0;
    char bytes_[Size];
};

} // namespace marvane::platform
