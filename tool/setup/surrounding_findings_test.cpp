#include "tool/setup/surrounding_findings.h"

#include <gtest/gtest.h>

#include "platform/files.h"
#include "platform/library.h"
#include "tests/support/session.h"
#include "tool/setup/file_uri.h"
#include "tool/setup/setup_files.h"

namespace marvane::tool {
namespace {

std::string Texts(const CheckFindings& findings)
{
    std::string texts;
    for (const CheckFinding& finding : findings)
        texts += finding.Place + ": " + finding.Text + "\n";
    return texts;
}

TEST(DiagnosticLogOfMarvane, ShowsItsLastWarnings)
{
    const testing::TemporaryFolder folder;
    const testing::EnvironmentValue temp("TEMP", folder.Path().string());
    EXPECT_EQ(Texts(DiagnosticLogFindings()), "");
    const std::string where = "1a2c:class CConfigData:533:CConfigData::ProcessConfigurationElements:";
    testing::WriteFileBytes(
        folder / "d-pdu-api-logger.log",
        "09:14:01.000000 WARN    " + where + "first\n09:14:02.123456 WARN    " + where +
            "Could not read: line\n09:14:02.123457 DEBUG   " + where + "pElement: x\n" +
            "09:14:02.123458 WARN    " + where + "Not an attribute\n09:14:03.000000 ERROR   " + where +
            "GetModuleHandle Error=5\r\n09:14:04.000000 WARN    " + where + "last\nno record\n");
    EXPECT_EQ(Texts(DiagnosticLogFindings()),
              "diagnostic log: " + (folder / "d-pdu-api-logger.log") +
                  "\n09:14:02 UTC  Could not read: line\n"
                  "09:14:03 UTC  GetModuleHandle Error=5\n09:14:04 UTC  last\n");
}

TEST(OldProcesses, HoldTheTargetWithoutMarvane)
{
    // This process is left out, and no other has a file of this test.
    const testing::TemporaryFolder folder;
    EXPECT_EQ(Texts(OldProcessFindings(folder / "marvane", folder / "target")), "");
}

TEST(UriSpelling, IsNotedIfNotEveryApplicationTakesIt)
{
    const bool isWindows = platform::PathSeparator == '\\';
    RootEntry entry;
    entry.HasUri = true;
    entry.Uri = isWindows ? "file:///C:/a b/x.dll" : "file:///a b/x.so";
    EXPECT_EQ(Texts(SpellingFindings(entry)), "");
    const std::string plain = *entry.Uri;
    entry.Uri = isWindows ? "file:///C:/a%20b/x.dll" : "file:///a%20b/x.so";
    EXPECT_EQ(Texts(SpellingFindings(entry)), "root file: not every application understands the URI \"" +
                                                  *entry.Uri + "\"; all of them take \"" + plain + "\"\n");
}

} // namespace
} // namespace marvane::tool
