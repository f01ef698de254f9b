#include "tool/input/default_logs.h"

#include <gtest/gtest.h>

#include "config/file_rules.h"
#include "tests/support/temporary_folder.h"

namespace marvane::tool {
namespace {

/// A folder of logs and a copy whose configuration names it.
InstalledCopy Installed(const testing::TemporaryFolder& place, const std::string& entry,
                        const std::string& log)
{
    const std::filesystem::path folder = place.Path() / entry;
    std::filesystem::create_directories(folder / "logs");
    const std::string logs = (folder / "logs").string();
    testing::WriteFileBytes(folder / ConfigurationFileName,
                            "<?xml?>\n" + std::string(OpeningTag) +
                                "\n<Attribute Name=\"LogFileDir\" Type=\"String\" Value=\"" + logs +
                                "\"/>\n" + ClosingTag + "\n");
    if (!log.empty())
        testing::WriteFileBytes(folder / "logs" / ("D-PDU_API_Logger_" + log + ".LGR"), "");
    InstalledCopy copy;
    copy.Folder = folder.string();
    copy.Entry = entry;
    return copy;
}

TEST(NewestLogFolder, IsThatOfTheEntryWithTheNewestLog)
{
    const testing::TemporaryFolder place;
    // By their names as texts, the first would be the newest.
    const std::vector<InstalledCopy> copies = {Installed(place, "first", "30-10-2026_10-00-00"),
                                               Installed(place, "second", "01-11-2026_10-00-00"),
                                               Installed(place, "third", "")};
    EXPECT_EQ(NewestLogFolder(copies), (place.Path() / "second" / "logs").string());
}

TEST(NewestLogFolder, IsNoneWithoutALog)
{
    const testing::TemporaryFolder place;
    EXPECT_EQ(NewestLogFolder({Installed(place, "only", "")}), std::nullopt);
    EXPECT_EQ(NewestLogFolder({}), std::nullopt);
}

TEST(LogFolderOf, IsTheLastValueThatTheFileHas)
{
    const testing::TemporaryFolder folder;
    const std::string line = "<Attribute Name=\"LogFileDir\" Type=\"String\" Value=\"";
    testing::WriteFileBytes(folder / "cfg", "<?xml?>\n" + std::string(OpeningTag) + "\n" + line +
                                                "one\"/>\n" + line + "two\"/>\n" + ClosingTag + "\n" + line +
                                                "three\"/>\n");
    EXPECT_EQ(LogFolderOf(folder / "cfg"), "two");
    EXPECT_EQ(LogFolderOf(folder / "absent"), std::nullopt);
}

} // namespace
} // namespace marvane::tool
