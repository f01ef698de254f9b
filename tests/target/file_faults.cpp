// The linker puts these in place of the system calls that the logger library makes (--wrap), so that they
// fail in the library alone, and neither in the test nor in the C library.
#include "tests/target/file_faults.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdarg>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

using marvane::testing::FileFaults;
using marvane::testing::NoFault;
using marvane::testing::ShortWrite;

namespace {

FileFaults Faults;
/// The open files that Faults concerns, by descriptor.
std::array<std::atomic<bool>, 1024> IsConcerned;

bool Concerns(const char* path)
{
    return Faults.Concerns && Faults.Concerns(Faults.Context, path);
}

bool Concerns(int file)
{
    return file >= 0 && static_cast<std::size_t>(file) < IsConcerned.size() &&
           IsConcerned[static_cast<std::size_t>(file)];
}

/// Sets errno for a fault that is an error.
int Choose(const char* call)
{
    const int fault = Faults.Choose(Faults.Context, call);
    if (fault > 0)
        errno = fault;
    return fault;
}

} // namespace

extern "C" {

__attribute__((visibility("default"))) FileFaults* PDUFileFaults()
{
    return &Faults;
}

int __real_open(const char* path, int flags, ...);
int __real_close(int file);
ssize_t __real_write(int file, const void* bytes, size_t size);
ssize_t __real_writev(int file, const iovec* parts, int count);
long __real_syscall(long number, long a, long b, long c, long d, long e, long f);
off_t __real_lseek(int file, off_t offset, int origin);
int __real_mkdir(const char* path, mode_t mode);
DIR* __real_opendir(const char* path);

int __wrap_open(const char* path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    const bool concerns = Concerns(path);
    if (concerns && Choose("open") > 0)
        return -1;
    const int file = __real_open(path, flags, mode);
    if (file >= 0 && static_cast<std::size_t>(file) < IsConcerned.size())
        IsConcerned[static_cast<std::size_t>(file)] = concerns;
    return file;
}

int __wrap_close(int file)
{
    const bool fails = Concerns(file) && Choose("close") > 0;
    // The descriptor is gone even if close() reports an error.
    const int error = errno;
    const int result = __real_close(file);
    if (!fails)
        return result;
    errno = error;
    return -1;
}

ssize_t __wrap_write(int file, const void* bytes, size_t size)
{
    const int fault = Concerns(file) ? Choose("write") : NoFault;
    if (fault > 0)
        return -1;
    return __real_write(file, bytes, fault == ShortWrite ? (size + 1) / 2 : size);
}

ssize_t __wrap_writev(int file, const iovec* parts, int count)
{
    const int fault = Concerns(file) ? Choose("writev") : NoFault;
    if (fault > 0)
        return -1;
    return fault == ShortWrite ? __real_write(file, parts[0].iov_base, (parts[0].iov_len + 1) / 2)
                               : __real_writev(file, parts, count);
}

// The library writes without the C library's wrapper, which is a cancellation point.
long __wrap_syscall(long number, long a, long b, long c, long d, long e, long f)
{
    if (number == SYS_write)
        return __wrap_write(static_cast<int>(a), reinterpret_cast<const void*>(b), static_cast<size_t>(c));
    if (number == SYS_writev)
        return __wrap_writev(static_cast<int>(a), reinterpret_cast<const iovec*>(b), static_cast<int>(c));
    return __real_syscall(number, a, b, c, d, e, f);
}

off_t __wrap_lseek(int file, off_t offset, int origin)
{
    return Concerns(file) && Choose("lseek") > 0 ? -1 : __real_lseek(file, offset, origin);
}

int __wrap_mkdir(const char* path, mode_t mode)
{
    return Concerns(path) && Choose("mkdir") > 0 ? -1 : __real_mkdir(path, mode);
}

DIR* __wrap_opendir(const char* path)
{
    return Concerns(path) && Choose("opendir") > 0 ? nullptr : __real_opendir(path);
}
}
