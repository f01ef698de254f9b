#include "platform/shared_words.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>

#include "platform/wide_text_windows.h"

namespace marvane::platform {

bool SharedWords::Open(const std::string& path, std::size_t count, std::int32_t fill, std::string& error)
{
    error.clear();
    if (descriptor_ == -1) {
        constexpr int flags = _O_RDWR | _O_BINARY | _O_NOINHERIT;
        const std::wstring file = WideFromNarrow(path);
        if (_wsopen_s(&descriptor_, file.c_str(), flags, _SH_DENYNO, 0) != 0 &&
            _wsopen_s(&descriptor_, file.c_str(), flags | _O_CREAT, _SH_DENYNO, _S_IREAD | _S_IWRITE) != 0) {
            descriptor_ = -1;
            error = std::strerror(errno);
            return false;
        }
        const auto handle = reinterpret_cast<HANDLE>(_get_osfhandle(descriptor_));
        const DWORD size = GetFileSize(handle, nullptr);
        _lseek(descriptor_, 0, SEEK_END);
        for (std::size_t words = size / sizeof fill; words < count; ++words)
            _write(descriptor_, &fill, sizeof fill);
        mapping_ = CreateFileMappingW(handle, nullptr, PAGE_READWRITE, 0, 0, nullptr);
    }
    mappedBytes_ = count * sizeof fill;
    if (mapping_ && !words_)
        words_ = static_cast<const volatile std::int32_t*>(
            MapViewOfFile(mapping_, FILE_MAP_ALL_ACCESS, 0, 0, mappedBytes_));
    return words_ != nullptr;
}

bool SharedWords::Read(std::size_t index, std::int32_t& value) const
{
    // The copy fails if the file is gone, from a network drive say; reading the mapping would end the
    // process.
    return words_ && ReadProcessMemory(GetCurrentProcess(), const_cast<const std::int32_t*>(words_ + index),
                                       &value, sizeof value, nullptr);
}

void SharedWords::Close()
{
    if (words_)
        UnmapViewOfFile(const_cast<const std::int32_t*>(words_));
    words_ = nullptr;
    if (mapping_)
        CloseHandle(mapping_);
    mapping_ = nullptr;
    if (descriptor_ != -1)
        _close(descriptor_);
    descriptor_ = -1;
}

} // namespace marvane::platform
