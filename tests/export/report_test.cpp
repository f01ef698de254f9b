// The page of marvane report: where it goes, and what is in it.
#include <filesystem>

#include <gtest/gtest.h>

#include "platform/files.h"
#include "tests/support/child_program.h"
#include "tests/support/page_block.h"

namespace marvane::testing {
namespace {

namespace fs = std::filesystem;

const std::string DemoFolder = MARVANE_SOURCE_DIR "/tests/logs/demo";
const std::string Demo = DemoFolder + "/D-PDU_API_Logger_22-11-2026_00-27-36.LGR";

ProgramResult Report(const std::string& arguments)
{
    return RunProgram("marvane", "report " + arguments);
}

/// The lines of the log as the page has them, with their stamps again.
std::string Restored(const std::string& lines)
{
    constexpr std::size_t stampLength = 26;
    std::string log;
    std::string stamp;
    for (std::size_t at = 0; at < lines.size();) {
        const std::size_t end = lines.find('\n', at);
        const std::string line = lines.substr(at, end - at);
        if (line[0] == '\1')
            log += stamp + line.substr(1);
        else if (line[0] == '\2')
            log += line.substr(1);
        else
            log += (stamp = line.substr(0, stampLength)) + line.substr(stampLength);
        log += '\n';
        at = end + 1;
    }
    return log;
}

TEST(Report, HoldsEveryLineOfTheLog)
{
    const std::string page = Report("-o - " + Quoted(Demo)).Output;
    EXPECT_EQ(Restored(PageBlock(page, "lines")), FileText(Demo));
    EXPECT_EQ(PageBlock(page, "raw"), "");
}

TEST(Report, HoldsTheLogItselfIfAsked)
{
    const TemporaryFolder folder;
    const std::string bytes = "{10:00:00.000 - 00000010} + PDUConstruct()\r\n"
                              "{10:00:00.000 - 00000010} - PDUConstruct<PDU_STATUS_NOERROR (0x0000)>\r\n\xFF";
    WriteFileBytes(folder / "crlf.LGR", bytes);
    const std::string page = Report("-o - --raw " + Quoted(folder / "crlf.LGR")).Output;
    EXPECT_EQ(PageBlock(page, "raw"), bytes);
    EXPECT_EQ(PageBlock(page, "lines").find('\r'), std::string::npos);
    EXPECT_NE(PageBlock(page, "model").find("\"bytes\":" + std::to_string(bytes.size())), std::string::npos);
}

TEST(Report, ThePartHoldsOnlyItsLines)
{
    const std::string page =
        Report("-o - --since 00:27:37.030 --until 00:27:37.050 " + Quoted(DemoFolder)).Output;
    const std::string part = Restored(PageBlock(page, "lines"));
    const std::string log = FileText(Demo);
    const std::size_t begin = log.find(part);
    ASSERT_NE(begin, std::string::npos);
    EXPECT_GE(part.substr(1, 12), "00:27:37.030");
    EXPECT_LT(log.substr(log.rfind('\n', begin - 2) + 2, 12), "00:27:37.030");
    EXPECT_GT(log.substr(begin + part.size() + 1, 12), "00:27:37.050");
}

TEST(Report, GoesBesideYouUnderTheNameOfTheLog)
{
    const TemporaryFolder folder;
    const std::string name = folder.Path().filename().string(); // that no other test has
    fs::copy_file(Demo, folder / (name + ".LGR"));
    const ProgramResult result = Report(Quoted(folder / (name + ".LGR")));
    EXPECT_EQ(result.Status, 0);
    EXPECT_EQ(result.Output, "");
    EXPECT_EQ(result.Errors, "marvane: written: " + name + ".html\n");
    EXPECT_EQ(Report(Quoted(folder / (name + ".LGR"))).Errors,
              "marvane: " + name + ".html: exists (--force replaces it)\n");
    EXPECT_TRUE(fs::remove(name + ".html"));
}

TEST(Report, IsReplacedOnlyIfAsked)
{
    const TemporaryFolder folder;
    const std::string path = folder / "kept.html";
    WriteFileBytes(path, "kept");
    const ProgramResult refused = Report("-o " + Quoted(path) + " " + Quoted(Demo));
    EXPECT_EQ(refused.Status, 2);
    EXPECT_EQ(refused.Errors, "marvane: " + path + ": exists (--force replaces it)\n");
    EXPECT_EQ(FileText(path), "kept");
    const ProgramResult replaced = Report("--force -o " + Quoted(path) + " " + Quoted(Demo));
    EXPECT_EQ(replaced.Status, 0);
    EXPECT_EQ(replaced.Output + replaced.Errors, "");
    EXPECT_EQ(FileText(path).find("kept"), std::string::npos);
}

TEST(Report, NothingIsLeftOfOneThatFailed)
{
    const TemporaryFolder folder;
    const std::string log = folder / "empty.LGR";
    WriteFileBytes(log, "");
    const ProgramResult result = Report("-o " + Quoted(folder / "empty.html") + " " + Quoted(log));
    EXPECT_EQ(result.Status, 2);
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.Path()), fs::directory_iterator()), 1);
    EXPECT_EQ(Report("-o - " + Quoted(log)).Output, "");
}

TEST(Report, AFullDiskIsOneLine)
{
    if (platform::PathSeparator == '\\')
        GTEST_SKIP() << "there is no device that is always full";
    const ProgramResult result = Report("-o /dev/full " + Quoted(Demo));
    EXPECT_EQ(result.Status, 2);
    EXPECT_EQ(result.Errors, "marvane: /dev/full: No space left on device\n");
}

TEST(Report, AFolderThatIsNotThereIsOneLine)
{
    const TemporaryFolder folder;
    const std::string path = (folder.Path() / "absent" / "x.html").string();
    const ProgramResult result = Report("-o " + Quoted(path) + " " + Quoted(Demo));
    EXPECT_EQ(result.Status, 2);
    EXPECT_EQ(result.Errors, "marvane: " + path + ": No such file or directory\n");
}

TEST(Report, TheLogItselfIsNoPart)
{
    EXPECT_EQ(Report("-o - --raw --since 00:28 " + Quoted(Demo)).Errors,
              "marvane: --raw is the whole log, which --since and --until exclude\n"
              "Try 'marvane report --help'.\n");
}

TEST(Report, MarkupInALogIsNoneOfThePage)
{
    const TemporaryFolder folder;
    const std::string evil = "</script><script>alert(1)</script><img src=x onerror=alert(2)><!-- @@SCRIPT@@";
    const std::string stamp = "{10:00:00.000 - 00000010} ";
    const std::string log = folder / "evil.LGR";
    WriteFileBytes(log, stamp + "+ PDUGetObjectId(pduObjectType=PDU_OBJT_RESOURCE (0x8022), pShortname=\"" +
                            evil + "\", pPduObjectId=0x1)\n" + stamp + "- PDUGetObjectId<" + evil +
                            " (0x0000)>\n" + stamp + "# " + evil + "\n" + evil + "\n");
    const std::string page = Report("-o - " + Quoted(log)).Output;
    const std::string plain = Report("-o - " + Quoted(Demo)).Output;
    EXPECT_NE(PageBlock(page, "lines").find(evil), std::string::npos);
    EXPECT_EQ(page.find("alert("), std::string::npos);
    EXPECT_EQ(std::count(page.begin(), page.end(), '<'), std::count(plain.begin(), plain.end(), '<'));
}

} // namespace
} // namespace marvane::testing
