#include "bench/dump_ways.h"

#include <array>
#include <cstring>

namespace marvane::bench {

namespace {

constexpr char Digits[] = "0123456789ABCDEF";

constexpr auto Pairs = [] {
    std::array<char, 512> pairs = {};
    for (std::size_t i = 0; i < 256; ++i) {
        pairs[i * 2] = Digits[i >> 4];
        pairs[i * 2 + 1] = Digits[i & 15];
    }
    return pairs;
}();

constexpr auto Printable = [] {
    std::array<char, 256> printable = {};
    for (std::size_t i = 0; i < 256; ++i)
        printable[i] = i >= 0x20 && i <= 0x7E ? static_cast<char>(i) : '.';
    return printable;
}();

} // namespace

void PutDumpTemplate(char* line, std::string_view stamp)
{
    std::memset(line, ' ', DumpLineLength);
    std::memcpy(line, stamp.data(), StampLength);
    std::memcpy(line + StampLength, "   -->  pCoPData       |00000000 <", 34);
    std::memcpy(line + StampLength + 81, ">", 1);
    std::memcpy(line + StampLength + 100, "|\n", 2);
}

std::size_t DumpByTable(char* out, std::string_view stamp, const std::uint8_t* bytes, std::size_t lines)
{
    char line[DumpLineLength];
    PutDumpTemplate(line, stamp);
    for (std::size_t i = 0; i < lines; ++i, out += DumpLineLength) {
        std::memcpy(out, line, DumpLineLength);
        char* const columns = out + StampLength;
        for (std::size_t digit = 0, offset = i * 16; digit < 8; ++digit, offset >>= 4)
            columns[31 - digit] = Digits[offset & 15];
        for (std::size_t byte = 0; byte < 16; ++byte) {
            std::memcpy(columns + 34 + byte * 3, &Pairs[bytes[i * 16 + byte] * 2u], 2);
            columns[84 + byte] = Printable[bytes[i * 16 + byte]];
        }
    }
    return lines * DumpLineLength;
}

} // namespace marvane::bench
