#include "tests/support/network_folder.h"

#include "platform/environment.h"

namespace marvane::testing {

NetworkFolder::NetworkFolder(const char* variable)
{
    const std::string place = platform::EnvironmentVariable(variable).value_or("");
    if (place.empty())
        return;
    // Its name is that of a folder which no other test has.
    const TemporaryFolder unique;
    path_ = place + "\\" + PathText(unique.Path().filename()) + "\\";
    std::filesystem::create_directory(FilePath(path_));
}

NetworkFolder::~NetworkFolder()
{
    std::error_code ignored;
    if (Exists())
        std::filesystem::remove_all(FilePath(path_), ignored);
}

} // namespace marvane::testing
