// Narrow strings of paths and of the environment, which have two encodings on Windows: a string that is valid
// UTF-8 is UTF-8, any other is in the system's ANSI code page. All functions of this layer take both. On
// Linux the bytes stay as they are.
#pragma once

#include <optional>
#include <string>

namespace marvane::platform {

/// A narrow string in UTF-8.
std::string Utf8FromNarrow(const std::string& bytes);

/// Makes two narrow strings ready to be joined: if they are in different encodings, both become UTF-8.
void MatchEncodings(std::string& first, std::string& second);

/// As EnvironmentVariable and ExpandEnvironment, in UTF-8.
std::optional<std::string> Utf8Variable(const std::string& name);
std::string ExpandUtf8(const std::string& text);

} // namespace marvane::platform
