#include "config/paths.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace marvane {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(ConfigurationPath, IsBesideTheLibrary)
{
    EXPECT_EQ(ConfigurationBeside("/opt/marvane/libMarvane.so", '/'), "/opt/marvane/D_PDU_API_CFG.xml");
    EXPECT_EQ(ConfigurationBeside("C:\\a\\Marvane.dll", '\\'), "C:\\a\\D_PDU_API_CFG.xml");
    EXPECT_EQ(ConfigurationBeside("Marvane.dll", '\\'), "D_PDU_API_CFG.xml");
}

TEST(FolderOfAFile, KeepsItsSeparator)
{
    EXPECT_EQ(FolderOf("/opt/marvane/libMarvane.so", '/'), "/opt/marvane/");
    EXPECT_EQ(FolderOf("libMarvane.so", '/'), "");
}

TEST(TargetPath, JoinsTheTwoTextsAsTheyAre)
{
    EXPECT_EQ(JoinTargetPath("/opt/vendor", "libpdu.so"), "/opt/vendorlibpdu.so");
    EXPECT_EQ(JoinTargetPath("/opt/vendor/", "libpdu.so"), "/opt/vendor/libpdu.so");
    EXPECT_EQ(JoinTargetPath("", "libpdu.so"), "libpdu.so");
}

TEST(TargetPath, IsCutAtItsLimit)
{
    EXPECT_EQ(JoinTargetPath(std::string(300, 'f'), "name"), std::string(260, 'f'));
    EXPECT_EQ(JoinTargetPath(std::string(258, 'f'), "name"), std::string(258, 'f') + "na");
}

TEST(StandAlone, IsTheSingleDot)
{
    EXPECT_TRUE(IsStandAlone("."));
    EXPECT_FALSE(IsStandAlone("./"));
    EXPECT_FALSE(IsStandAlone(""));
}

TEST(LogFolderValue, IsExpandedTwiceAndCut)
{
    const Expander step = [](const std::string& text) { return text + "+"; };
    EXPECT_EQ(LogFolder("logs", step), "logs++");
    EXPECT_EQ(LogFolder(std::string(300, 'f'), step), std::string(256, 'f'));
}

TEST(FoldersOfALogFolder, AreItsPrefixes)
{
    EXPECT_THAT(FoldersToMake("C:\\a\\b\\", '\\'), ElementsAre("C:", "C:\\a", "C:\\a\\b"));
    EXPECT_THAT(FoldersToMake("/a/b", '/'), ElementsAre("", "/a", "/a/b"));
    EXPECT_THAT(FoldersToMake("", '/'), IsEmpty());
    EXPECT_THAT(FoldersToMake(std::string(300, 'f'), '/'), ElementsAre(std::string(255, 'f')));
}

TEST(FoldersOfALogFolder, BeginAfterAShareOfTheNetwork)
{
    EXPECT_THAT(FoldersToMake("\\\\server\\share\\a\\b", '\\'),
                ElementsAre("\\\\server\\share\\a", "\\\\server\\share\\a\\b"));
    EXPECT_THAT(FoldersToMake("\\\\server\\share\\", '\\'), IsEmpty());
    EXPECT_THAT(FoldersToMake("\\\\server\\share", '\\'), IsEmpty());
    EXPECT_THAT(FoldersToMake("\\\\server", '\\'), IsEmpty());
    EXPECT_THAT(FoldersToMake("\\a", '\\'), ElementsAre("", "\\a"));
    EXPECT_THAT(FoldersToMake("//a", '/'), ElementsAre("", "/", "//a"));
}

} // namespace
} // namespace marvane
