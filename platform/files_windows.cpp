#include "platform/files.h"

#include <algorithm>
#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>

#include <windows.h>

#include <shlobj.h>
#include <shlwapi.h>

namespace marvane::platform {

const char PathSeparator = '\\';

bool PathExists(const std::string& path)
{
    return PathFileExistsA(path.c_str());
}

bool MakeDirectory(const std::string& path)
{
    return CreateDirectoryA(path.c_str(), nullptr) || GetLastError() == ERROR_ALREADY_EXISTS;
}

void MakeDirectoryChain(const std::string& path)
{
    SHCreateDirectoryExA(nullptr, path.c_str(), nullptr);
}

std::optional<std::vector<std::string>> FindFiles(const std::string& pattern)
{
    WIN32_FIND_DATAA entry;
    const HANDLE search = FindFirstFileA(pattern.c_str(), &entry);
    if (search == INVALID_HANDLE_VALUE)
        return std::nullopt;
    std::vector<std::string> files;
    do
        if ((entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0)
            files.emplace_back(entry.cFileName);
    while (FindNextFileA(search, &entry));
    FindClose(search);
    return files;
}

void RemoveFile(const std::string& path)
{
    std::remove(path.c_str());
}

File OpenLogFile(const std::string& path)
{
    File file = NoFile;
    constexpr int flags = _O_WRONLY | _O_CREAT | _O_APPEND | _O_TEXT | _O_NOINHERIT;
    if (_sopen_s(&file, path.c_str(), flags, _SH_DENYNO, _S_IREAD | _S_IWRITE) != 0)
        return NoFile;
    return file;
}

std::size_t WriteToFile(File file, std::string_view first, std::string_view second)
{
    std::size_t all = 0;
    for (const std::string_view text : {first, second}) {
        if (text.empty())
            continue;
        const int written = _write(file, text.data(), static_cast<unsigned>(text.size()));
        all += written > 0 ? static_cast<std::size_t>(written) : 0;
        if (written != static_cast<int>(text.size()))
            break;
    }
    return all;
}

std::size_t SizeInFile(std::string_view text)
{
    return text.size() + static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

std::uint64_t FileSize(File file)
{
    const __int64 size = _filelengthi64(file);
    return size < 0 ? 0 : static_cast<std::uint64_t>(size);
}

void CloseFile(File file)
{
    _close(file);
}

std::FILE* OpenTemporaryStream(const std::string& path, const char* mode)
{
    // N: child processes do not inherit it.
    return _fsopen(path.c_str(), (std::string(mode) + "tN").c_str(), _SH_DENYNO);
}

std::FILE* OpenForReading(const std::string& path)
{
    return _fsopen(path.c_str(), "rt", _SH_DENYNO);
}

} // namespace marvane::platform
