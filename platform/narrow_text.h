// The bytes that the system and old files use for text, as UTF-8.
#pragma once

#include <optional>
#include <string>

namespace marvane::platform {

/// Text of the environment or of a configuration: what is valid UTF-8 stays, all else is in the system's ANSI
/// code page on Windows. On Linux the bytes stay as they are.
std::string Utf8FromNarrow(const std::string& bytes);

/// As EnvironmentVariable and ExpandEnvironment, in UTF-8.
std::optional<std::string> Utf8Variable(const std::string& name);
std::string ExpandUtf8(const std::string& text);

} // namespace marvane::platform
