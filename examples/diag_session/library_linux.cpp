#include <dlfcn.h>

#include "examples/diag_session/api.h"

namespace diag {

void* OpenLibrary(const std::string& path, std::string& error)
{
    void* const library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!library)
        error = dlerror();
    return library;
}

void* FunctionAddress(void* library, const char* name)
{
    return dlsym(library, name);
}

} // namespace diag
