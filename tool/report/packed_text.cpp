#include "tool/report/packed_text.h"

#include <array>
#include <utility>

// The compressor then takes constant input.
#define ZLIB_CONST
#include <zlib.h>

#include "tool/console/arguments.h"
#include "tool/report/base64.h"

namespace marvane::tool {

namespace {

constexpr std::size_t InputSize = 64 * 1024;

} // namespace

class PackedText::Packer
{
public:
    Packer()
    {
        constexpr int withGzipHeader = 16;
        constexpr int mostMemory = 9;
        if (deflateInit2(&stream_, Z_DEFAULT_COMPRESSION, Z_DEFLATED, MAX_WBITS + withGzipHeader, mostMemory,
                         Z_DEFAULT_STRATEGY) != Z_OK)
            throw Trouble("out of memory");
    }
    ~Packer() { deflateEnd(&stream_); }
    Packer(const Packer&) = delete;
    Packer& operator=(const Packer&) = delete;

    void Write(std::string_view bytes)
    {
        waiting_ += bytes; // Lines are short, and each call of the compressor costs.
        if (waiting_.size() >= InputSize)
            Pack(Z_NO_FLUSH);
    }

    std::string Finish()
    {
        Pack(Z_FINISH);
        encoder_.Finish(text_);
        return std::move(text_);
    }

private:
    void Pack(int flush)
    {
        std::array<char, InputSize> packed;
        stream_.next_in = reinterpret_cast<const Bytef*>(waiting_.data());
        stream_.avail_in = static_cast<uInt>(waiting_.size());
        do {
            stream_.next_out = reinterpret_cast<Bytef*>(packed.data());
            stream_.avail_out = static_cast<uInt>(packed.size());
            deflate(&stream_, flush);
            encoder_.Append(text_, {packed.data(), packed.size() - stream_.avail_out});
        } while (stream_.avail_out == 0);
        waiting_.clear();
    }

    z_stream stream_{};
    std::string waiting_;
    Base64 encoder_;
    std::string text_;
};

PackedText::PackedText() : packer_(std::make_unique<Packer>()) {}

PackedText::~PackedText() = default;

void PackedText::Write(std::string_view bytes)
{
    packer_->Write(bytes);
}

std::string PackedText::Finish()
{
    return packer_->Finish();
}

} // namespace marvane::tool
