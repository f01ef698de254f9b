#include "platform/narrow_text.h"

#include <gtest/gtest.h>

#include "platform/files.h"

namespace marvane::platform {
namespace {

TEST(NarrowText, KeepsUtf8)
{
    EXPECT_EQ(Utf8FromNarrow(""), "");
    EXPECT_EQ(Utf8FromNarrow("C:\\Logs\\"), "C:\\Logs\\");
    EXPECT_EQ(Utf8FromNarrow("Pr\xC3\xBC"
                             "fstand"),
              "Pr\xC3\xBC"
              "fstand");
}

TEST(NarrowText, TakesOtherBytesForTheCodePageOnWindows)
{
    const bool isWindows = PathSeparator == '\\';
    EXPECT_EQ(Utf8FromNarrow("Pr\xFC"
                             "fstand"),
              isWindows ? "Pr\xC3\xBC"
                          "fstand"
                        : "Pr\xFC"
                          "fstand");
}

} // namespace
} // namespace marvane::platform
