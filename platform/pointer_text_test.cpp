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
    const bool isWide = sizeof(void*) == 8;
    const auto some = static_cast<std::uintptr_t>(isWide ? 0x12AB34CD5EF0 : 0x34CD5EF0);
    EXPECT_EQ(print(reinterpret_cast<const void*>(some)), OnLinux
                                                              ? (isWide ? "0x12ab34cd5ef0" : "0x34cd5ef0")
                                                              : (isWide ? "000012AB34CD5EF0" : "34CD5EF0"));
    EXPECT_EQ(print(nullptr), OnLinux ? "(nil)" : std::string(2 * sizeof(void*), '0'));
    const void* const all = reinterpret_cast<const void*>(~std::uintptr_t{0});
    EXPECT_EQ(print(all),
              OnLinux ? "0x" + std::string(2 * sizeof(void*), 'f') : std::string(2 * sizeof(void*), 'F'));
}

} // namespace
} // namespace marvane
