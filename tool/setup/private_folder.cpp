#include "tool/setup/private_folder.h"

#include <random>
#include <stdexcept>

namespace marvane::tool {

namespace {

namespace fs = std::filesystem;

constexpr int MostTries = 100; ///< each with another name

fs::path MakeFolder()
{
    std::error_code failed;
    const fs::path parent = fs::temp_directory_path(failed);
    std::random_device random;
    for (int tries = 0; !failed && tries < MostTries; ++tries) {
        const fs::path path = parent / ("marvane-" + std::to_string(random()));
        if (!fs::create_directory(path, failed))
            continue;
        fs::permissions(path, fs::perms::owner_all, failed);
        if (!failed)
            return path;
        std::error_code ignored;
        fs::remove(path, ignored);
    }
    throw std::runtime_error("no temporary folder can be made: " + failed.message());
}

} // namespace

PrivateFolder::PrivateFolder() : path_(MakeFolder()) {}

bool PrivateFolder::Remove() const
{
    std::error_code failed;
    fs::remove_all(path_, failed);
    return !fs::exists(path_, failed);
}

} // namespace marvane::tool
