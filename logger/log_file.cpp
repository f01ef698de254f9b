#include "logger/log_file.h"

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

void LogFile::WriteOut(std::string_view text)
{
    const std::string_view kept(buffer_.data(), length_);
    const std::size_t grown = platform::SizeInFile(kept) + platform::SizeInFile(text);
    platform::WriteToFile(file_, kept, text);
    size_ += grown;
    sizeAge_ += grown;
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
