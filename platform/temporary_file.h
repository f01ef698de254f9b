// A temporary file that no end of the process can leave behind.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>

#include "platform/files.h"

namespace marvane::platform {

/// Belongs to this process alone: on Linux it has no name, on Windows nobody else can open it. The system
/// removes it when it is closed, also where the process is killed.
class TemporaryFile
{
public:
    /// Makes one in the user's temporary folder; null if that fails.
    static std::unique_ptr<TemporaryFile> Make();
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    /// Adds bytes at the end. False if not all could be written.
    bool Append(std::string_view bytes);
    /// Reads from a byte on and returns how many bytes there were: 0 at the end.
    std::size_t ReadAt(std::uint64_t offset, std::span<char> buffer) const;
    std::uint64_t Size() const { return size_; }

private:
    explicit TemporaryFile(File file) : file_(file) {}

    File file_;
    std::uint64_t size_ = 0;
};

} // namespace marvane::platform
