#include "platform/environment.h"

#include <cstdlib>

namespace marvane::platform {

namespace {

/// Value of a variable with the stand-ins for the two that other systems have.
std::optional<std::string> ExpandedVariable(const std::string& name)
{
    if (auto value = EnvironmentVariable(name.c_str()))
        return value;
    if (name == "TEMP")
        return EnvironmentVariable("TMPDIR").value_or("/tmp");
    if (name != "APPDATA")
        return std::nullopt;
    if (auto value = EnvironmentVariable("XDG_CONFIG_HOME"))
        return value;
    const auto home = EnvironmentVariable("HOME");
    return home ? std::optional(*home + "/.config") : std::nullopt;
}

} // namespace

std::optional<std::string> EnvironmentVariable(const char* name)
{
    const char* const value = std::getenv(name);
    return value ? std::optional<std::string>(value) : std::nullopt;
}

std::string ExpandEnvironment(const std::string& text)
{
    std::string expanded;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t open = text.find('%', at);
        const std::size_t close = open == std::string::npos ? open : text.find('%', open + 1);
        if (close == std::string::npos)
            return expanded + text.substr(at);
        expanded += text.substr(at, open - at);
        if (const auto value = ExpandedVariable(text.substr(open + 1, close - open - 1))) {
            expanded += *value;
            at = close + 1;
        } else {
            // The second sign may begin a reference of its own.
            expanded += text.substr(open, close - open);
            at = close;
        }
    }
    return expanded;
}

} // namespace marvane::platform
