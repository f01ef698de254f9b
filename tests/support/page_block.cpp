#include "tests/support/page_block.h"

#include <cstdint>

#include <gtest/gtest.h>
#include <zlib.h>

namespace marvane::testing {

std::string DecodedBase64(std::string_view text)
{
    constexpr std::string_view letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string bytes;
    std::uint32_t group = 0;
    unsigned bits = 0;
    for (const char letter : text) {
        const std::size_t value = letters.find(letter);
        if (value == std::string_view::npos)
            break;
        group = group << 6 | static_cast<std::uint32_t>(value);
        bits += 6;
        if (bits < 8)
            continue;
        bits -= 8;
        bytes += static_cast<char>(group >> bits & 0xFF);
    }
    return bytes;
}

std::string Unpacked(std::string_view text)
{
    constexpr int withGzipHeader = 16;
    std::string packed = DecodedBase64(text);
    z_stream stream{};
    EXPECT_EQ(inflateInit2(&stream, MAX_WBITS + withGzipHeader), Z_OK);
    stream.next_in = reinterpret_cast<Bytef*>(packed.data());
    stream.avail_in = static_cast<uInt>(packed.size());
    std::string bytes;
    int status = Z_OK;
    while (status == Z_OK) {
        char piece[4096];
        stream.next_out = reinterpret_cast<Bytef*>(piece);
        stream.avail_out = sizeof piece;
        status = inflate(&stream, Z_NO_FLUSH);
        bytes.append(piece, sizeof piece - stream.avail_out);
    }
    inflateEnd(&stream);
    EXPECT_EQ(status, Z_STREAM_END);
    return bytes;
}

std::string PageBlock(std::string_view page, std::string_view id)
{
    const std::string begin = "<script type=\"text/plain\" id=\"" + std::string(id) + "\">";
    const std::size_t at = page.find(begin);
    return at == std::string_view::npos ? std::string() : Unpacked(page.substr(at + begin.size()));
}

} // namespace marvane::testing
