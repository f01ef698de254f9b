#include "platform/environment.h"

#include <vector>

#include "platform/utf8_windows.h"

namespace marvane::platform {

std::optional<std::string> EnvironmentVariable(const char* name)
{
    std::string value(256, '\0');
    for (;;) {
        SetLastError(ERROR_SUCCESS);
        const DWORD length = GetEnvironmentVariableA(name, value.data(), static_cast<DWORD>(value.size()));
        if (length == 0 && GetLastError() == ERROR_ENVVAR_NOT_FOUND)
            return std::nullopt;
        const bool fits = length < value.size();
        value.resize(length);
        if (fits)
            return value;
    }
}

std::string ExpandEnvironment(const std::string& text)
{
    const DWORD size = ExpandEnvironmentStringsA(text.c_str(), nullptr, 0);
    if (size == 0)
        return {};
    std::vector<char> expanded(size + 2);
    ExpandEnvironmentStringsA(text.c_str(), expanded.data(), size + 1);
    return expanded.data();
}

std::string HostName()
{
    wchar_t name[256];
    DWORD size = 256;
    return GetComputerNameExW(ComputerNameDnsHostname, name, &size) && size > 0 ? Utf8FromWide({name, size})
                                                                                : "localhost";
}

} // namespace marvane::platform
