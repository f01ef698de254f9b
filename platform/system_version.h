// Which system this is.
#pragma once

#include <string>

namespace marvane::platform {

/// "Linux 6.1.0 x86_64", "Windows 10.0.19045".
std::string SystemVersion();

} // namespace marvane::platform
