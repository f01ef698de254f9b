// An open log file with its buffer.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/files.h"
#include "text/text_copy.h"

namespace marvane {

/// Appends texts. The buffer holds what a stream of the standard library holds, so no more than that is lost
/// when a process dies, and is written out where a page of the file ends: a page written in two parts costs
/// twice. A file that another process is known to write to gets whole texts. Guarded by LogMutex.
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
        if (flush || !Buffering)
            return WriteOut(text, 0);
        if (text.size() >= pageRoom_ - length_)
            return WriteOut(text, shared_ ? 0 : (text.size() - (pageRoom_ - length_)) % PageSize);
        CopyText(buffer_.data() + length_, text.data(), text.size());
        length_ += text.size();
    }
    /// Writes the buffer out.
    void Flush() { WriteOut({}, 0); }
    /// Writes the buffer out and tells the size of the file. What others append meanwhile, as a process that
    /// began in the same second may, counts once this file has grown by as much as the buffer holds.
    std::uint64_t FlushedSize();

    /// Writes the buffer out, for a process that forks: from now on there are two that write.
    void Share()
    {
        Flush();
        shared_ = true;
    }

    /// From now on no file keeps anything back: nobody will come by to write it out.
    static void EndBuffering() { Buffering = false; }

private:
    static constexpr std::size_t PageSize = 4096;

    explicit LogFile(platform::File file);

    /// Writes out the buffer and a text except its last `rest` characters, which stay in the buffer. On an
    /// error, such as a full disk, what was not written is lost, `rest` included.
    void WriteOut(std::string_view text, std::size_t rest);
    /// Counts characters that were written after all others.
    void CountWritten(std::string_view first, std::string_view second);
    /// The same for a write that was cut. The next begins with a line end, unless the file ends with one.
    void CountCut(std::string_view first, std::string_view second);

    static bool Buffering;

    platform::File file_;
    std::uint64_t size_; ///< of what is in the file
    char last_ = '\n';   ///< last character in the file
    std::size_t sizeAge_ = 0;
    std::size_t length_ = 0;
    /// From the end of the file to the end of its page, while there is but one that writes. A line end counts
    /// as one character.
    std::size_t pageRoom_;
    bool shared_ = false;
    std::array<char, PageSize> buffer_;
};

} // namespace marvane
