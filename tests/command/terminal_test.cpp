// What the command does on a terminal only: colours, the pager, its width. The terminal is one that script(1)
// makes.
#include <cstdlib>

#include <gtest/gtest.h>

#include "tests/command/sample_log.h"
#include "tests/support/child_program.h"
#include "tests/support/session.h"

namespace marvane::testing {
namespace {

class Terminal : public ::testing::Test
{
protected:
    void SetUp() override
    {
        if (std::system("script --version >/dev/null 2>&1") != 0)
            GTEST_SKIP() << "there is no script(1) here to make a terminal";
        WriteFileBytes(folder_ / LogName, SampleLog());
    }

    /// What a terminal of so many columns shows of a command that reads the sample log.
    std::string Shown(const std::string& variables, const std::string& command, unsigned columns = 80) const
    {
        const std::string script = folder_ / "run.sh", out = folder_ / "out";
        WriteFileBytes(script, "stty cols " + std::to_string(columns) + "\nexec env -u NO_COLOR TERM=xterm " +
                                   variables + " " + Quoted(BuildFolder() + "marvane") + " " + command + " " +
                                   Quoted(folder_ / LogName) + "\n");
        std::system(
            ("script -qec " + Quoted("sh " + script) + " /dev/null </dev/null >" + Quoted(out)).c_str());
        return FileText(out);
    }

    TemporaryFolder folder_;
};

const std::string FailedCall =
    "    7   +2.000  PDULockResource, link 2          RSC_LOCKED_BY_OTHER_CLL (0x00A1)";
const std::string Marked = "X 1 failed call ";

bool Contains(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}

TEST_F(Terminal, HasColoursUnlessTheyAreUnwanted)
{
    const std::string coloured = "\x1b[31mX\x1b[0m 1 failed call ";
    EXPECT_TRUE(Contains(Shown("", "summary"), coloured));
    EXPECT_TRUE(Contains(Shown("NO_COLOR=", "summary"), coloured));
    EXPECT_TRUE(Contains(Shown("NO_COLOR=1", "summary"), "   " + Marked));
    EXPECT_TRUE(Contains(Shown("TERM=dumb", "summary"), "   " + Marked));
    EXPECT_TRUE(Contains(Shown("", "summary --color never"), "   " + Marked));
    EXPECT_TRUE(Contains(Shown("NO_COLOR=1", "summary --color always"), coloured));
}

TEST_F(Terminal, IsNotControlledByALog)
{
    const std::string title = "\x1b]0;changed\a";
    WriteFileBytes(folder_ / LogName,
                   SampleLog() + "{10:00:09.000 - 00000001} + PDUGetVersion(" + title + ")\n");
    const std::string shown = Shown("PAGER=cat", "show --grep changed");
    EXPECT_TRUE(Contains(shown, "(?]0;changed?)")) << shown;
    EXPECT_FALSE(Contains(shown, title));
    EXPECT_TRUE(Contains(RunProgram("marvane", "show " + Quoted(folder_ / LogName)).Output, title))
        << "elsewhere the bytes of the log";
}

TEST_F(Terminal, ShowsLongOutputInThePager)
{
    const std::string pager = "PAGER='sed s/^/paged:/'";
    const std::string shown = Shown(pager, "errors");
    EXPECT_EQ(shown.substr(0, shown.find('\n')), "paged:" + FailedCall);
    EXPECT_FALSE(Contains(Shown(pager, "errors --no-pager"), "paged:"));
    EXPECT_FALSE(Contains(Shown("PAGER=cat", "errors"), "paged:"));
}

TEST_F(Terminal, EndsQuietlyIfThePagerIsLeft)
{
    EXPECT_EQ(Shown("PAGER='head -n 1'", "show --color never"),
              "{14:03:00.000 - 00001A2C} ########## INITIALISE ##########\n");
    EXPECT_EQ(Shown("PAGER=true", "show"), "");
}

TEST_F(Terminal, ThatIsWideIsFilled)
{
    const auto widthOfHeader = [](const std::string& shown) {
        const std::size_t begin = shown.find("   time    #  request");
        return shown.find('\n', begin) - begin;
    };
    WriteFileBytes(folder_ / LogName,
                   SampleLog() +
                       LogLine(5, "+ PDUStartComPrimitive(hMod=0x00000001, hCLL=0x00000001, "
                                  "CoPType=PDU_COPT_SENDRECV (0x8004))") +
                       LogLine(5, "- PDUStartComPrimitive<PDU_STATUS_NOERROR (0x0000)>"));
    EXPECT_EQ(widthOfHeader(Shown("PAGER=cat", "talk", 80)), 98u);
    EXPECT_EQ(widthOfHeader(Shown("PAGER=cat", "talk", 140)), 138u);
}

TEST(NoTerminal, GetsNoColoursAndNoPager)
{
    const TemporaryFolder folder;
    WriteFileBytes(folder / LogName, SampleLog());
    const std::string summary = RunProgram("marvane", "summary " + Quoted(folder / LogName)).Output;
    EXPECT_TRUE(Contains(summary, "   " + Marked)) << summary;
    const std::string forced =
        RunProgram("marvane", "summary --color always " + Quoted(folder / LogName)).Output;
    EXPECT_TRUE(Contains(forced, "\x1b[31mX\x1b[0m 1 failed call ")) << forced;
}

} // namespace
} // namespace marvane::testing
