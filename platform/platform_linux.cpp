#include "platform/platform.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <fnmatch.h>
#include <memory>
#include <pthread.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace marvane::platform {

const char PathSeparator = '/';
const char* const OwnLibraryName = "libMarvane.so";

namespace {

thread_local constinit ThreadClock OwnClock;

// A forked child's one thread has an id of its own.
const int ForkHandler = pthread_atfork(nullptr, nullptr, [] { OwnClock = {}; });

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
    ThreadClock& clock = OwnClock;
    IdOf(clock);
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
    return IdOf(OwnClock);
}

std::size_t PointerText(const void* pointer, char (&out)[PointerTextSize])
{
    if (!pointer) {
        std::memcpy(out, "(nil)", 5);
        return 5;
    }
    char* first = std::end(out);
    for (auto value = reinterpret_cast<std::uintptr_t>(pointer); value != 0; value >>= 4)
        *--first = "0123456789abcdef"[value & 15];
    *--first = 'x';
    *--first = '0';
    const auto length = static_cast<std::size_t>(std::end(out) - first);
    std::memmove(out, first, length);
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

std::vector<std::string> FindFiles(const std::string& pattern)
{
    const std::size_t slash = pattern.rfind('/');
    const std::string folder = slash == std::string::npos ? "." : pattern.substr(0, slash + 1);
    const std::string name = pattern.substr(slash + 1);
    std::vector<std::string> found;
    DIR* const directory = opendir(folder.c_str());
    if (!directory)
        return found;
    while (const dirent* entry = readdir(directory)) {
        struct stat status;
        if (fnmatch(name.c_str(), entry->d_name, FNM_NOESCAPE | FNM_PERIOD) == 0 &&
            fstatat(dirfd(directory), entry->d_name, &status, 0) == 0 && !S_ISDIR(status.st_mode))
            found.emplace_back(entry->d_name);
    }
    closedir(directory);
    return found;
}

void RemoveFile(const std::string& path)
{
    std::remove(path.c_str());
}

std::FILE* OpenLogStream(const std::string& path)
{
    return OpenStream(path, "a", O_WRONLY | O_CREAT | O_APPEND, 0666);
}

std::FILE* OpenTemporaryStream(const std::string& path, const char* mode)
{
    const int placement = *mode == 'a' ? O_APPEND : O_TRUNC;
    return OpenStream(path, mode, O_WRONLY | O_CREAT | O_NOFOLLOW | placement, 0600);
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

/// The owner is kept beside the mutex, so that leaving one that is not held can be refused without asking it.
struct RecursiveMutex
{
    pthread_mutex_t Handle;
    std::atomic<std::uint32_t> Owner = 0;
    unsigned Depth = 0;
};

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

} // namespace

Mutex CreateRecursiveMutex()
{
    auto mutex = std::make_unique<RecursiveMutex>();
    pthread_mutexattr_t attributes;
    pthread_mutexattr_init(&attributes);
    pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
    const int failure = pthread_mutex_init(&mutex->Handle, &attributes);
    pthread_mutexattr_destroy(&attributes);
    return failure == 0 ? mutex.release() : nullptr;
}

bool LockMutex(Mutex mutex, int milliseconds)
{
    if (!mutex)
        return false;
    auto* const recursive = static_cast<RecursiveMutex*>(mutex);
    if (milliseconds < 0) {
        if (pthread_mutex_lock(&recursive->Handle) != 0)
            return false;
    } else {
        const timespec until = FromNow(milliseconds);
        if (pthread_mutex_timedlock(&recursive->Handle, &until) != 0)
            return false;
    }
    recursive->Owner.store(CurrentThreadId(), std::memory_order_relaxed);
    ++recursive->Depth;
    return true;
}

bool UnlockMutex(Mutex mutex)
{
    if (!mutex)
        return false;
    auto* const recursive = static_cast<RecursiveMutex*>(mutex);
    if (recursive->Owner.load(std::memory_order_relaxed) != CurrentThreadId())
        return false;
    if (--recursive->Depth == 0)
        recursive->Owner.store(0, std::memory_order_relaxed);
    return pthread_mutex_unlock(&recursive->Handle) == 0;
}

void DestroyMutex(Mutex mutex)
{
    if (!mutex)
        return;
    auto* const recursive = static_cast<RecursiveMutex*>(mutex);
    pthread_mutex_destroy(&recursive->Handle);
    delete recursive;
}

bool ReleaseSemaphoreCount(Mutex)
{
    return false;
}

} // namespace marvane::platform
