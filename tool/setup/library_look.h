// A library of this machine, as far as its file tells.
#pragma once

#include <optional>
#include <string>

#include "tool/setup/binary_file.h"

namespace marvane::tool {

struct LibraryLook
{
    std::string Path;
    bool Exists = false;
    std::optional<BinaryFacts> Facts; ///< none if it is no library
};
LibraryLook LookAtLibrary(const std::string& path);

/// "4.2.0.17, 64-bit, 29 of 29 functions", or what is wrong with it.
std::string LibrarySummary(const LibraryLook& look);

/// The library behind a copy of Marvane, by the configuration beside it.
struct Chain
{
    std::string Configuration; ///< its path
    bool HasConfiguration = false;
    std::string Target; ///< path of the target library; empty if the configuration names none
};
Chain ChainOf(const std::string& marvane);

/// Whether `machine` is one that Marvane is built for on this system.
bool IsSupported(Machine machine);

/// The machine type of this command.
Machine OwnMachine();

} // namespace marvane::tool
