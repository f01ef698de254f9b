#include "logger/log/log_file.h"

#include <algorithm>
#include <cstdio>

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
    std::unique_ptr<LogFile> opened(new LogFile(file));
    if (LineWasCut && opened->size_ != 0) {
        opened->last_ = LastCharacter(path);
        opened->BeginAfterCut();
    }
    return opened;
}

LogFile::LogFile(platform::File file)
    : file_(file), size_(platform::FileSize(file)), pageRoom_(PageSize - size_ % PageSize)
{
}

LogFile::~LogFile()
{
    Flush();
    platform::CloseFile(file_);
}

void LogFile::WriteOut(std::string_view text, std::size_t rest)
{
    std::string_view written = text.substr(0, text.size() - rest);
    if (length_ != 0 && written.size() <= buffer_.size() - length_) {
        // One write is cheaper than two.
        CopyText(buffer_.data() + length_, written.data(), written.size());
        length_ += written.size();
        written = {};
    }
    const std::string_view kept(buffer_.data(), length_);
    const std::size_t count = platform::WriteToFile(file_, kept, written);
    if (count != kept.size() + written.size()) {
        CountWritten(kept.substr(0, count), written.substr(0, count - std::min(count, kept.size())));
        return BeginAfterCut();
    }
    CountWritten(kept, written);
    CopyText(buffer_.data(), text.data() + text.size() - rest, rest);
    length_ = rest;
}

void LogFile::CountWritten(std::string_view first, std::string_view second)
{
    const std::size_t grown = platform::SizeInFile(first) + platform::SizeInFile(second);
    size_ += grown;
    sizeAge_ += grown;
    const std::size_t characters = first.size() + second.size();
    pageRoom_ = shared_ ? PageSize : PageSize - (PageSize - pageRoom_ + characters) % PageSize;
    if (characters != 0)
        last_ = second.empty() ? first.back() : second.back();
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
    if (sizeAge_ >= buffer_.size()) {
        size_ = platform::FileSize(file_);
        sizeAge_ = 0;
    }
    return size_;
}

} // namespace marvane
