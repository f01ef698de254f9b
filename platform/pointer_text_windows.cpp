#include "platform/pointer_text.h"

#include <cstdint>

namespace marvane::platform {

std::size_t PointerText(const void* pointer, char* out)
{
    constexpr std::size_t digits = sizeof pointer * 2;
    auto value = reinterpret_cast<std::uintptr_t>(pointer);
    for (std::size_t i = digits; i-- > 0; value >>= 4)
        out[i] = "0123456789ABCDEF"[value & 15];
    return digits;
}

} // namespace marvane::platform
