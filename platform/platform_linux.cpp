#include "platform/platform.h"

#include <algorithm>
#include <atomic>
#include <bit>
#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <fnmatch.h>
#include <linux/futex.h>
#include <new>
#include <pthread.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

namespace marvane::platform {

const char PathSeparator = '/';
const char* const OwnLibraryName = "libMarvane.so";
const bool ThreadsRunWhileProcessEnds = true;

namespace {

thread_local constinit ThreadClock OwnClock;

// A forked child's one thread has an id of its own.
const int ForkHandler = pthread_atfork(nullptr, nullptr, [] { OwnClock = ThreadClock(); });

/// Not inlined, since the compiler would find the place of a thread's variables anew at each use.
[[gnu::noinline]] ThreadClock& ClockOfThread()
{
    return OwnClock;
}

std::uint32_t IdOf(ThreadClock& clock)
{
    if (clock.ThreadId == 0)
        clock.ThreadId = static_cast<std::uint32_t>(syscall(SYS_gettid));
    return clock.ThreadId;
}

std::FILE* OpenStream(const std::string& path, const char* mode, int flags, mode_t permissions)
{
    const int descriptor = open(path.c_str(), flags | O_CLOEXEC, permissions);
    if (descriptor == -1)
        return nullptr;
    std::FILE* const stream = fdopen(descriptor, mode);
    if (!stream)
        close(descriptor);
    return stream;
}

} // namespace

void CallAtFork(void (*before)(), void (*behind)())
{
    pthread_atfork(before, behind, behind);
}

void SetThreadClock(ThreadClock& clock, std::int64_t second, unsigned milliseconds)
{
    if (second != clock.Second) {
        const std::time_t moment = second;
        std::tm calendar;
        localtime_r(&moment, &calendar);
        clock.Second = second;
        clock.Local.Hour = static_cast<std::uint16_t>(calendar.tm_hour);
        clock.Local.Minute = static_cast<std::uint16_t>(calendar.tm_min);
        clock.Local.Second = static_cast<std::uint16_t>(calendar.tm_sec);
        clock.Text[0] = 0;
    }
    clock.Local.Milliseconds = static_cast<std::uint16_t>(milliseconds);
}

ThreadClock& ReadThreadClock()
{
    timespec now;
    clock_gettime(CLOCK_REALTIME, &now);
    ThreadClock& clock = ClockOfThread();
    SetThreadClock(clock, now.tv_sec, static_cast<unsigned>(now.tv_nsec) / 1000000);
    return clock;
}

std::tm LocalCalendarTime()
{
    const std::time_t now = std::time(nullptr);
    std::tm calendar;
    localtime_r(&now, &calendar);
    return calendar;
}

std::tm UtcCalendarTime(std::time_t seconds)
{
    std::tm calendar;
    gmtime_r(&seconds, &calendar);
    return calendar;
}

std::uint32_t CurrentThreadId()
{
    return IdOf(ClockOfThread());
}

std::size_t PointerText(const void* pointer, char* out)
{
    if (!pointer)
        return std::string_view("(nil)").copy(out, PointerTextSize);
    auto value = reinterpret_cast<std::uintptr_t>(pointer);
    const std::size_t length = 2 + static_cast<std::size_t>(std::bit_width(value) + 3) / 4;
    out[0] = '0';
    out[1] = 'x';
    for (std::size_t i = length; i-- > 2; value >>= 4)
        out[i] = "0123456789abcdef"[value & 15];
    return length;
}

bool PathExists(const std::string& path)
{
    // The root: what stands in front of the first separator of an absolute path.
    return path.empty() || access(path.c_str(), F_OK) == 0;
}

bool MakeDirectory(const std::string& path)
{
    return mkdir(path.c_str(), 0777) == 0 || errno == EEXIST;
}

void MakeDirectoryChain(const std::string& path)
{
    for (std::size_t end = path.find('/', 1); end != std::string::npos; end = path.find('/', end + 1))
        MakeDirectory(path.substr(0, end));
    MakeDirectory(path);
}

std::optional<std::vector<std::string>> FindFiles(const std::string& pattern)
{
    const std::size_t slash = pattern.rfind('/');
    const std::string folder = slash == std::string::npos ? "." : pattern.substr(0, slash + 1);
    const std::string name = pattern.substr(slash + 1);
    DIR* const directory = opendir(folder.c_str());
    if (!directory)
        return std::nullopt;
    bool matched = false;
    std::vector<std::string> files;
    while (const dirent* entry = readdir(directory)) {
        if (fnmatch(name.c_str(), entry->d_name, FNM_NOESCAPE | FNM_PERIOD) != 0)
            continue;
        matched = true;
        struct stat status;
        if (fstatat(dirfd(directory), entry->d_name, &status, 0) == 0 && !S_ISDIR(status.st_mode))
            files.emplace_back(entry->d_name);
    }
    closedir(directory);
    return matched ? std::optional(std::move(files)) : std::nullopt;
}

void RemoveFile(const std::string& path)
{
    std::remove(path.c_str());
}

File OpenLogFile(const std::string& path)
{
    return open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666);
}

void WriteToFile(File file, std::string_view first, std::string_view second)
{
    while (!first.empty() || !second.empty()) {
        const iovec parts[] = {{const_cast<char*>(first.data()), first.size()},
                               {const_cast<char*>(second.data()), second.size()}};
        const iovec& sole = first.empty() ? parts[1] : parts[0];
        const ssize_t written = first.empty() || second.empty() ? write(file, sole.iov_base, sole.iov_len)
                                                                : writev(file, parts, 2);
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return;
        const auto ofFirst = std::min(first.size(), static_cast<std::size_t>(written));
        first.remove_prefix(ofFirst);
        second.remove_prefix(static_cast<std::size_t>(written) - ofFirst);
    }
}

std::size_t SizeInFile(std::string_view text)
{
    return text.size();
}

std::uint64_t FileSize(File file)
{
    const off_t end = lseek(file, 0, SEEK_END);
    return end < 0 ? 0 : static_cast<std::uint64_t>(end);
}

void CloseFile(File file)
{
    close(file);
}

std::FILE* OpenTemporaryStream(const std::string& path, const char* mode)
{
    const int placement = *mode == 'a' ? O_APPEND : O_TRUNC;
    // Anybody may have put something there: not to wait at a pipe, O_NONBLOCK; files are the same with it.
    std::FILE* const stream =
        OpenStream(path, mode, O_WRONLY | O_CREAT | O_NOFOLLOW | O_NONBLOCK | placement, 0600);
    struct stat status;
    if (!stream || (fstat(fileno(stream), &status) == 0 && S_ISREG(status.st_mode)))
        return stream;
    std::fclose(stream);
    return nullptr;
}

std::FILE* OpenForReading(const std::string& path)
{
    return OpenStream(path, "r", O_RDONLY, 0);
}

bool SharedWords::Open(const std::string& path, std::size_t count, std::int32_t fill, std::string& error)
{
    error.clear();
    if (words_)
        return true;
    if (descriptor_ == -1) {
        descriptor_ = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
        if (descriptor_ == -1) {
            error = std::strerror(errno);
            return false;
        }
        const off_t size = lseek(descriptor_, 0, SEEK_END);
        for (auto words = static_cast<std::size_t>(std::max<off_t>(size, 0)) / sizeof fill; words < count;
             ++words)
            if (write(descriptor_, &fill, sizeof fill) == -1)
                break;
    }
    // Words that the file does not hold could be mapped, but not read.
    mappedBytes_ = count * sizeof fill;
    if (lseek(descriptor_, 0, SEEK_END) < static_cast<off_t>(mappedBytes_))
        return false;
    void* const view = mmap(nullptr, mappedBytes_, PROT_READ, MAP_SHARED, descriptor_, 0);
    words_ = view == MAP_FAILED ? nullptr : static_cast<const volatile std::int32_t*>(view);
    return words_ != nullptr;
}

bool SharedWords::Read(std::size_t index, std::int32_t& value) const
{
    if (!words_)
        return false;
    // To touch what was cut off would end the process; asked for a copy, the kernel declines.
    const iovec word = {const_cast<std::int32_t*>(words_ + index), sizeof value};
    const iovec copy = {&value, sizeof value};
    if (process_vm_readv(getpid(), &copy, 1, &word, 1, 0) == static_cast<ssize_t>(sizeof value))
        return true;
    struct stat status;
    if (errno == EFAULT || fstat(descriptor_, &status) != 0 ||
        status.st_size < static_cast<off_t>(mappedBytes_))
        return false;
    // The kernel, or a sandbox, knows no such copies.
    value = words_[index];
    return true;
}

void SharedWords::Close()
{
    if (words_)
        munmap(const_cast<std::int32_t*>(words_), mappedBytes_);
    words_ = nullptr;
    if (descriptor_ != -1)
        close(descriptor_);
    descriptor_ = -1;
}

namespace {

/// A word that is taken by an exchange, and slept at only when that fails for a while. The owner is kept
/// beside it: it may take the mutex again, and nobody else may leave it.
struct RecursiveMutex
{
    enum : std::uint32_t
    {
        Free,
        Taken,
        Awaited ///< taken, and somebody may sleep
    };
    std::atomic<std::uint32_t> State = Free;
    std::atomic<void*> Owner = nullptr; ///< a thread by its pointer: to be had without a call
    unsigned Depth = 0;
};

// The first mutex of the library lasts to the end of the process, and goes with the library if that is
// unloaded.
constinit RecursiveMutex FirstMutex;
constinit std::atomic<bool> FirstMutexTaken = false;

// Between the looks of a waiting thread at the mutex. They grow, since each look takes the word from the
// cache of its owner, who has more use for it; together they last some 50 microseconds.
constexpr int FirstPauses = 16;
constexpr int LastPauses = 1024;

bool Take(RecursiveMutex& mutex)
{
    std::uint32_t expected = RecursiveMutex::Free;
    return mutex.State.compare_exchange_strong(expected, RecursiveMutex::Taken, std::memory_order_acquire,
                                               std::memory_order_relaxed);
}

timespec FromNow(int milliseconds)
{
    timespec until;
    clock_gettime(CLOCK_REALTIME, &until);
    until.tv_sec += milliseconds / 1000;
    until.tv_nsec += milliseconds % 1000 * 1000000L;
    if (until.tv_nsec >= 1000000000L) {
        ++until.tv_sec;
        until.tv_nsec -= 1000000000L;
    }
    return until;
}

/// Waits at most some milliseconds, or without end if negative.
[[gnu::noinline]] bool WaitFor(RecursiveMutex& mutex, int milliseconds)
{
    const timespec end = FromNow(std::max(milliseconds, 0));
    const timespec* const until = milliseconds < 0 ? nullptr : &end;
    for (int pauses = FirstPauses; pauses <= LastPauses; pauses *= 2) {
        for (int i = 0; i < pauses; ++i)
            __builtin_ia32_pause();
        if (mutex.State.load(std::memory_order_relaxed) == RecursiveMutex::Free && Take(mutex))
            return true;
    }
    while (mutex.State.exchange(RecursiveMutex::Awaited, std::memory_order_acquire) != RecursiveMutex::Free)
        if (syscall(SYS_futex, &mutex.State, FUTEX_WAIT_BITSET_PRIVATE | FUTEX_CLOCK_REALTIME,
                    RecursiveMutex::Awaited, until, nullptr, FUTEX_BITSET_MATCH_ANY) == -1 &&
            errno == ETIMEDOUT)
            return false;
    return true;
}

} // namespace

Mutex CreateRecursiveMutex()
{
    return FirstMutexTaken.exchange(true) ? new (std::nothrow) RecursiveMutex : &FirstMutex;
}

bool LockMutex(Mutex mutex, int milliseconds)
{
    if (!mutex)
        return false;
    auto& recursive = *static_cast<RecursiveMutex*>(mutex);
    void* const self = __builtin_thread_pointer();
    if (recursive.Owner.load(std::memory_order_relaxed) != self) {
        if (!Take(recursive) && !WaitFor(recursive, milliseconds))
            return false;
        recursive.Owner.store(self, std::memory_order_relaxed);
    }
    ++recursive.Depth;
    return true;
}

bool UnlockMutex(Mutex mutex)
{
    if (!mutex)
        return false;
    auto& recursive = *static_cast<RecursiveMutex*>(mutex);
    if (recursive.Owner.load(std::memory_order_relaxed) != __builtin_thread_pointer())
        return false;
    if (--recursive.Depth != 0)
        return true;
    recursive.Owner.store(nullptr, std::memory_order_relaxed);
    if (recursive.State.exchange(RecursiveMutex::Free, std::memory_order_release) == RecursiveMutex::Awaited)
        syscall(SYS_futex, &recursive.State, FUTEX_WAKE_PRIVATE, 1);
    return true;
}

void DestroyMutex(Mutex mutex)
{
    if (mutex == &FirstMutex)
        FirstMutexTaken = false;
    else
        delete static_cast<RecursiveMutex*>(mutex);
}

bool ReleaseSemaphoreCount(Mutex)
{
    return false;
}

} // namespace marvane::platform
