#include "platform/registry.h"

namespace marvane::platform {

std::optional<std::string> MachineRegistryText(RegistryView, const std::string&, const std::string&)
{
    return std::nullopt;
}

} // namespace marvane::platform
