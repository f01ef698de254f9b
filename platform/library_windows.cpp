#include "platform/library.h"

#include <vector>

#include "platform/quiet_windows.h"
#include "platform/wide_text_windows.h"

namespace marvane::platform {

const char* const OwnLibraryName = "Marvane.dll";

namespace {

/// The module that holds this code.
HMODULE OwnModule()
{
    static const int ownAddress = 0;
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<const wchar_t*>(&ownAddress), &module);
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

/// The path from the root on: the search beside the library is undefined for a relative one. The path itself
/// if there is none.
std::wstring FullPath(const std::wstring& path)
{
    std::wstring full(GetFullPathNameW(path.c_str(), 0, nullptr, nullptr), L'\0');
    full.resize(GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr));
    return full.empty() ? path : full;
}

/// Loads a library, or returns null with the error as the thread's last one.
HMODULE LoadByPath(const std::wstring& path)
{
    // A bare name is left to the search of the system: no folder is configured then.
    const bool isBare = path.find_first_of(L"\\/:") == std::wstring::npos;
    return LoadLibraryExW(isBare ? path.c_str() : FullPath(path).c_str(), nullptr,
                          LOAD_WITH_ALTERED_SEARCH_PATH);
}

DWORD ErrorOfLoad(const std::string& path, HMODULE& module)
{
    const NoMessageBoxes quiet;
    module = LoadByPath(WideFromNarrow(path));
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
    std::wstring path(MAX_PATH, L'\0');
    DWORD length = GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
    while (length == path.size() && length < limit) {
        path.resize(2 * path.size());
        length = GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
    }
    const DWORD error = length == 0 ? GetLastError() : ERROR_SUCCESS;
    path.resize(length);
    result.Path = NarrowFromWide(path);
    const bool fits = !result.Path.empty() && result.Path.size() < limit;
    if (!fits) {
        result.Path.clear();
        result.FileNameError = error != ERROR_SUCCESS ? error : ERROR_INSUFFICIENT_BUFFER;
    }
    return result;
}

std::string OwnVersionFile()
{
    constexpr std::size_t noLimit = 100000;
    return OwnModulePath(noLimit).Path;
}

std::optional<std::array<std::uint16_t, 4>> ProductVersion(const std::string& file)
{
    DWORD ignored = 0;
    const std::wstring path = WideFromNarrow(file);
    const DWORD size = GetFileVersionInfoSizeW(path.c_str(), &ignored);
    if (size == 0)
        return std::nullopt;
    std::vector<char> record(size);
    void* block = nullptr;
    UINT length = 0;
    if (!GetFileVersionInfoW(path.c_str(), 0, size, record.data()) ||
        !VerQueryValueW(record.data(), L"\\", &block, &length) || length < sizeof(VS_FIXEDFILEINFO))
        return std::nullopt;
    const auto& info = *static_cast<const VS_FIXEDFILEINFO*>(block);
    if (info.dwSignature != 0xFEEF04BD)
        return std::nullopt;
    return {{HIWORD(info.dwProductVersionMS), LOWORD(info.dwProductVersionMS),
             HIWORD(info.dwProductVersionLS), LOWORD(info.dwProductVersionLS)}};
}

} // namespace marvane::platform
