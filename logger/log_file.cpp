#include "logger/log_file.h"

#include "logger/text_copy.h"

namespace marvane {

bool LogFile::Buffering = true;

std::unique_ptr<LogFile> LogFile::Open(const std::string& path)
{
    const platform::File file = platform::OpenLogFile(path);
    return std::unique_ptr<LogFile>(file == platform::NoFile ? nullptr : new LogFile(file));
}

LogFile::~LogFile()
{
    Flush();
    platform::CloseFile(file_);
}

void LogFile::Write(std::string_view text, bool flush)
{
    const std::size_t grown = platform::SizeInFile(text);
    size_ += grown;
    sizeAge_ += grown;
    if (!flush && Buffering && text.size() < buffer_.size() - length_) {
        CopyText(buffer_.data() + length_, text.data(), text.size());
        length_ += text.size();
        return;
    }
    platform::WriteToFile(file_, {buffer_.data(), length_}, text);
    length_ = 0;
}

void LogFile::Flush()
{
    if (length_ != 0)
        platform::WriteToFile(file_, {buffer_.data(), length_}, {});
    length_ = 0;
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
