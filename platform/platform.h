// What this library needs of the operating system. One header, one source a system; CMake picks it.
// Paths and texts are in the system's own narrow encoding.
#pragma once

#include <array>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace marvane::platform {

/// Separator of folders in the configuration path, the log folder and the search pattern.
extern const char PathSeparator;

/// Name under which this library looks up its own version.
extern const char* const OwnLibraryName;

/// Local wall-clock time of one moment.
struct LocalTime
{
    std::uint16_t Hour;
    std::uint16_t Minute;
    std::uint16_t Second;
    std::uint16_t Milliseconds;
};

/// What a thread knows of the time: the moment that it read last. A new second is broken down anew, so a
/// change of the zone's offset shows in the second in which it comes, and a second is looked up in the zone's
/// rules but once.
struct ThreadClock
{
    std::int64_t Second = -1; ///< since 1970
    LocalTime Local = {};
    std::uint32_t ThreadId = 0; ///< 0 until it is asked for
    /// For the caller to keep a text of this second in. Its first character is 0 in a new second, and in a
    /// forked child.
    char Text[32] = {};
    std::uint16_t TextMilliseconds = 0;
};

/// Reads the clock into the calling thread's own record.
ThreadClock& ReadThreadClock();

/// Sets a record to a moment. What stands behind ReadThreadClock, for a moment that is not now.
void SetThreadClock(ThreadClock& clock, std::int64_t second, unsigned milliseconds);

/// Reads the clock.
inline LocalTime ReadLocalTime()
{
    return ReadThreadClock().Local;
}

/// Broken-down local time of now, with a resolution of seconds.
std::tm LocalCalendarTime();

/// Broken-down UTC time of a count of seconds since 1970.
std::tm UtcCalendarTime(std::time_t seconds);

/// Id of the calling thread, the one the system's own tools show. Right in a forked child too.
std::uint32_t CurrentThreadId();

inline constexpr std::size_t PointerTextSize = 24;

/// Writes a pointer as the system's C library prints "%p", without a terminator, into a place of
/// PointerTextSize; returns the length.
std::size_t PointerText(const void* pointer, char* out);

/// Value of an environment variable, none if it is not set.
std::optional<std::string> EnvironmentVariable(const char* name);

/// Replaces each %NAME% by the variable's value; an unknown reference stays as it stands. Empty if the
/// system refuses.
std::string ExpandEnvironment(const std::string& text);

/// A loaded library. Never null in a good result.
using Library = void*;

struct LoadedLibrary
{
    Library Handle = nullptr;
    std::string Error; ///< the system's text if Handle is null
};

/// Loads a library by path, its dependencies looked for beside it too. Calls that the library makes to
/// functions of its own stay inside it, whatever the application is linked against. A path that names
/// this library itself is refused.
LoadedLibrary LoadTargetLibrary(const std::string& path);

/// Address of an exported function, null if there is none of that name.
void* FindFunction(Library library, const char* name);

void UnloadLibrary(Library library);

struct ModulePath
{
    std::string Path;          ///< empty on failure
    std::uint32_t ModuleError; ///< error code if the module of this library was not found, else 0
    std::uint32_t
        FileNameError; ///< error code if the module has no file name or one of over `limit` - 1 bytes
};

/// Full path of the file that this library was loaded from. If the module is not found, that of the
/// program. A path that does not fit `limit` bytes with its terminator is a failure.
ModulePath OwnModulePath(std::size_t limit);

/// Product version of a file, four numbers from the major one down. A bare name goes through the
/// system's search for a library of that name. None if the file has no version record.
std::optional<std::array<std::uint16_t, 4>> ProductVersion(const std::string& file);

bool PathExists(const std::string& path);

/// Makes one folder. True if it was made or something of that name exists.
bool MakeDirectory(const std::string& path);

/// Makes a folder with all that lead to it; the result is not told.
void MakeDirectoryChain(const std::string& path);

/// Names, without folder, of the files (not folders) that match a path whose last part may hold "?" for any
/// one character. None if nothing matches, not even a folder.
std::optional<std::vector<std::string>> FindFiles(const std::string& pattern);

/// Removes a file; the result is not told.
void RemoveFile(const std::string& path);

/// An open file without a buffer.
using File = int;
inline constexpr File NoFile = -1;

/// Opens a log file for appending, text mode; others can read it meanwhile, child processes do not
/// inherit it. NoFile on failure.
File OpenLogFile(const std::string& path);

/// Writes two texts behind each other, by one system call where there is one for that; the result is not
/// told.
void WriteToFile(File file, std::string_view first, std::string_view second);

/// Size that a text has in a file, with the system's line ends.
std::size_t SizeInFile(std::string_view text);

/// Size of a file in bytes, whoever wrote them.
std::uint64_t FileSize(File file);

void CloseFile(File file);

/// Opens a text file of a fixed name in a temporary folder, "w" or "a". Follows no symbolic link, takes
/// nothing but a file, is readable for its owner alone, is not inherited. Null on failure.
std::FILE* OpenTemporaryStream(const std::string& path, const char* mode);

/// Opens a text file for reading, shared with other readers. Null on failure.
std::FILE* OpenForReading(const std::string& path);

/// A file of 32-bit words, mapped for sharing with other processes.
class SharedWords
{
public:
    SharedWords() = default;
    SharedWords(const SharedWords&) = delete;
    SharedWords& operator=(const SharedWords&) = delete;
    ~SharedWords() { Close(); }

    /// Opens the file, makes it if it is missing, appends words of value `fill` until it holds `count` whole
    /// words, and maps these. False on failure: errno's text in `error` if the file can't be opened, an empty
    /// text if it can't be mapped. An open file is kept and only mapped anew.
    bool Open(const std::string& path, std::size_t count, std::int32_t fill, std::string& error);
    void Close();

    /// The words, as other processes may change them at any time; null if not mapped.
    const volatile std::int32_t* Words() const { return words_; }

    /// Reads a word. False if it is not mapped, or if another process has cut the file short of it.
    bool Read(std::size_t index, std::int32_t& value) const;

private:
    const volatile std::int32_t* words_ = nullptr;
    std::size_t mappedBytes_ = 0;
    [[maybe_unused]] void* mapping_ = nullptr;
    int descriptor_ = -1;
};

/// Has functions called by a thread that is about to fork its process, and by it and its copy in the child
/// behind that. Where there is no fork: nothing.
void CallAtFork(void (*before)(), void (*behind)());

/// True where other threads of the process still run while its end destroys static objects.
extern const bool ThreadsRunWhileProcessEnds;

/// Recursive mutex of the system, or none if it could not be made.
using Mutex = void*;
Mutex CreateRecursiveMutex();
/// Waits at most `milliseconds`, or without end if negative. False on time-out or failure.
bool LockMutex(Mutex mutex, int milliseconds);
/// False if the caller does not hold it.
bool UnlockMutex(Mutex mutex);
void DestroyMutex(Mutex mutex);
/// Gives one count of a semaphore back. No semaphore is ever made here, so it always fails.
bool ReleaseSemaphoreCount(Mutex semaphore);

} // namespace marvane::platform
