#include "platform/environment.h"

#include <gtest/gtest.h>

#include "platform/files.h"
#include "tests/support/temporary_folder.h"

namespace marvane {
namespace {

using testing::EnvironmentValue;

const bool OnLinux = platform::PathSeparator == '/';

TEST(Environment, ReferencesAreReplacedAndUnknownOnesStay)
{
    const EnvironmentValue variable("MARVANE_PLATFORM_TEST", "value");
    EXPECT_EQ(platform::ExpandEnvironment("a %MARVANE_PLATFORM_TEST% b"), "a value b");
    EXPECT_EQ(platform::ExpandEnvironment("%NO_SUCH_VARIABLE%"), "%NO_SUCH_VARIABLE%");
    EXPECT_EQ(platform::ExpandEnvironment("%MARVANE_PLATFORM_TEST% 100 %"), "value 100 %");
    EXPECT_EQ(platform::ExpandEnvironment(""), "");
}

TEST(Environment, TheTemporaryFolderHasStandIns)
{
    if (!OnLinux)
        GTEST_SKIP() << "the system has its own";
    for (const std::optional<std::string>& unset :
         {std::optional<std::string>(), std::optional<std::string>("")}) {
        const EnvironmentValue none("TEMP", unset);
        {
            const EnvironmentValue other("TMPDIR", "/other");
            EXPECT_EQ(platform::ExpandEnvironment("%TEMP%/x"), "/other/x");
        }
        const EnvironmentValue neither("TMPDIR", unset);
        EXPECT_EQ(platform::ExpandEnvironment("%TEMP%/x"), "/tmp/x");
    }
}

TEST(Environment, TheFolderForSettingsHasStandIns)
{
    if (!OnLinux)
        GTEST_SKIP() << "the system has its own";
    for (const std::optional<std::string>& unset :
         {std::optional<std::string>(), std::optional<std::string>("")}) {
        const EnvironmentValue none("APPDATA", unset);
        const EnvironmentValue home("HOME", "/home/me");
        {
            const EnvironmentValue other("XDG_CONFIG_HOME", "/config");
            EXPECT_EQ(platform::ExpandEnvironment("%APPDATA%"), "/config");
        }
        const EnvironmentValue neither("XDG_CONFIG_HOME", unset);
        EXPECT_EQ(platform::ExpandEnvironment("%APPDATA%"), "/home/me/.config");
        const EnvironmentValue noHome("HOME", unset);
        const std::string ofAccount = platform::ExpandEnvironment("%APPDATA%");
        EXPECT_TRUE(ofAccount.starts_with("/") && ofAccount.ends_with("/.config")) << ofAccount;
    }
}

TEST(Environment, TheMachineHasAName)
{
    EXPECT_NE(platform::HostName(), "");
    EXPECT_EQ(platform::HostName().find_first_of(" \n"), std::string::npos);
}

} // namespace
} // namespace marvane
