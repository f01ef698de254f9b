#include "platform/shared_words.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include "platform/descriptor_linux.h"
#include "platform/uninterrupted.h"

namespace marvane::platform {

bool SharedWords::Open(const std::string& path, std::size_t count, std::int32_t fill, std::string& error)
{
    error.clear();
    if (words_)
        return true;
    if (descriptor_ == -1) {
        const Uninterrupted scope;
        descriptor_ = OpenDescriptor(path, O_RDWR | O_CREAT, 0666);
        if (descriptor_ == -1) {
            error = std::strerror(errno);
            return false;
        }
        struct stat status;
        if (fstat(descriptor_, &status) != 0 || !S_ISREG(status.st_mode)) {
            Close();
            error = "Not a regular file";
            return false;
        }
        const off_t size = lseek(descriptor_, 0, SEEK_END);
        for (auto words = static_cast<std::size_t>(std::max<off_t>(size, 0)) / sizeof fill; words < count;
             ++words)
            if (write(descriptor_, &fill, sizeof fill) == -1)
                break;
    }
    // Words past the end of the file could be mapped, but not read.
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
    // Reading a truncated mapping raises SIGBUS; process_vm_readv reports EFAULT instead.
    const iovec word = {const_cast<std::int32_t*>(words_ + index), sizeof value};
    const iovec copy = {&value, sizeof value};
    if (process_vm_readv(getpid(), &copy, 1, &word, 1, 0) == static_cast<ssize_t>(sizeof value))
        return true;
    struct stat status;
    if (errno == EFAULT || fstat(descriptor_, &status) != 0 ||
        status.st_size < static_cast<off_t>(mappedBytes_))
        return false;
    // The kernel, or a sandbox, does not support such copies.
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

} // namespace marvane::platform
