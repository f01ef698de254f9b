#include "tool/setup/private_folder.h"

#include <random>
#include <stdexcept>

namespace marvane::tool {

namespace {

namespace fs = std::filesystem;

constexpr int MostTries = 100; ///< each with another name

/// Makes a folder of a name that nobody has. Empty, with the reason, if that fails.
fs::path MakeFolder(std::error_code& failed)
{
    const fs::path parent = fs::temp_directory_path(failed);
    std::random_device random;
    for (int tries = 0; !failed && tries < MostTries; ++tries) {
        const fs::path path = parent / ("marvane-" + std::to_string(random()));
        if (fs::create_directory(path, failed))
            return path;
    }
    return {};
}

} // namespace

PrivateFolder::PrivateFolder()
{
    std::error_code failed;
    path_ = MakeFolder(failed);
    if (!path_.empty())
        fs::permissions(path_, fs::perms::owner_all, failed);
    if (!path_.empty() && !failed)
        return;
    Remove();
    throw std::runtime_error("no temporary folder can be made: " + failed.message());
}

bool PrivateFolder::Remove() const
{
    std::error_code failed;
    if (!path_.empty())
        fs::remove_all(path_, failed);
    return path_.empty() || !fs::exists(path_, failed);
}

} // namespace marvane::tool
