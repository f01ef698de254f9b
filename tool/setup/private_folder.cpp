#include "tool/setup/private_folder.h"

#include <random>

namespace marvane::tool {

namespace fs = std::filesystem;

PrivateFolder::PrivateFolder()
{
    const fs::path parent = fs::temp_directory_path();
    std::random_device random;
    do
        path_ = parent / ("marvane-" + std::to_string(random()));
    while (!fs::create_directory(path_));
    std::error_code failed;
    fs::permissions(path_, fs::perms::owner_all, failed);
    if (!failed)
        return;
    Remove();
    throw fs::filesystem_error("no temporary folder of our own", path_, failed);
}

bool PrivateFolder::Remove() const
{
    std::error_code failed;
    fs::remove_all(path_, failed);
    return !fs::exists(path_, failed);
}

} // namespace marvane::tool
