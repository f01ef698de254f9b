#include "platform/library_users.h"

#include "platform/utf8_windows.h"

#include <tlhelp32.h>

namespace marvane::platform {

namespace {

bool HasLoaded(DWORD process, const std::wstring& path)
{
    const HANDLE modules = CreateToolhelp32Snapshot(TH32CS_SNAPMODULE | TH32CS_SNAPMODULE32, process);
    if (modules == INVALID_HANDLE_VALUE)
        return false;
    MODULEENTRY32W module = {};
    module.dwSize = sizeof module;
    bool found = false;
    for (BOOL more = Module32FirstW(modules, &module); more && !found; more = Module32NextW(modules, &module))
        found = CompareStringOrdinal(module.szExePath, -1, path.c_str(), -1, TRUE) == CSTR_EQUAL;
    CloseHandle(modules);
    return found;
}

} // namespace

std::vector<LibraryUser> LibraryUsers(const std::string& path)
{
    std::vector<LibraryUser> users;
    const std::wstring wide = WideFromUtf8(path);
    const HANDLE processes = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    if (processes == INVALID_HANDLE_VALUE)
        return users;
    PROCESSENTRY32W process = {};
    process.dwSize = sizeof process;
    for (BOOL more = Process32FirstW(processes, &process); more; more = Process32NextW(processes, &process))
        if (process.th32ProcessID != 0 && process.th32ProcessID != GetCurrentProcessId() &&
            HasLoaded(process.th32ProcessID, wide))
            users.push_back({process.th32ProcessID, Utf8FromWide(process.szExeFile)});
    CloseHandle(processes);
    return users;
}

} // namespace marvane::platform
