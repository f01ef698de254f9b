#include "platform/pointer_text.h"

#include <bit>
#include <cstdint>
#include <string_view>

namespace marvane::platform {

std::size_t PointerText(const void* pointer, char* out)
{
    if (!pointer)
        return std::string_view("(nil)").copy(out, PointerTextSize);
    auto value = reinterpret_cast<std::uintptr_t>(pointer);
    const std::size_t length = 2 + static_cast<std::size_t>(std::bit_width(value) + 3) / 4;
    out[0] = '0';
    out[1] = 'x';
    for (std::size_t i = length; i-- > 2; value >>= 4)
        out[i] = "0123456789abcdef"[value & 15];
    return length;
}

} // namespace marvane::platform
