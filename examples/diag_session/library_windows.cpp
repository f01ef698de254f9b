#include <windows.h>

#include "examples/diag_session/api.h"

namespace diag {

void* OpenLibrary(const std::string& path, std::string& error)
{
    const HMODULE library = LoadLibraryExA(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    if (!library)
        error = "Windows error " + std::to_string(GetLastError());
    return library;
}

void* FunctionAddress(void* library, const char* name)
{
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library), name));
}

} // namespace diag
