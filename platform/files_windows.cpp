#include "platform/files.h"

#include <algorithm>
#include <share.h>

#include "platform/crlf_block.h"
#include "platform/quiet_windows.h"
#include "platform/wide_text_windows.h"

namespace marvane::platform {

const char PathSeparator = '\\';

bool PathExists(const std::string& path)
{
    const NoMessageBoxes quiet; // A drive may have no medium.
    return GetFileAttributesW(WideFromNarrow(path).c_str()) != INVALID_FILE_ATTRIBUTES;
}

bool MakeDirectory(const std::string& path)
{
    return CreateDirectoryW(WideFromNarrow(path).c_str(), nullptr) || GetLastError() == ERROR_ALREADY_EXISTS;
}

void MakeDirectoryChain(const std::string& path)
{
    const std::wstring whole = WideFromNarrow(path);
    for (std::size_t end = 0; end < whole.size();) {
        end = std::min(whole.find_first_of(L"\\/", end + 1), whole.size());
        CreateDirectoryW(whole.substr(0, end).c_str(), nullptr);
    }
}

std::optional<std::vector<std::string>> FindFiles(const std::string& pattern)
{
    WIN32_FIND_DATAW entry;
    const HANDLE search = FindFirstFileW(WideFromNarrow(pattern).c_str(), &entry);
    if (search == INVALID_HANDLE_VALUE)
        return std::nullopt;
    std::vector<std::string> files;
    do
        if ((entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0)
            files.push_back(NarrowLike(pattern, entry.cFileName));
    while (FindNextFileW(search, &entry));
    FindClose(search);
    return files;
}

void RemoveFile(const std::string& path)
{
    _wremove(WideFromNarrow(path).c_str());
}

namespace {

HANDLE HandleOf(File file)
{
    return reinterpret_cast<HANDLE>(file);
}

/// How many characters of `text` are in its first `bytes` bytes in a file. Takes their bytes off.
std::size_t CharactersIn(std::string_view text, std::size_t& bytes)
{
    std::size_t count = 0;
    for (; count < text.size(); ++count) {
        const std::size_t size = text[count] == '\n' ? 2 : 1;
        if (size > bytes)
            break;
        bytes -= size;
    }
    return count;
}

/// Returns how many bytes were written.
std::size_t WriteBytes(File file, std::string_view bytes)
{
    DWORD written = 0;
    WriteFile(HandleOf(file), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
    return written;
}

} // namespace

File OpenLogFile(const std::string& path)
{
    // The right to append, and none to write elsewhere, has the kernel find the end of the file for each
    // write. Not shared for deletion: a file that is deleted while it is open blocks its name.
    constexpr DWORD rights = FILE_APPEND_DATA | FILE_READ_ATTRIBUTES | SYNCHRONIZE;
    return reinterpret_cast<File>(CreateFileW(WideFromNarrow(path).c_str(), rights,
                                              FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_ALWAYS,
                                              FILE_ATTRIBUTE_NORMAL, nullptr));
}

Written WriteToFile(File file, std::string_view first, std::string_view second)
{
    Written all = {};
    while (!first.empty() || !second.empty()) {
        CrLfBlock block;
        std::string_view firstRest = first;
        std::string_view secondRest = second;
        block.TakeLines(firstRest);
        if (firstRest.empty())
            block.TakeLines(secondRest);
        std::size_t bytes = WriteBytes(file, block.Bytes());
        all.Bytes += bytes;
        if (bytes != block.Bytes().size()) {
            const std::size_t ofFirst = CharactersIn(first, bytes);
            all.Characters += ofFirst;
            if (ofFirst == first.size())
                all.Characters += CharactersIn(second, bytes);
            break;
        }
        all.Characters += first.size() - firstRest.size() + second.size() - secondRest.size();
        first = firstRest;
        second = secondRest;
    }
    return all;
}

std::uint64_t FileSize(File file)
{
    LARGE_INTEGER size;
    return GetFileSizeEx(HandleOf(file), &size) ? static_cast<std::uint64_t>(size.QuadPart) : 0;
}

void CloseFile(File file)
{
    CloseHandle(HandleOf(file));
}

std::FILE* OpenTemporaryStream(const std::string& path, const char* mode)
{
    // N: child processes do not inherit it.
    return _wfsopen(WideFromNarrow(path).c_str(), WideFromNarrow(std::string(mode) + "tN").c_str(),
                    _SH_DENYNO);
}

std::FILE* OpenForReading(const std::string& path)
{
    return _wfsopen(WideFromNarrow(path).c_str(), L"rt", _SH_DENYNO);
}

} // namespace marvane::platform
