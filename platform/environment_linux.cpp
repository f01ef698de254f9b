#include "platform/environment.h"

#include <cstdlib>
#include <pwd.h>
#include <unistd.h>
#include <vector>

namespace marvane::platform {

namespace {

/// Value of a variable; an empty one counts as unset.
std::optional<std::string> NonEmptyVariable(const char* name)
{
    auto value = EnvironmentVariable(name);
    return value && !value->empty() ? value : std::nullopt;
}

/// The home folder of the user's account.
std::optional<std::string> AccountHome()
{
    std::vector<char> buffer(4096);
    passwd account;
    passwd* found = nullptr;
    if (getpwuid_r(geteuid(), &account, buffer.data(), buffer.size(), &found) != 0 || !found)
        return std::nullopt;
    return found->pw_dir && *found->pw_dir ? std::optional<std::string>(found->pw_dir) : std::nullopt;
}

std::string TemporaryFolder()
{
    for (const char* const name : {"TEMP", "TMPDIR"})
        if (auto value = NonEmptyVariable(name))
            return *value;
    return "/tmp";
}

std::optional<std::string> SettingsFolder()
{
    for (const char* const name : {"APPDATA", "XDG_CONFIG_HOME"})
        if (auto value = NonEmptyVariable(name))
            return value;
    auto home = NonEmptyVariable("HOME");
    if (!home)
        home = AccountHome();
    return home ? std::optional(*home + "/.config") : std::nullopt;
}

/// Value of a variable, with stand-ins for the two that other systems have.
std::optional<std::string> ExpandedVariable(const std::string& name)
{
    if (name == "TEMP")
        return TemporaryFolder();
    return name == "APPDATA" ? SettingsFolder() : EnvironmentVariable(name.c_str());
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

std::string HostName()
{
    char name[256];
    if (gethostname(name, sizeof name) != 0)
        return "localhost";
    name[sizeof name - 1] = 0;
    return *name ? name : "localhost";
}

} // namespace marvane::platform
