#include "platform/library_users.h"

#include <filesystem>
#include <fstream>

#include <unistd.h>

namespace marvane::platform {

namespace {

bool HasMapped(const std::filesystem::path& process, const std::string& path)
{
    std::ifstream maps(process / "maps");
    for (std::string line; std::getline(maps, line);)
        if (line.ends_with(" " + path))
            return true;
    return false;
}

} // namespace

std::vector<LibraryUser> LibraryUsers(const std::string& path)
{
    std::vector<LibraryUser> users;
    std::error_code failed;
    const std::string real = std::filesystem::weakly_canonical(path, failed).string();
    for (std::filesystem::directory_iterator at("/proc", failed);
         !failed && at != std::filesystem::directory_iterator(); at.increment(failed)) {
        const std::string name = at->path().filename().string();
        if (name.find_first_not_of("0123456789") != std::string::npos || name == std::to_string(getpid()) ||
            !HasMapped(at->path(), real))
            continue;
        LibraryUser user{static_cast<std::uint32_t>(std::stoul(name)), {}};
        std::ifstream command(at->path() / "comm");
        std::getline(command, user.Name);
        users.push_back(std::move(user));
    }
    return users;
}

} // namespace marvane::platform
