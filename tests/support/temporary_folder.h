// A folder of a test's own, and environment variables that a test sets; both are undone at the end.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace marvane::testing {

/// A new empty folder, removed with all its contents at the end.
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

/// Sets an environment variable of this process, or with none removes it; restores it at the end.
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

/// Contents of a file from a byte on, line ends as line feeds; empty if there is no such file.
std::string FileText(const std::filesystem::path& path, std::uintmax_t from = 0);
/// The bytes of a file from one on.
std::string FileBytes(const std::filesystem::path& path, std::uintmax_t from = 0);
void WriteFileBytes(const std::filesystem::path& path, const std::string& bytes);

} // namespace marvane::testing
