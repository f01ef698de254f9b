// The state of this process as the system sees it, and shortages that a test brings about.
#pragma once

#include <cstddef>
#include <cstdio>
#include <string>
#include <vector>

namespace marvane::testing {

/// Number of files and other system objects that the process holds open or mapped.
std::size_t OpenHandles();

/// Bytes of memory that the process has taken and not given back.
std::size_t MemoryInUse();

/// While it exists, no file can be opened: the process has used up what the system, or its C library, allows.
class NoMoreFiles
{
public:
    NoMoreFiles();
    ~NoMoreFiles();
    NoMoreFiles(const NoMoreFiles&) = delete;
    NoMoreFiles& operator=(const NoMoreFiles&) = delete;

private:
    std::vector<std::FILE*> files_;
    std::size_t formerLimit_ = 0;
};

/// While it exists, no file of the process grows past a size: its writes fail as on a full disk. Where the
/// system can't do that, IsInForce is false.
class LargestFile
{
public:
    explicit LargestFile(std::size_t bytes);
    ~LargestFile();
    LargestFile(const LargestFile&) = delete;
    LargestFile& operator=(const LargestFile&) = delete;

    static bool IsInForce();

private:
    std::size_t former_ = 0;
};

/// While it exists, the process has no more rights than a guest of the system: read-only means read-only.
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

/// Makes a file read-only, or takes that back.
void SetReadOnly(const std::string& path, bool readOnly);

/// Makes a named pipe where files can be one; false where they can't.
bool MakeNamedPipe(const std::string& path);

} // namespace marvane::testing
