// The log folder of a sequence, and what may befall it.
#pragma once

#include <filesystem>

namespace marvane::testing {

/// No operation reports errors: a trouble that the system refuses is none.
class TroubledFolder
{
public:
    explicit TroubledFolder(std::filesystem::path path) : path_(std::move(path)) {}

    void Remove();
    void MakeReadOnly();
    /// Creates a folder with the name of a log file.
    void AddFolderNamedLikeALog();
    /// Creates the folder if it is missing, and makes it writable.
    void Mend();

    bool Exists() const { return std::filesystem::exists(path_); }
    bool IsReadOnly() const { return readOnly_; }

private:
    std::filesystem::path path_;
    bool readOnly_ = false;
};

} // namespace marvane::testing
