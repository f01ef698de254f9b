#include "tool/export/uds_form.h"

#include <algorithm>

namespace marvane::tool {

namespace {

/// The shortest request or answer that begins with a byte, where one byte is not enough.
struct Form
{
    std::uint8_t First;
    std::uint8_t Least;
};

constexpr Form Forms[] = {
    {0x10, 2}, {0x11, 2}, {0x14, 4}, {0x19, 2}, {0x22, 3}, {0x24, 3}, {0x27, 2}, {0x28, 3}, {0x29, 2},
    {0x2A, 2}, {0x2C, 2}, {0x2E, 3}, {0x2F, 4}, {0x31, 4}, {0x34, 3}, {0x35, 3}, {0x36, 2}, {0x3E, 2},
    {0x3F, 3}, {0x50, 2}, {0x51, 2}, {0x59, 2}, {0x62, 3}, {0x64, 3}, {0x67, 2}, {0x68, 2}, {0x69, 2},
    {0x6C, 2}, {0x6E, 3}, {0x6F, 4}, {0x71, 4}, {0x74, 2}, {0x75, 2}, {0x76, 2}, {0x7E, 2}, {0x7F, 3},
    {0x83, 2}, {0x85, 2}, {0x86, 2}, {0x87, 2}, {0xC3, 2}, {0xC5, 2}, {0xC6, 2}, {0xC7, 2},
};
static_assert(std::ranges::is_sorted(Forms, {}, &Form::First));

/// Lengths of an address or a size: dissectors read one to four bytes.
constexpr bool IsLength(unsigned digit)
{
    return digit >= 1 && digit <= 4;
}

/// RequestDownload and RequestUpload: a byte says how long their address and size are.
bool HasAddressAndSize(read::Bytes shown, std::uint64_t size)
{
    if (shown.size() < 3)
        return true;
    const unsigned memorySize = shown[2] >> 4;
    const unsigned address = shown[2] & 15;
    return IsLength(memorySize) && IsLength(address) && size >= 3 + memorySize + address;
}

/// Their answers: a byte says how long the block length is.
bool HasBlockLength(read::Bytes shown, std::uint64_t size)
{
    if (shown.size() < 2)
        return true;
    const unsigned length = shown[1] >> 4;
    return IsLength(length) && size >= 2 + length;
}

} // namespace

bool IsWholeUds(read::Bytes shown, std::uint64_t size)
{
    if (shown.empty())
        return false;
    const std::uint8_t first = shown[0];
    const auto form = std::ranges::lower_bound(Forms, first, {}, &Form::First);
    if (form != std::end(Forms) && form->First == first && size < form->Least)
        return false;
    switch (first) {
    case 0x22: // identifiers of two bytes
        return size % 2 == 1;
    case 0x34:
    case 0x35:
        return HasAddressAndSize(shown, size);
    case 0x74:
    case 0x75:
        return HasBlockLength(shown, size);
    default:
        return true;
    }
}

} // namespace marvane::tool
