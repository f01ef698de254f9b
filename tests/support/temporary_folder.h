// Temporary folders and environment variables for one test, both undone at its end; reading and writing
// files.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "platform/utf8_path.h"

namespace marvane::testing {

// Paths of ASCII alone need neither.
using platform::FilePath;
using platform::PathText;

/// A new empty folder, removed with its contents at the end. Errors of the removal are ignored.
class TemporaryFolder
{
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& Path() const { return path_; }
    std::string operator/(const std::string& name) const { return (path_ / name).string(); }

private:
    std::filesystem::path path_;
};

/// Sets an environment variable of this process (UTF-8), or removes it if there is no value; restores it at
/// the end.
class EnvironmentValue
{
public:
    EnvironmentValue(std::string name, const std::optional<std::string>& value);
    ~EnvironmentValue();
    EnvironmentValue(const EnvironmentValue&) = delete;
    EnvironmentValue& operator=(const EnvironmentValue&) = delete;

private:
    std::string name_;
    std::optional<std::string> former_;
};

/// Contents of a file from an offset on, with CR LF turned into LF; empty if the file does not exist.
std::string FileText(const std::filesystem::path& path, std::uintmax_t from = 0);
/// Bytes of a file from an offset on; empty if the file does not exist.
std::string FileBytes(const std::filesystem::path& path, std::uintmax_t from = 0);
void WriteFileBytes(const std::filesystem::path& path, const std::string& bytes);

} // namespace marvane::testing
