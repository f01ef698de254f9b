// Resources of this process, and shortages of them that a test creates.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

namespace marvane::testing {

/// Number of files and other system objects that the process has open or mapped.
std::size_t OpenHandles();

/// Bytes of memory that the process has allocated.
std::size_t MemoryInUse();

/// While it exists, no file can be opened: the limit of the system, or of its C library, is reached.
class NoMoreFiles
{
public:
    NoMoreFiles();
    ~NoMoreFiles();
    NoMoreFiles(const NoMoreFiles&) = delete;
    NoMoreFiles& operator=(const NoMoreFiles&) = delete;

private:
    std::vector<std::FILE*> files_;
    std::uint64_t formerLimit_ = 0;
};

/// While it exists, no file of the process can grow past a size: writes fail as on a full disk. Has no
/// effect, and IsInForce is false, where the system can't do that.
class LargestFile
{
public:
    explicit LargestFile(std::size_t bytes);
    ~LargestFile();
    LargestFile(const LargestFile&) = delete;
    LargestFile& operator=(const LargestFile&) = delete;

    static bool IsInForce();

private:
    std::uint64_t former_ = 0;
};

/// While it exists, the process has no special rights: even started as root it can't write read-only files.
class WithoutPrivileges
{
public:
    WithoutPrivileges();
    ~WithoutPrivileges();
    WithoutPrivileges(const WithoutPrivileges&) = delete;
    WithoutPrivileges& operator=(const WithoutPrivileges&) = delete;

private:
    unsigned former_ = 0;
};

/// While it exists, new threads get small stacks, so that a 32-bit process has room for hundreds. Has no
/// effect on Windows, where the linker sets their size.
class SmallThreadStacks
{
public:
    SmallThreadStacks();
    ~SmallThreadStacks();
    SmallThreadStacks(const SmallThreadStacks&) = delete;
    SmallThreadStacks& operator=(const SmallThreadStacks&) = delete;

private:
    std::size_t former_ = 0;
};

/// Makes a file read-only or writable.
void SetReadOnly(const std::string& path, bool readOnly);

/// Creates a named pipe; false on a failure, and where the system has none among its files.
bool MakeNamedPipe(const std::string& path);

} // namespace marvane::testing
