#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "platform/replace_file.h"
#include "platform/utf8_path.h"
#include "tool/console/arguments.h"
#include "tool/export/sink.h"

namespace marvane::tool {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t BufferSize = 256 * 1024;

std::string LastError()
{
    return errno == 0 ? "can't be written" : std::strerror(errno);
}

class FileSink : public Sink
{
public:
    FileSink(const std::string& path, Existing existing) : path_(path), written_(path)
    {
        const fs::file_status status = fs::status(platform::FilePath(path));
        if (fs::is_directory(status))
            throw Trouble(path + ": is a folder");
        const bool isThere = fs::exists(status);
        if (isThere && fs::is_regular_file(status) && existing == Existing::Refused)
            throw Trouble(path + ": exists (--force replaces it)");
        // Devices and pipes keep their places.
        isBeside_ = existing != Existing::Extended && (!isThere || fs::is_regular_file(status));
        if (isBeside_)
            written_ += platform::UnfinishedMark;
        Open(existing);
    }

    ~FileSink() override
    {
        if (!isBeside_ || isFinished_)
            return;
        stream_.close();
        std::error_code ignored;
        fs::remove(platform::FilePath(written_), ignored);
    }

    void Write(std::string_view bytes) override
    {
        buffer_ += bytes;
        if (buffer_.size() >= BufferSize)
            Flush();
    }

    void Flush() override
    {
        errno = 0;
        if (!stream_.write(buffer_.data(), static_cast<std::streamsize>(buffer_.size())))
            throw Trouble(path_ + ": " + LastError());
        buffer_.clear();
    }

    void Finish() override
    {
        Flush();
        errno = 0;
        stream_.close();
        if (!stream_)
            throw Trouble(path_ + ": " + LastError());
        const std::string failure = isBeside_ ? platform::RenameFile(written_, path_) : std::string();
        if (!failure.empty())
            throw Trouble(path_ + ": " + failure);
        isFinished_ = true;
    }

private:
    void Open(Existing existing)
    {
        std::error_code ignored;
        if (isBeside_)
            fs::remove(platform::FilePath(written_), ignored); // Left by a run that was interrupted.
        errno = 0;
        stream_.rdbuf()->pubsetbuf(nullptr, 0);
        stream_.open(platform::FilePath(written_), existing == Existing::Extended
                                                       ? std::ios::binary | std::ios::app
                                                       : std::ios::binary | std::ios::out);
        if (!stream_)
            throw Trouble(path_ + ": " + LastError());
    }

    std::string path_;
    std::string written_; ///< the file that is open
    bool isBeside_ = false;
    bool isFinished_ = false;
    std::string buffer_;
    std::ofstream stream_;
};

class OutputSink : public Sink
{
public:
    explicit OutputSink(Console& console) : console_(console) {}

    void Write(std::string_view bytes) override
    {
        try {
            console_.Write(bytes);
        } catch (const OutputClosed&) {
            Refuse();
        }
    }

    void Flush() override
    {
        try {
            console_.Flush();
        } catch (const OutputClosed&) {
            Refuse();
        }
    }

    void Finish() override { Flush(); }

private:
    [[noreturn]] static void Refuse()
    {
        throw Trouble("standard output was closed before everything was written");
    }

    Console& console_;
};

} // namespace

bool Sink::SelectDay(std::int64_t)
{
    const bool isFirst = !hasDay_;
    hasDay_ = true;
    return isFirst;
}

std::unique_ptr<Sink> MakeFileSink(const std::string& path, Existing existing)
{
    return std::make_unique<FileSink>(path, existing);
}

std::unique_ptr<Sink> MakeOutputSink(Console& console)
{
    return std::make_unique<OutputSink>(console);
}

std::unique_ptr<Sink> MakeSink(const std::string& path, Existing existing, Console& console)
{
    return path == "-" ? MakeOutputSink(console) : MakeFileSink(path, existing);
}

} // namespace marvane::tool
