#include "platform/system_version.h"

#include <windows.h>

namespace marvane::platform {

std::string SystemVersion()
{
    // GetVersionEx reports an older version to programs without a manifest.
    using Query = LONG(WINAPI*)(OSVERSIONINFOW*);
    const HMODULE module = GetModuleHandleW(L"ntdll.dll");
    const auto query = reinterpret_cast<Query>(
        reinterpret_cast<void*>(module ? GetProcAddress(module, "RtlGetVersion") : nullptr));
    OSVERSIONINFOW version = {};
    version.dwOSVersionInfoSize = sizeof version;
    if (!query || query(&version) != 0)
        return "Windows";
    return "Windows " + std::to_string(version.dwMajorVersion) + "." +
           std::to_string(version.dwMinorVersion) + "." + std::to_string(version.dwBuildNumber);
}

} // namespace marvane::platform
