// Reads version notes and the names of needed libraries from an ELF file. The file is untrusted: malformed
// parts are treated as absent.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace marvane::platform {

/// The four numbers of a version note, none if the file has no such note.
std::optional<std::array<std::uint16_t, 4>> ElfProductVersion(const std::string& path);

/// Names of the libraries that a library needs, in the order of its entries.
std::vector<std::string> ElfNeededLibraries(const std::string& path);

} // namespace marvane::platform
