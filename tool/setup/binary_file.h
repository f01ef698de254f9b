// What a library file says about itself, read from its bytes: nothing is loaded, and nothing in the file is
// trusted.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace marvane::tool {

enum class BinaryFormat : std::uint8_t
{
    Pe, ///< Windows
    Elf ///< Linux
};

enum class Machine : std::uint8_t
{
    Other,
    X86,
    X64,
    Arm64,
};

/// "32-bit", "64-bit", "64-bit ARM" or "of another machine".
const char* MachineText(Machine machine);

struct BinaryFacts
{
    BinaryFormat Format = BinaryFormat::Elf;
    bool IsLibrary = false; ///< false for a program
    Machine For = Machine::Other;
    std::set<std::string> Exports;
    std::optional<std::array<std::uint16_t, 4>> Version; ///< product version, major first
    std::vector<std::string> Needed;                     ///< names of the libraries that it loads
    std::vector<std::string> SearchPaths;                ///< where an ELF file has its libraries looked for
    bool IsMarvane = false;                              ///< the logger library itself
};

/// Reads the bytes of a file; none if they are neither PE nor ELF. Parts that do not fit the file count as
/// absent.
std::optional<BinaryFacts> InspectBinary(std::string_view bytes);

/// The functions of the API that a library lacks, in the order of their slots.
std::vector<std::string> MissingFunctions(const BinaryFacts& facts);

/// "4.2.0.17"
std::string VersionText(const std::array<std::uint16_t, 4>& version);

} // namespace marvane::tool
