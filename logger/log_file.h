// An open log file with its buffer.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "logger/text_copy.h"
#include "platform/platform.h"

namespace marvane {

/// Appends texts, each whole: the buffer is never written out in the middle of one. It holds what a stream
/// of the standard library holds, so no more than that is lost when a process dies. Guarded by LogMutex.
class LogFile
{
public:
    /// Opens a file for appending; null on failure.
    static std::unique_ptr<LogFile> Open(const std::string& path);
    ~LogFile();
    LogFile(const LogFile&) = delete;
    LogFile& operator=(const LogFile&) = delete;

    void Write(std::string_view text, bool flush)
    {
        if (flush || !Buffering || text.size() >= buffer_.size() - length_)
            return WriteOut(text);
        CopyText(buffer_.data() + length_, text.data(), text.size());
        length_ += text.size();
    }
    /// Writes the buffer out.
    void Flush() { WriteOut({}); }
    /// Writes the buffer out and tells the size of the file. What others append meanwhile, as a process that
    /// began in the same second may, counts once this file has grown by as much as the buffer holds.
    std::uint64_t FlushedSize();

    /// From now on no file keeps anything back: nobody will come by to write it out.
    static void EndBuffering() { Buffering = false; }

private:
    explicit LogFile(platform::File file) : file_(file), size_(platform::FileSize(file)) {}

    void WriteOut(std::string_view text);

    static bool Buffering;

    platform::File file_;
    std::uint64_t size_; ///< of what is in the file
    std::size_t sizeAge_ = 0;
    std::size_t length_ = 0;
    std::array<char, 4096> buffer_;
};

} // namespace marvane
