#include "platform/library.h"

#include <cerrno>
#include <cstring>
#include <dlfcn.h>
#include <link.h>
#include <set>
#include <unistd.h>
#include <vector>

#include "platform/elf_file.h"

namespace marvane::platform {

const char* const OwnLibraryName = "libMarvane.so";

namespace {

// Deep binding would bypass the functions of a sanitizer.
#ifdef MARVANE_SANITIZED
constexpr int LoadFlags = RTLD_NOW | RTLD_LOCAL;
#else
constexpr int LoadFlags = RTLD_NOW | RTLD_LOCAL | RTLD_DEEPBIND;
#endif

const int OwnAddress = 0;

Dl_info OwnModule()
{
    Dl_info info = {};
    dladdr(&OwnAddress, &info);
    return info;
}

std::string FolderOf(const std::string& path)
{
    return path.substr(0, path.rfind('/') + 1);
}

bool IsOwn(void* handle)
{
    const link_map* map = nullptr;
    return dlinfo(handle, RTLD_DI_LINKMAP, &map) == 0 &&
           reinterpret_cast<const void*>(map->l_addr) == OwnModule().dli_fbase;
}

using Handles = std::vector<void*>;

/// Loads the libraries that a library needs and that are in its folder, dependencies first. The loader then
/// finds them by name when it loads the library itself.
void LoadNeededBeside(const std::string& path, std::set<std::string>& visited, Handles& loaded)
{
    for (const std::string& name : ElfNeededLibraries(path)) {
        const std::string beside = FolderOf(path) + name;
        if (name.empty() || access(beside.c_str(), R_OK) != 0 || !visited.insert(beside).second)
            continue;
        LoadNeededBeside(beside, visited, loaded);
        if (void* const handle = dlopen(beside.c_str(), LoadFlags))
            loaded.push_back(handle);
    }
}

LoadedLibrary LoadByPath(const std::string& path)
{
    if (void* const handle = dlopen(path.c_str(), LoadFlags))
        return {handle, {}};
    const char* const error = dlerror();
    return {nullptr, error ? error : "unknown error"};
}

LoadedLibrary LoadWithNeededBeside(const std::string& path)
{
    std::set<std::string> visited = {path};
    Handles loaded;
    LoadNeededBeside(path, visited, loaded);
    LoadedLibrary library = LoadByPath(path);
    for (void* needed : loaded)
        dlclose(needed);
    return library;
}

} // namespace

LoadedLibrary LoadTargetLibrary(const std::string& path)
{
    // An empty path would load the program itself.
    if (path.empty())
        return {nullptr, "no file name"};
    LoadedLibrary library = LoadByPath(path);
    // The loader searches for a bare name; only a path has a folder.
    if (!library.Handle && path.find('/') != std::string::npos)
        library = LoadWithNeededBeside(path);
    if (!library.Handle || !IsOwn(library.Handle))
        return library;
    dlclose(library.Handle);
    return {nullptr, path + ": this is the logger library itself; the library behind it is wanted"};
}

void* FindFunction(Library library, const char* name)
{
    return dlsym(library, name);
}

void UnloadLibrary(Library library)
{
    dlclose(library);
}

ModulePath OwnModulePath(std::size_t limit)
{
    const char* const name = OwnModule().dli_fname;
    if (!name)
        return {{}, ENOENT, 0};
    if (std::strlen(name) >= limit)
        return {{}, 0, ENAMETOOLONG};
    return {name, 0, 0};
}

std::string OwnVersionFile()
{
    return OwnLibraryName;
}

std::optional<std::array<std::uint16_t, 4>> ProductVersion(const std::string& file)
{
    if (file.find('/') != std::string::npos)
        return ElfProductVersion(file);
    // A bare name means the library that the loader has under it; our own name means this library.
    const char* const own = OwnModule().dli_fname;
    if (own && std::string(own).substr(std::string(own).rfind('/') + 1) == file)
        return ElfProductVersion(own);
    void* const handle = dlopen(file.c_str(), RTLD_LAZY | RTLD_NOLOAD);
    const link_map* map = nullptr;
    std::optional<std::array<std::uint16_t, 4>> version;
    if (handle && dlinfo(handle, RTLD_DI_LINKMAP, &map) == 0)
        version = ElfProductVersion(map->l_name);
    if (handle)
        dlclose(handle);
    return version;
}

} // namespace marvane::platform
