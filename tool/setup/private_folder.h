// A temporary folder of this user alone.
#pragma once

#include <filesystem>

namespace marvane::tool {

/// Exists, with what is put into it, as long as this object. Nobody else had made it, and nobody else may
/// look into it.
class PrivateFolder
{
public:
    /// Throws std::runtime_error, with words for the user, if there is no place for it.
    PrivateFolder();
    ~PrivateFolder() { Remove(); }
    PrivateFolder(const PrivateFolder&) = delete;
    PrivateFolder& operator=(const PrivateFolder&) = delete;

    const std::filesystem::path& Path() const { return path_; }
    /// Removes it before its time. False if something of it is left.
    bool Remove() const;

private:
    std::filesystem::path path_;
};

} // namespace marvane::tool
