// What this library reads of an ELF file: version notes and the names of needed libraries. Nothing in the
// file is trusted; what does not fit is as if it were not there.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace marvane::platform {

/// The four numbers of a version note, none if the file has no such note.
std::optional<std::array<std::uint16_t, 4>> ElfProductVersion(const std::string& path);

/// Names of the libraries that a library needs, in its own order.
std::vector<std::string> ElfNeededLibraries(const std::string& path);

} // namespace marvane::platform
