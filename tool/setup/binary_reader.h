// Bounded reading of little-endian structures, and the two readers that use it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "tool/setup/binary_file.h"

namespace marvane::tool {

/// No list of an honest library comes near this many entries.
inline constexpr std::uint64_t MostBinaryEntries = 1u << 17;
/// Sections, segments, dynamic entries, imported libraries: a limit for each list that is walked for each
/// address.
inline constexpr std::uint64_t MostParts = 512;

/// Bytes that are read by offset; whatever lies outside reads as 0.
class BinaryView
{
public:
    explicit BinaryView(std::string_view bytes) : bytes_(bytes) {}

    std::uint64_t Number(std::uint64_t offset, unsigned size) const
    {
        std::uint64_t value = 0;
        for (unsigned i = size; i-- > 0;)
            value = value << 8 | (Holds(offset + i, 1) ? Byte(offset + i) : 0u);
        return value;
    }
    std::uint16_t Word(std::uint64_t offset) const { return static_cast<std::uint16_t>(Number(offset, 2)); }
    std::uint32_t Long(std::uint64_t offset) const { return static_cast<std::uint32_t>(Number(offset, 4)); }

    /// A NUL-terminated string of at most 1,024 bytes; empty if it has no end.
    std::string Text(std::uint64_t offset) const
    {
        if (!Holds(offset, 1))
            return {};
        const std::string_view text = bytes_.substr(static_cast<std::size_t>(offset), 1025);
        const std::size_t end = text.find('\0');
        return end == std::string_view::npos ? std::string() : std::string(text.substr(0, end));
    }

    bool Holds(std::uint64_t offset, std::uint64_t size) const
    {
        return offset <= bytes_.size() && size <= bytes_.size() - offset;
    }
    std::string_view Bytes() const { return bytes_; }

private:
    unsigned char Byte(std::uint64_t offset) const
    {
        return static_cast<unsigned char>(bytes_[static_cast<std::size_t>(offset)]);
    }

    std::string_view bytes_;
};

/// None if the bytes are of another format.
std::optional<BinaryFacts> InspectPe(const BinaryView& file);
std::optional<BinaryFacts> InspectElf(const BinaryView& file);

} // namespace marvane::tool
