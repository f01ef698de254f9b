// The environment of the process.
#pragma once

#include <optional>
#include <string>

namespace marvane::platform {

/// Value of an environment variable, none if it is not set.
std::optional<std::string> EnvironmentVariable(const char* name);

/// Replaces each %NAME% by the variable's value; an unknown reference stays unchanged. Empty if the system
/// refuses.
std::string ExpandEnvironment(const std::string& text);

/// The machine's own name, UTF-8; "localhost" if the system has none.
std::string HostName();

} // namespace marvane::platform
