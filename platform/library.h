// Libraries: the target library, and the file that this one was loaded from.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace marvane::platform {

/// File name of this library as it is delivered.
extern const char* const OwnLibraryName;

/// What ProductVersion takes to find the version of this library.
std::string OwnVersionFile();

/// A loaded library. Never null in a good result.
using Library = void*;

struct LoadedLibrary
{
    Library Handle = nullptr;
    std::string Error; ///< the system's message if Handle is null
};

/// Loads a library by path; its dependencies are searched for beside it too. Calls that the library makes to
/// functions of its own stay inside it, whatever the application is linked against. A path that names
/// this library itself is refused.
LoadedLibrary LoadTargetLibrary(const std::string& path);

/// Address of an exported function, null if there is none of that name.
void* FindFunction(Library library, const char* name);

void UnloadLibrary(Library library);

struct ModulePath
{
    std::string Path;            ///< empty on failure
    std::uint32_t ModuleError;   ///< error code if the module of this library was not found, else 0
    std::uint32_t FileNameError; ///< error code if the module has no file name or a too long one, else 0
};

/// Full path of the file that this library was loaded from. If the module is not found, that of the
/// program. A path that does not fit `limit` bytes with its NUL is a failure.
ModulePath OwnModulePath(std::size_t limit);

/// Product version of a file, four numbers, major first. A bare name is searched for as the system searches
/// for a library of that name. None if the file has no version record.
std::optional<std::array<std::uint16_t, 4>> ProductVersion(const std::string& file);

} // namespace marvane::platform
