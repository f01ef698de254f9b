// Paths that follow from the configuration: its own file, the target library, the log folder. Pure: the
// folder of the logger library, the separator and the expander of environment references come from the
// caller.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace marvane {

/// Replaces each %NAME% in a text by the value of the environment variable.
using Expander = std::function<std::string(const std::string&)>;

/// Name of the environment variable that names another configuration file.
inline constexpr const char* ConfigurationVariable = "PDU_CFG_FILE";

/// The path limits of the library, in bytes. Paths that are longer are cut.
inline constexpr std::size_t TargetPathLimit = 260;
inline constexpr std::size_t LogFolderLimit = 256;
inline constexpr std::size_t MadeFolderLimit = 255;

/// The configuration file beside a library: the library's path with another file name.
std::string ConfigurationBeside(std::string libraryPath, char separator);

/// The folder of a file with its separator; empty if the path has none.
std::string FolderOf(const std::string& path, char separator);

/// True if InstalledPath is the single dot that stands for the folder of the logger library. "./" is not.
bool IsStandAlone(const std::string& installedPath);

/// Path of the target library: folder and file name joined as they are, without a separator in between.
std::string JoinTargetPath(const std::string& folder, const std::string& fileName);

/// The log folder from the value of LogFileDir. References are expanded twice, so that those in the value of
/// a variable count too.
std::string LogFolder(const std::string& value, const Expander& expand);

/// The folders to be made, one after the other, for a log folder to exist. A path that begins with a
/// separator begins with an empty one, unless it is "\\server\share" on Windows, which exists.
std::vector<std::string> FoldersToMake(const std::string& logFolder, char separator);

} // namespace marvane
