#include "tests/fuzz/troubled_folder.h"

#include <system_error>

namespace marvane::testing {

namespace fs = std::filesystem;

void TroubledFolder::Remove()
{
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

void TroubledFolder::MakeReadOnly()
{
    std::error_code ignored;
    fs::permissions(path_, fs::perms::owner_read | fs::perms::owner_exec, ignored);
    readOnly_ = true;
}

void TroubledFolder::AddFolderNamedLikeALog()
{
    std::error_code ignored;
    fs::create_directory(path_ / "D-PDU_API_Logger_99-99-9999_00-00-00.LGR", ignored);
}

void TroubledFolder::Mend()
{
    std::error_code ignored;
    fs::permissions(path_, fs::perms::owner_all, ignored);
    fs::create_directories(path_, ignored);
    readOnly_ = false;
}

} // namespace marvane::testing
