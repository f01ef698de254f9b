#include "platform/platform.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>

#include <windows.h>

#include <shlobj.h>
#include <shlwapi.h>

namespace marvane::platform {

const char PathSeparator = '\\';
const char* const OwnLibraryName = "Marvane.dll";
const bool ThreadsRunWhileProcessEnds = false;

namespace {

// The clock counts tenths of a microsecond from the year 1601 on.
constexpr std::uint64_t TicksASecond = 10000000;
constexpr std::int64_t SecondsTo1970 = 11644473600;

/// The module that holds this code.
HMODULE OwnModule()
{
    static const int ownAddress = 0;
    HMODULE module = nullptr;
    GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<const char*>(&ownAddress), &module);
    return module;
}

/// The system's text for an error.
std::string ErrorText(DWORD error)
{
    char* buffer = nullptr;
    const DWORD length = FormatMessageA(
        FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
        error, MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT), reinterpret_cast<char*>(&buffer), 0, nullptr);
    std::string text(buffer ? buffer : "", length);
    LocalFree(buffer);
    return text;
}

} // namespace

void SetThreadClock(ThreadClock& clock, std::int64_t second, unsigned milliseconds)
{
    if (second != clock.Second) {
        SYSTEMTIME utc;
        SYSTEMTIME local;
        const std::uint64_t ticks = static_cast<std::uint64_t>(second + SecondsTo1970) * TicksASecond;
        const FILETIME time = {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
        if (!FileTimeToSystemTime(&time, &utc) || !SystemTimeToTzSpecificLocalTime(nullptr, &utc, &local))
            GetLocalTime(&local);
        clock.Second = second;
        clock.Local = {local.wHour, local.wMinute, local.wSecond, 0};
        clock.Text[0] = 0;
    }
    clock.Local.Milliseconds = static_cast<std::uint16_t>(milliseconds);
}

ThreadClock& ReadThreadClock()
{
    thread_local constinit ThreadClock clock;
    FILETIME now;
    GetSystemTimeAsFileTime(&now);
    const std::uint64_t ticks = std::uint64_t{now.dwHighDateTime} << 32 | now.dwLowDateTime;
    SetThreadClock(clock, static_cast<std::int64_t>(ticks / TicksASecond) - SecondsTo1970,
                   static_cast<unsigned>(ticks % TicksASecond / 10000));
    return clock;
}

std::tm LocalCalendarTime()
{
    const std::time_t now = std::time(nullptr);
    std::tm calendar = {};
    localtime_s(&calendar, &now);
    return calendar;
}

std::tm UtcCalendarTime(std::time_t seconds)
{
    std::tm calendar = {};
    gmtime_s(&calendar, &seconds);
    return calendar;
}

std::uint32_t CurrentThreadId()
{
    return GetCurrentThreadId();
}

void CallAtFork(void (*)(), void (*)()) {}

std::size_t PointerText(const void* pointer, char* out)
{
    constexpr std::size_t digits = sizeof pointer * 2;
    auto value = reinterpret_cast<std::uintptr_t>(pointer);
    for (std::size_t i = digits; i-- > 0; value >>= 4)
        out[i] = "0123456789ABCDEF"[value & 15];
    return digits;
}

std::optional<std::string> EnvironmentVariable(const char* name)
{
    std::string value(256, '\0');
    for (;;) {
        SetLastError(ERROR_SUCCESS);
        const DWORD length = GetEnvironmentVariableA(name, value.data(), static_cast<DWORD>(value.size()));
        if (length == 0 && GetLastError() == ERROR_ENVVAR_NOT_FOUND)
            return std::nullopt;
        const bool fits = length < value.size();
        value.resize(length);
        if (fits)
            return value;
    }
}

std::string ExpandEnvironment(const std::string& text)
{
    const DWORD size = ExpandEnvironmentStringsA(text.c_str(), nullptr, 0);
    if (size == 0)
        return {};
    std::vector<char> expanded(size + 2);
    ExpandEnvironmentStringsA(text.c_str(), expanded.data(), size + 1);
    return expanded.data();
}

LoadedLibrary LoadTargetLibrary(const std::string& path)
{
    const HMODULE module = LoadLibraryExA(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    if (!module)
        return {nullptr, ErrorText(GetLastError())};
    if (module != OwnModule())
        return {module, {}};
    FreeLibrary(module);
    return {nullptr, path + ": this is the logger library itself; the library behind it is wanted"};
}

void* FindFunction(Library library, const char* name)
{
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library), name));
}

void UnloadLibrary(Library library)
{
    FreeLibrary(static_cast<HMODULE>(library));
}

ModulePath OwnModulePath(std::size_t limit)
{
    const HMODULE module = OwnModule();
    ModulePath result = {{}, module ? 0 : static_cast<std::uint32_t>(GetLastError()), 0};
    std::vector<char> buffer(limit);
    SetLastError(ERROR_SUCCESS);
    const DWORD length = GetModuleFileNameA(module, buffer.data(), static_cast<DWORD>(limit));
    if (length == 0 || length >= limit)
        result.FileNameError = GetLastError() != ERROR_SUCCESS ? GetLastError() : ERROR_INSUFFICIENT_BUFFER;
    else
        result.Path.assign(buffer.data(), length);
    return result;
}

std::optional<std::array<std::uint16_t, 4>> ProductVersion(const std::string& file)
{
    DWORD ignored = 0;
    const DWORD size = GetFileVersionInfoSizeA(file.c_str(), &ignored);
    if (size == 0)
        return std::nullopt;
    std::vector<char> record(size);
    void* block = nullptr;
    UINT length = 0;
    if (!GetFileVersionInfoA(file.c_str(), 0, size, record.data()) ||
        !VerQueryValueA(record.data(), "\\", &block, &length) || length < sizeof(VS_FIXEDFILEINFO))
        return std::nullopt;
    const auto& info = *static_cast<const VS_FIXEDFILEINFO*>(block);
    if (info.dwSignature != 0xFEEF04BD)
        return std::nullopt;
    return {{HIWORD(info.dwProductVersionMS), LOWORD(info.dwProductVersionMS),
             HIWORD(info.dwProductVersionLS), LOWORD(info.dwProductVersionLS)}};
}

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

void WriteToFile(File file, std::string_view first, std::string_view second)
{
    for (const std::string_view text : {first, second})
        if (!text.empty())
            _write(file, text.data(), static_cast<unsigned>(text.size()));
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

bool SharedWords::Open(const std::string& path, std::size_t count, std::int32_t fill, std::string& error)
{
    error.clear();
    if (descriptor_ == -1) {
        constexpr int flags = _O_RDWR | _O_BINARY | _O_NOINHERIT;
        if (_sopen_s(&descriptor_, path.c_str(), flags, _SH_DENYNO, 0) != 0 &&
            _sopen_s(&descriptor_, path.c_str(), flags | _O_CREAT, _SH_DENYNO, _S_IREAD | _S_IWRITE) != 0) {
            descriptor_ = -1;
            error = std::strerror(errno);
            return false;
        }
        const auto handle = reinterpret_cast<HANDLE>(_get_osfhandle(descriptor_));
        const DWORD size = GetFileSize(handle, nullptr);
        _lseek(descriptor_, 0, SEEK_END);
        for (std::size_t words = size / sizeof fill; words < count; ++words)
            _write(descriptor_, &fill, sizeof fill);
        mapping_ = CreateFileMappingA(handle, nullptr, PAGE_READWRITE, 0, 0, nullptr);
    }
    mappedBytes_ = count * sizeof fill;
    if (mapping_ && !words_)
        words_ = static_cast<const volatile std::int32_t*>(
            MapViewOfFile(mapping_, FILE_MAP_ALL_ACCESS, 0, 0, mappedBytes_));
    return words_ != nullptr;
}

bool SharedWords::Read(std::size_t index, std::int32_t& value) const
{
    // A copy that fails where the file is gone, on a network drive say; to touch it would end the process.
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

Mutex CreateRecursiveMutex()
{
    return CreateMutexA(nullptr, FALSE, nullptr);
}

bool LockMutex(Mutex mutex, int milliseconds)
{
    return WaitForSingleObject(mutex, milliseconds < 0 ? INFINITE : static_cast<DWORD>(milliseconds)) ==
           WAIT_OBJECT_0;
}

bool UnlockMutex(Mutex mutex)
{
    return ReleaseMutex(mutex);
}

void DestroyMutex(Mutex mutex)
{
    if (mutex)
        CloseHandle(mutex);
}

bool ReleaseSemaphoreCount(Mutex semaphore)
{
    return ReleaseSemaphore(semaphore, 1, nullptr);
}

} // namespace marvane::platform
