#include "logger/log/log_file.h"

#include <algorithm>

namespace marvane {

bool LogFile::Buffering = true;

std::unique_ptr<LogFile> LogFile::Open(const std::string& path)
{
    const platform::File file = platform::OpenLogFile(path);
    return std::unique_ptr<LogFile>(file == platform::NoFile ? nullptr : new LogFile(file));
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
        // One piece is written faster than two.
        CopyText(buffer_.data() + length_, written.data(), written.size());
        length_ += written.size();
        written = {};
    }
    const std::string_view kept(buffer_.data(), length_);
    const std::size_t count = platform::WriteToFile(file_, kept, written);
    CountWritten(kept.substr(0, count));
    CountWritten(written.substr(0, count - std::min(count, kept.size())));
    if (count != kept.size() + written.size())
        return BeginAfterCut();
    CopyText(buffer_.data(), text.data() + text.size() - rest, rest);
    length_ = rest;
}

void LogFile::CountWritten(std::string_view text)
{
    if (text.empty())
        return;
    const std::size_t grown = platform::SizeInFile(text);
    size_ += grown;
    sizeAge_ += grown;
    pageRoom_ = shared_ ? PageSize : PageSize - (PageSize - pageRoom_ + text.size()) % PageSize;
    last_ = text.back();
}

void LogFile::BeginAfterCut()
{
    buffer_[0] = '\n';
    length_ = last_ == '\n' ? 0 : 1;
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
