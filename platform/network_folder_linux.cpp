#include "platform/network_folder.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <filesystem>

#include <sys/vfs.h>

namespace marvane::platform {

namespace {

// statfs(2) names these numbers; no header of the C library has all of them.
constexpr std::array<std::uint32_t, 8> NetworkFileSystems = {
    0x6969,     // NFS
    0xFF534D42, // CIFS
    0xFE534D42, // SMB2
    0x517B,     // SMB
    0x01021997, // 9P
    0x5346414F, // AFS
    0x73757245, // Coda
    0x00C36400, // Ceph
};

} // namespace

bool IsOnNetwork(const std::string& folder)
{
    struct statfs system = {};
    return statfs(folder.c_str(), &system) == 0 &&
           std::ranges::count(NetworkFileSystems, static_cast<std::uint32_t>(system.f_type)) != 0;
}

std::optional<std::uintmax_t> FreeBytes(const std::string& folder)
{
    std::error_code failed;
    const std::filesystem::space_info space = std::filesystem::space(folder, failed);
    return failed ? std::nullopt : std::optional(space.available);
}

} // namespace marvane::platform
