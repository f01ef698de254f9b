#include "platform/network_folder.h"

#include "platform/utf8_windows.h"

namespace marvane::platform {

bool IsOnNetwork(const std::string& folder)
{
    // The root is asked: a drive, a share, or the folder in which a volume is mounted.
    std::wstring root(folder.size() + MAX_PATH, L'\0');
    return GetVolumePathNameW(WideFromUtf8(folder).c_str(), root.data(), static_cast<DWORD>(root.size())) &&
           GetDriveTypeW(root.c_str()) == DRIVE_REMOTE;
}

std::optional<std::uintmax_t> FreeBytes(const std::string& folder)
{
    ULARGE_INTEGER available = {};
    if (!GetDiskFreeSpaceExW(WideFromUtf8(folder).c_str(), &available, nullptr, nullptr))
        return std::nullopt;
    return available.QuadPart;
}

} // namespace marvane::platform
