// Which processes have a library loaded.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace marvane::platform {

struct LibraryUser
{
    std::uint32_t Id = 0;
    std::string Name; ///< of the program
};

/// Processes that have loaded a library, this one apart, as far as the system lets this user see. The path is
/// UTF-8 on Windows.
std::vector<LibraryUser> LibraryUsers(const std::string& path);

} // namespace marvane::platform
