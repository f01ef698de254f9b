#include "platform/temporary_file.h"

#include <algorithm>
#include <string>

#include <windows.h>

namespace marvane::platform {

namespace {

constexpr int MostTries = 100; ///< each with another name
constexpr std::size_t MostAtOnce = 1u << 20;

HANDLE HandleOf(File file)
{
    return reinterpret_cast<HANDLE>(file);
}

/// Where a read or write of a file that is not overlapped begins.
OVERLAPPED At(std::uint64_t offset)
{
    OVERLAPPED place = {};
    place.Offset = static_cast<DWORD>(offset);
    place.OffsetHigh = static_cast<DWORD>(offset >> 32);
    return place;
}

} // namespace

std::unique_ptr<TemporaryFile> TemporaryFile::Make()
{
    wchar_t folder[MAX_PATH + 1];
    const DWORD length = GetTempPathW(MAX_PATH + 1, folder);
    LARGE_INTEGER ticks = {};
    QueryPerformanceCounter(&ticks);
    for (int tries = 0; length > 0 && length <= MAX_PATH && tries < MostTries; ++tries) {
        const std::wstring path = folder + (L"marvane-" + std::to_wstring(GetCurrentProcessId())) + L"-" +
                                  std::to_wstring(ticks.QuadPart + tries);
        HANDLE const handle = CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                          FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
        if (handle != INVALID_HANDLE_VALUE)
            return std::unique_ptr<TemporaryFile>(new TemporaryFile(reinterpret_cast<File>(handle)));
        if (GetLastError() != ERROR_FILE_EXISTS)
            break;
    }
    return nullptr;
}

TemporaryFile::~TemporaryFile()
{
    CloseHandle(HandleOf(file_));
}

bool TemporaryFile::Append(std::string_view bytes)
{
    while (!bytes.empty()) {
        OVERLAPPED place = At(size_);
        DWORD written = 0;
        const auto part = static_cast<DWORD>(std::min(bytes.size(), MostAtOnce));
        if (!WriteFile(HandleOf(file_), bytes.data(), part, &written, &place) || written == 0)
            return false;
        size_ += written;
        bytes.remove_prefix(written);
    }
    return true;
}

std::size_t TemporaryFile::ReadAt(std::uint64_t offset, std::span<char> buffer) const
{
    OVERLAPPED place = At(offset);
    DWORD count = 0;
    const auto part = static_cast<DWORD>(std::min(buffer.size(), MostAtOnce));
    return ReadFile(HandleOf(file_), buffer.data(), part, &count, &place) ? count : 0;
}

} // namespace marvane::platform
