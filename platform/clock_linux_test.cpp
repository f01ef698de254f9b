// In a forked child the time zone's lock may be held by a thread that it does not have.
#include <ctime>
#include <initializer_list>

#include <gtest/gtest.h>

#include "platform/clock.h"
#include "tests/support/child_process.h"
#include "tests/support/temporary_folder.h"

namespace marvane {
namespace {

TEST(LocalTime, OfAForkedChildIsComputedWithTheOffsetOfItsParent)
{
    constexpr std::int64_t second = 1711845000; // 31 March 2024, 0:30 UTC
    const testing::EnvironmentValue zone("TZ", "EAST-2:30");
    tzset();
    const int status = testing::RunForked([] {
        // Whoever asks the C library from here on is 9 hours behind.
        setenv("TZ", "WEST+9", 1);
        tzset();
        const platform::TimeOfDay time = platform::LocalTimeOfDay(second);
        const std::tm now = platform::LocalCalendarTime();
        const std::tm expected = platform::UtcCalendarTime(platform::Now().Second + 9000);
        if (time.Hour != 3 || time.Minute != 0 || time.Second != 0 || now.tm_hour != expected.tm_hour)
            std::_Exit(1);
    });
    EXPECT_EQ(status, 0);
}

TEST(UtcTime, AgreesWithTheCLibrary)
{
    for (const std::time_t second :
         std::initializer_list<std::time_t>{0, 951782399, 951782400, 1709164800, 4102444799, -1, -86401}) {
        std::tm expected;
        gmtime_r(&second, &expected);
        const std::tm time = platform::UtcCalendarTime(second);
        char text[2][80];
        std::strftime(text[0], sizeof text[0], "%Y-%m-%d %H:%M:%S %j %w", &expected);
        std::strftime(text[1], sizeof text[1], "%Y-%m-%d %H:%M:%S %j %w", &time);
        EXPECT_STREQ(text[1], text[0]);
    }
}

} // namespace
} // namespace marvane
