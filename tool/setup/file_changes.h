// Changes of several files that are all made or all taken back.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace marvane::tool {

/// What the name of a library ends with that was renamed because it was in use.
inline constexpr const char* OldMark = ".marvane-old";

class FileChanges
{
public:
    FileChanges() = default;
    /// Takes back what was done, unless Keep was called.
    ~FileChanges();
    FileChanges(const FileChanges&) = delete;
    FileChanges& operator=(const FileChanges&) = delete;

    // Each of these throws InstallRefused with the path and the system's reason.

    /// Creates a folder and its missing parents.
    void MakeFolders(const std::string& path);
    /// Creates a file; it appears with all its bytes or not at all.
    void Create(const std::string& path, std::string_view bytes);
    /// Puts other bytes into a file that holds `old`; fails if it holds something else by then.
    void Replace(const std::string& path, const std::string& old, std::string_view bytes);
    /// Puts other bytes into a library that may be in use: the old file is renamed and removed if possible.
    void ReplaceInUse(const std::string& path, std::string_view bytes);

    /// From here on nothing is taken back.
    void Keep() { undo_.clear(); }

    /// Called before each single change; a test makes it throw.
    static std::function<void()> BeforeChange;
    /// A test that plays a power failure sets it: nothing is taken back.
    static bool Abandoned;

private:
    std::vector<std::function<void()>> undo_; ///< the last change last
};

/// Removes a file that may be in use: where it can't be removed it is renamed, for RemoveOldFiles. False
/// then.
bool RemoveOrRename(const std::string& path);

/// Removes the files in a folder that were renamed because they were in use, as far as nobody uses them now.
void RemoveOldFiles(const std::string& folder);

} // namespace marvane::tool
