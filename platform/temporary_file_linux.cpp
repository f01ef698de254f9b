#include "platform/temporary_file.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <string>

#include <fcntl.h>
#include <unistd.h>

namespace marvane::platform {

namespace {

int OpenWithoutName(const std::string& folder)
{
    const int file = open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
    if (file >= 0)
        return file;
    // Not every file system can do that. Killed between these two calls, it leaves an empty file.
    std::string path = folder + "/marvane-XXXXXX";
    const int named = mkostemp(path.data(), O_CLOEXEC);
    if (named >= 0)
        unlink(path.c_str());
    return named;
}

} // namespace

std::unique_ptr<TemporaryFile> TemporaryFile::Make()
{
    std::error_code failed;
    const std::filesystem::path folder = std::filesystem::temp_directory_path(failed);
    const int file = failed ? NoFile : OpenWithoutName(folder.string());
    return std::unique_ptr<TemporaryFile>(file < 0 ? nullptr : new TemporaryFile(file));
}

TemporaryFile::~TemporaryFile()
{
    close(file_);
}

bool TemporaryFile::Append(std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t written = pwrite(file_, bytes.data(), bytes.size(), static_cast<off_t>(size_));
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        size_ += static_cast<std::uint64_t>(written);
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

std::size_t TemporaryFile::ReadAt(std::uint64_t offset, std::span<char> buffer) const
{
    for (;;) {
        const ssize_t count = pread(file_, buffer.data(), buffer.size(), static_cast<off_t>(offset));
        if (count >= 0 || errno != EINTR)
            return count < 0 ? 0 : static_cast<std::size_t>(count);
    }
}

} // namespace marvane::platform
