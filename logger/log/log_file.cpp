#include "logger/log/log_file.h"

#include <cstdio>
#include <utility>

namespace marvane {

namespace {

/// Last character of a file; NUL if it can't be read.
char LastCharacter(const std::string& path)
{
    std::FILE* const file = platform::OpenForReading(path);
    if (!file)
        return 0;
    const int last = std::fseek(file, -1, SEEK_END) == 0 ? std::fgetc(file) : EOF;
    std::fclose(file);
    return last == EOF ? '\0' : static_cast<char>(last);
}

} // namespace

bool LogFile::Buffering = true;
bool LogFile::LineWasCut = false;

std::unique_ptr<LogFile> LogFile::Open(const std::string& path)
{
    const platform::File file = platform::OpenLogFile(path);
    if (file == platform::NoFile)
        return nullptr;
    std::unique_ptr<LogFile> opened(new LogFile(file, path));
    if (LineWasCut)
        opened->BeginAfterUnknown();
    return opened;
}

LogFile::LogFile(platform::File file, const std::string& path)
    : file_(file), path_(path), size_(platform::FileSize(file)), pageRoom_(PageSize - size_ % PageSize)
{
}

LogFile::~LogFile()
{
    Flush();
    platform::CloseFile(file_);
}

void LogFile::WritePages(std::string_view text)
{
    // Two processes with one file have begun in the same second, so most looks are worth their price (7 ns a
    // two-line call if each page gets one) only at first.
    const unsigned page = pages_++;
    if (!shared_ && (page < PagesPerLook || page % PagesPerLook == 0))
        LookForOthers();
    WriteOut(text, shared_ ? 0 : (text.size() - (pageRoom_ - length_)) % PageSize);
}

void LogFile::LookForOthers()
{
    const std::uint64_t size = platform::FileSize(file_);
    shared_ |= size != size_;
    size_ = size;
    sizeAge_ = 0;
}

void LogFile::WriteOut(std::string_view text, std::size_t rest)
{
    if (pageRoom_ == WriteUnderWay) {
        BeginAfterUnknown();
        rest = 0;
    }
    // Before the write: if the thread is terminated in it, nobody must write the buffer again.
    std::string_view kept(buffer_.data(), std::exchange(length_, 0));
    std::string_view written = text.substr(0, text.size() - rest);
    if (!kept.empty() && written.size() <= buffer_.size() - kept.size()) {
        // One write is cheaper than two.
        CopyText(buffer_.data() + kept.size(), written.data(), written.size());
        kept = {kept.data(), kept.size() + written.size()};
        written = {};
    }
    const std::size_t room = std::exchange(pageRoom_, WriteUnderWay);
    const platform::Written count = platform::WriteToFile(file_, kept, written);
    CountWritten(count, room);
    if (count.Characters > kept.size())
        last_ = written[count.Characters - kept.size() - 1];
    else if (count.Characters != 0)
        last_ = kept[count.Characters - 1];
    if (count.Characters != kept.size() + written.size())
        return BeginAfterCut();
    CopyText(buffer_.data(), text.data() + text.size() - rest, rest);
    length_ = rest;
}

void LogFile::CountWritten(platform::Written written, std::size_t room)
{
    size_ += written.Bytes;
    sizeAge_ += written.Bytes;
    pageRoom_ = shared_ ? PageSize : PageSize - (PageSize - room + written.Characters) % PageSize;
}

void LogFile::BeginAfterUnknown()
{
    size_ = platform::FileSize(file_);
    sizeAge_ = 0;
    last_ = size_ == 0 ? '\n' : LastCharacter(path_);
    pageRoom_ = shared_ ? PageSize : PageSize - size_ % PageSize;
    BeginAfterCut();
}

void LogFile::BeginAfterCut()
{
    buffer_[0] = '\n';
    length_ = last_ == '\n' ? 0 : 1;
    LineWasCut |= length_ != 0;
}

std::uint64_t LogFile::FlushedSize()
{
    Flush();
    if (sizeAge_ >= buffer_.size())
        LookForOthers();
    return size_;
}

} // namespace marvane
