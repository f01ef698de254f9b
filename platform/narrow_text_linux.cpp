#include "platform/narrow_text.h"

#include "platform/environment.h"

namespace marvane::platform {

std::string Utf8FromNarrow(const std::string& bytes)
{
    return bytes;
}

void MatchEncodings(std::string&, std::string&) {}

std::optional<std::string> Utf8Variable(const std::string& name)
{
    return EnvironmentVariable(name.c_str());
}

std::string ExpandUtf8(const std::string& text)
{
    return ExpandEnvironment(text);
}

} // namespace marvane::platform
