#include "platform/library.h"

#include <vector>

#include <windows.h>

namespace marvane::platform {

const char* const OwnLibraryName = "Marvane.dll";

namespace {

/// The module that holds this code.
HMODULE OwnModule()
{
    static const int ownAddress = 0;
    HMODULE module = nullptr;
    GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<const char*>(&ownAddress), &module);
    return module;
}

/// The system's message for an error.
std::string ErrorText(DWORD error)
{
    char* buffer = nullptr;
    const DWORD length = FormatMessageA(
        FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
        error, MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT), reinterpret_cast<char*>(&buffer), 0, nullptr);
    std::string text(buffer ? buffer : "", length);
    LocalFree(buffer);
    return text;
}

/// While it exists, failures on this thread show no message box: nobody may be there to close it. What the
/// application has set besides stays.
class NoMessageBoxes
{
public:
    NoMessageBoxes()
    {
        SetThreadErrorMode(former_ | SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX, nullptr);
    }
    ~NoMessageBoxes() { SetThreadErrorMode(former_, nullptr); }
    NoMessageBoxes(const NoMessageBoxes&) = delete;
    NoMessageBoxes& operator=(const NoMessageBoxes&) = delete;

private:
    const DWORD former_ = GetThreadErrorMode();
};

/// The path from the root on: the search beside the library is undefined for a relative one. The path itself
/// if there is none.
std::string FullPath(const std::string& path)
{
    std::string full(GetFullPathNameA(path.c_str(), 0, nullptr, nullptr), '\0');
    full.resize(GetFullPathNameA(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr));
    return full.empty() ? path : full;
}

/// Loads a library, or returns null with the error as the thread's last one.
HMODULE LoadByPath(const std::string& path)
{
    // A bare name is left to the search of the system: no folder is configured then.
    const bool isBare = path.find_first_of("\\/:") == std::string::npos;
    return LoadLibraryExA(isBare ? path.c_str() : FullPath(path).c_str(), nullptr,
                          LOAD_WITH_ALTERED_SEARCH_PATH);
}

DWORD ErrorOfLoad(const std::string& path, HMODULE& module)
{
    const NoMessageBoxes quiet;
    module = LoadByPath(path);
    return GetLastError();
}

} // namespace

LoadedLibrary LoadTargetLibrary(const std::string& path)
{
    HMODULE module = nullptr;
    const DWORD error = ErrorOfLoad(path, module);
    if (!module)
        return {nullptr, ErrorText(error)};
    if (module != OwnModule())
        return {module, {}};
    FreeLibrary(module);
    return {nullptr, path + ": this is the logger library itself; the library behind it is wanted"};
}

void* FindFunction(Library library, const char* name)
{
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library), name));
}

void UnloadLibrary(Library library)
{
    FreeLibrary(static_cast<HMODULE>(library));
}

ModulePath OwnModulePath(std::size_t limit)
{
    const HMODULE module = OwnModule();
    ModulePath result = {{}, module ? 0 : static_cast<std::uint32_t>(GetLastError()), 0};
    std::vector<char> buffer(limit);
    SetLastError(ERROR_SUCCESS);
    const DWORD length = GetModuleFileNameA(module, buffer.data(), static_cast<DWORD>(limit));
    if (length == 0 || length >= limit)
        result.FileNameError = GetLastError() != ERROR_SUCCESS ? GetLastError() : ERROR_INSUFFICIENT_BUFFER;
    else
        result.Path.assign(buffer.data(), length);
    return result;
}

std::optional<std::array<std::uint16_t, 4>> ProductVersion(const std::string& file)
{
    DWORD ignored = 0;
    const DWORD size = GetFileVersionInfoSizeA(file.c_str(), &ignored);
    if (size == 0)
        return std::nullopt;
    std::vector<char> record(size);
    void* block = nullptr;
    UINT length = 0;
    if (!GetFileVersionInfoA(file.c_str(), 0, size, record.data()) ||
        !VerQueryValueA(record.data(), "\\", &block, &length) || length < sizeof(VS_FIXEDFILEINFO))
        return std::nullopt;
    const auto& info = *static_cast<const VS_FIXEDFILEINFO*>(block);
    if (info.dwSignature != 0xFEEF04BD)
        return std::nullopt;
    return {{HIWORD(info.dwProductVersionMS), LOWORD(info.dwProductVersionMS),
             HIWORD(info.dwProductVersionLS), LOWORD(info.dwProductVersionLS)}};
}

} // namespace marvane::platform
