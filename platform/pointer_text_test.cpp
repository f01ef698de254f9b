#include "platform/pointer_text.h"

#include <cstdint>
#include <string>

#include <gtest/gtest.h>

#include "platform/files.h"

namespace marvane {
namespace {

const bool OnLinux = platform::PathSeparator == '/';

TEST(Pointers, PrintAsTheSystemsLibraryPrintsThem)
{
    char text[platform::PointerTextSize];
    const auto print = [&](const void* pointer) {
        return std::string(text, platform::PointerText(pointer, text));
    };
    const void* const some = reinterpret_cast<const void*>(0x12AB34CD5EF0);
    EXPECT_EQ(print(some), OnLinux ? "0x12ab34cd5ef0" : "000012AB34CD5EF0");
    EXPECT_EQ(print(nullptr), OnLinux ? "(nil)" : "0000000000000000");
    const void* const all = reinterpret_cast<const void*>(~std::uintptr_t{0});
    EXPECT_EQ(print(all), OnLinux ? "0xffffffffffffffff" : "FFFFFFFFFFFFFFFF");
}

} // namespace
} // namespace marvane
