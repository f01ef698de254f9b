#include "tests/support/process_state.h"

#ifdef _WIN32
#include <windows.h>

#include <psapi.h>
#else
#include <filesystem>
#include <fstream>
#include <malloc.h>
#include <pthread.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace marvane::testing {

#ifdef _WIN32

namespace {
constexpr const char* NullDevice = "NUL";
} // namespace

std::size_t OpenHandles()
{
    DWORD count = 0;
    GetProcessHandleCount(GetCurrentProcess(), &count);
    return count;
}

std::size_t MemoryInUse()
{
    PROCESS_MEMORY_COUNTERS counters = {};
    K32GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return counters.PagefileUsage;
}

NoMoreFiles::NoMoreFiles()
{
    // All modules of the process share the table of streams of the C library.
    while (std::FILE* const file = std::fopen(NullDevice, "r"))
        files_.push_back(file);
}

NoMoreFiles::~NoMoreFiles()
{
    for (std::FILE* const file : files_)
        std::fclose(file);
}

LargestFile::LargestFile(std::size_t) {}
LargestFile::~LargestFile() = default;
bool LargestFile::IsInForce()
{
    return false;
}

void SetReadOnly(const std::string& path, bool readOnly)
{
    SetFileAttributesA(path.c_str(), readOnly ? FILE_ATTRIBUTE_READONLY : FILE_ATTRIBUTE_NORMAL);
}

bool MakeNamedPipe(const std::string&)
{
    return false;
}

// Read-only files and folders in use can't be changed by any user.
WithoutPrivileges::WithoutPrivileges() = default;
WithoutPrivileges::~WithoutPrivileges() = default;

SmallThreadStacks::SmallThreadStacks() = default;
SmallThreadStacks::~SmallThreadStacks() = default;

#else

namespace {

std::uint64_t SetLimit(__rlimit_resource_t resource, std::uint64_t value)
{
    rlimit limit = {};
    getrlimit(resource, &limit);
    const std::uint64_t former = limit.rlim_cur;
    limit.rlim_cur = value;
    setrlimit(resource, &limit);
    return former;
}

/// Sets the stack size of new threads and returns the former one.
std::size_t SetThreadStackSize(std::size_t size)
{
    pthread_attr_t attributes;
    pthread_getattr_default_np(&attributes);
    std::size_t former = 0;
    pthread_attr_getstacksize(&attributes, &former);
    pthread_attr_setstacksize(&attributes, size);
    pthread_setattr_default_np(&attributes);
    pthread_attr_destroy(&attributes);
    return former;
}

} // namespace

std::size_t OpenHandles()
{
    const std::filesystem::directory_iterator all("/proc/self/fd");
    auto count = static_cast<std::size_t>(std::distance(begin(all), end(all)));
    std::ifstream mappings("/proc/self/maps");
    for (std::string line; std::getline(mappings, line);)
        count += line.find('/') != std::string::npos;
    return count;
}

std::size_t MemoryInUse()
{
    const struct mallinfo2 heap = mallinfo2();
    return heap.uordblks + heap.hblkhd;
}

NoMoreFiles::NoMoreFiles() : formerLimit_(SetLimit(RLIMIT_NOFILE, 0)) {}

NoMoreFiles::~NoMoreFiles()
{
    SetLimit(RLIMIT_NOFILE, formerLimit_);
}

LargestFile::LargestFile(std::size_t bytes)
{
    former_ = SetLimit(RLIMIT_FSIZE, bytes);
}

LargestFile::~LargestFile()
{
    SetLimit(RLIMIT_FSIZE, former_);
}

bool LargestFile::IsInForce()
{
    return true;
}

void SetReadOnly(const std::string& path, bool readOnly)
{
    chmod(path.c_str(), readOnly ? 0444 : 0666);
}

bool MakeNamedPipe(const std::string& path)
{
    return mkfifo(path.c_str(), 0666) == 0;
}

WithoutPrivileges::WithoutPrivileges() : former_(geteuid())
{
    constexpr uid_t nobody = 65534;
    if (former_ == 0 && seteuid(nobody) != 0)
        std::perror("seteuid");
}

WithoutPrivileges::~WithoutPrivileges()
{
    if (former_ == 0 && seteuid(0) != 0)
        std::perror("seteuid");
}

namespace {
// A sanitizer keeps its own state of a thread on the thread's stack.
#ifdef MARVANE_SANITIZED
constexpr std::size_t SmallStack = 4 * 1024 * 1024;
#else
constexpr std::size_t SmallStack = 256 * 1024;
#endif
} // namespace

SmallThreadStacks::SmallThreadStacks() : former_(SetThreadStackSize(SmallStack)) {}

SmallThreadStacks::~SmallThreadStacks()
{
    SetThreadStackSize(former_);
}

#endif

} // namespace marvane::testing
