// The registry of Windows; elsewhere there is none.
#pragma once

#include <optional>
#include <string>

namespace marvane::platform {

/// 64-bit and 32-bit programs see different parts of HKEY_LOCAL_MACHINE\SOFTWARE.
enum class RegistryView
{
    Bits64,
    Bits32
};

/// A string value of HKEY_LOCAL_MACHINE with its environment references expanded, in UTF-8. None if there is
/// no such value.
std::optional<std::string> MachineRegistryText(RegistryView view, const std::string& key,
                                               const std::string& value);

} // namespace marvane::platform
