#include "tool/read/byte_source.h"

#include <cstdio>
#include <cstring>
#include <fstream>
#include <utility>
#include <vector>

#include <zlib.h>

namespace marvane::read {

namespace {

class FileSource : public ByteSource
{
public:
    FileSource(const std::filesystem::path& path, std::uint64_t begin) : stream_(path, std::ios::binary)
    {
        stream_.seekg(static_cast<std::streamoff>(begin));
    }
    bool IsOpen() const { return stream_.is_open(); }

    std::size_t Read(std::span<char> buffer) override
    {
        stream_.read(buffer.data(), static_cast<std::streamsize>(buffer.size()));
        return static_cast<std::size_t>(stream_.gcount());
    }

    std::string Trouble() const override { return stream_.bad() ? "can't be read" : ""; }

private:
    std::ifstream stream_;
};

class InputSource : public ByteSource
{
public:
    std::size_t Read(std::span<char> buffer) override
    {
        return std::fread(buffer.data(), 1, buffer.size(), stdin);
    }
};

class CopySource : public ByteSource
{
public:
    explicit CopySource(std::shared_ptr<const platform::TemporaryFile> spool) : spool_(std::move(spool)) {}

    std::size_t Read(std::span<char> buffer) override
    {
        const std::size_t count = spool_->ReadAt(at_, buffer);
        isShort_ = count == 0 && at_ < spool_->Size();
        at_ += count;
        return count;
    }

    std::string Trouble() const override { return isShort_ ? "can't be read" : ""; }

private:
    std::shared_ptr<const platform::TemporaryFile> spool_;
    std::uint64_t at_ = 0;
    bool isShort_ = false;
};

/// Passes bytes on, those first that were read to look at them.
class PlainSource : public ByteSource
{
public:
    PlainSource(std::unique_ptr<ByteSource> source, std::vector<char> first)
        : source_(std::move(source)), first_(std::move(first))
    {
    }

    std::size_t Read(std::span<char> buffer) override
    {
        if (taken_ == first_.size())
            return source_->Read(buffer);
        const std::size_t count = std::min(buffer.size(), first_.size() - taken_);
        std::memcpy(buffer.data(), first_.data() + taken_, count);
        taken_ += count;
        return count;
    }

    std::string Trouble() const override { return source_->Trouble(); }

private:
    std::unique_ptr<ByteSource> source_;
    std::vector<char> first_;
    std::size_t taken_ = 0;
};

/// Unpacks gzip members one after the other.
class GzipSource : public ByteSource
{
public:
    explicit GzipSource(std::unique_ptr<ByteSource> source) : source_(std::move(source)), packed_(PackedSize)
    {
        constexpr int gzipOnly = 16;
        isGood_ = inflateInit2(&stream_, MAX_WBITS + gzipOnly) == Z_OK;
    }
    ~GzipSource() override { inflateEnd(&stream_); }
    GzipSource(const GzipSource&) = delete;
    GzipSource& operator=(const GzipSource&) = delete;

    std::size_t Read(std::span<char> buffer) override
    {
        stream_.next_out = reinterpret_cast<Bytef*>(buffer.data());
        stream_.avail_out = static_cast<uInt>(buffer.size());
        while (isGood_ && stream_.avail_out == buffer.size())
            Step();
        return buffer.size() - stream_.avail_out;
    }

    std::string Trouble() const override { return trouble_.empty() ? source_->Trouble() : trouble_; }

private:
    static constexpr std::size_t PackedSize = 64 * 1024;

    void Step()
    {
        if (stream_.avail_in == 0 && !Fill()) {
            if (!isBetweenMembers_)
                trouble_ = "the compressed file ends too early";
            isGood_ = false;
            return;
        }
        if (isBetweenMembers_ && inflateReset(&stream_) != Z_OK) {
            isGood_ = false;
            return;
        }
        isBetweenMembers_ = false;
        const int result = inflate(&stream_, Z_NO_FLUSH);
        isBetweenMembers_ = result == Z_STREAM_END;
        if (result == Z_OK || result == Z_STREAM_END || result == Z_BUF_ERROR)
            return;
        trouble_ = "the compressed file is damaged";
        isGood_ = false;
    }

    bool Fill()
    {
        stream_.next_in = reinterpret_cast<Bytef*>(packed_.data());
        stream_.avail_in = static_cast<uInt>(source_->Read(packed_));
        return stream_.avail_in > 0;
    }

    std::unique_ptr<ByteSource> source_;
    std::vector<char> packed_;
    z_stream stream_{};
    bool isGood_ = false;
    bool isBetweenMembers_ = false;
    std::string trouble_;
};

} // namespace

std::unique_ptr<ByteSource> OpenFileSource(const std::filesystem::path& path, std::uint64_t begin)
{
    auto source = std::make_unique<FileSource>(path, begin);
    return source->IsOpen() ? std::unique_ptr<ByteSource>(std::move(source)) : nullptr;
}

std::unique_ptr<ByteSource> StandardInputSource()
{
    return std::make_unique<InputSource>();
}

std::unique_ptr<ByteSource> SpoolSource(std::shared_ptr<const platform::TemporaryFile> spool)
{
    return std::make_unique<CopySource>(std::move(spool));
}

std::unique_ptr<ByteSource> MaybeUnpacked(std::unique_ptr<ByteSource> source)
{
    std::vector<char> first(2);
    std::size_t count = 0;
    while (count < first.size()) {
        const std::size_t more = source->Read(std::span(first).subspan(count));
        if (more == 0)
            break;
        count += more;
    }
    first.resize(count);
    const bool isGzip = count == 2 && first[0] == '\x1F' && first[1] == '\x8B';
    auto whole = std::make_unique<PlainSource>(std::move(source), std::move(first));
    if (!isGzip)
        return whole;
    return std::make_unique<GzipSource>(std::move(whole));
}

} // namespace marvane::read
