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

/// Appends text. The buffer is as large as stdio's (4 KiB), so a crash loses no more. It is flushed at page
/// boundaries of the file, because writing a page in two parts costs the kernel twice: 200 instead of 187 ns
/// a two-line call. Once another process is known to write to the file, only whole texts are written. Guarded
/// by LogMutex.
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
            return WritePages(text);
        CopyText(buffer_.data() + length_, text.data(), text.size());
        length_ += text.size();
    }
    /// Writes the buffer out.
    void Flush() { WriteOut({}, 0); }
    /// Writes the buffer out and returns the size of the file in bytes. What other processes append (one that
    /// began in the same second uses the same name) is counted after at most one buffer's length.
    std::uint64_t FlushedSize();

    /// Writes the buffer out, before a fork: from now on two processes write to the file.
    void Share()
    {
        Flush();
        shared_ = true;
    }

    /// Disables buffering for all files: after static destruction nothing would flush them.
    static void EndBuffering() { Buffering = false; }

private:
    static constexpr std::size_t PageSize = 4096;
    static constexpr unsigned PagesPerLook = 8;

    /// In `pageRoom_`: a thread writes the file, or was terminated while it did.
    static constexpr std::size_t WriteUnderWay = 0;

    LogFile(platform::File file, const std::string& path);

    /// Writes out the buffer and a text, up to the end of a page while no other process writes to the file.
    void WritePages(std::string_view text);
    /// Writes out the buffer and a text except its last `rest` characters, which stay in the buffer. On an
    /// error, such as a full disk, what was not written is lost, `rest` included.
    void WriteOut(std::string_view text, std::size_t rest);
    /// Queries the size of the file. If it is not what was counted, another process writes to it too.
    void LookForOthers();
    /// Counts what was written after all else, when the last page had this much room.
    void CountWritten(platform::Written written, std::size_t room);
    /// Begins the buffer after a text that was cut: with a line end, unless the file ends with one.
    void BeginAfterCut();
    /// Begins the buffer after a text that was perhaps cut, elsewhere or by the end of its thread.
    void BeginAfterUnknown();

    static bool Buffering;
    /// A line of some file was cut: each file that is opened may be that one.
    static bool LineWasCut;

    platform::File file_;
    std::string path_;
    std::uint64_t size_; ///< bytes in the file, as far as known
    char last_ = '\n';   ///< last character in the file
    std::size_t sizeAge_ = 0;
    std::size_t length_ = 0;
    /// Characters left in the file's last page (meaningless once the file is shared). A line end counts as
    /// one.
    std::size_t pageRoom_;
    unsigned pages_ = 0; ///< that were written out because they were full
    bool shared_ = false;
    std::array<char, PageSize> buffer_;
};

} // namespace marvane
