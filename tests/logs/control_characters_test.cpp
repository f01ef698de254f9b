// Control characters of a log: the commands that say what a log means show them as "?", in files and pipes
// too.
#include <gtest/gtest.h>

#include "tests/logs/log_digest.h"
#include "tests/support/child_program.h"
#include "tests/support/pattern.h"
#include "tests/support/temporary_folder.h"

namespace marvane::testing {
namespace {

/// A log with an escape sequence in every name: each has an underscore.
std::string WithEscapes(const std::string& name)
{
    return ReplaceMatches(FileText(HandMadeLog(name)), "_", "_\x1b[31m");
}

std::string PlainText(const std::string& name)
{
    return FileText(HandMadeLog(name));
}

class ControlCharacters : public ::testing::TestWithParam<const char*>
{
protected:
    /// What the command prints of the sample session and of a log with refused requests.
    std::string Printed(std::string (&text)(const std::string&)) const
    {
        const TemporaryFolder folder;
        const std::string first = folder / "first.LGR", second = folder / "second.LGR";
        WriteFileBytes(first, text("demo/D-PDU_API_Logger_22-11-2026_00-27-36.LGR"));
        WriteFileBytes(second, text("refused_start.LGR"));
        const std::string command = GetParam();
        if (command == "diff")
            return RunProgram("marvane", command + " " + Quoted(first) + " " + Quoted(second)).Output;
        return RunProgram("marvane", command + " " + Quoted(first)).Output +
               RunProgram("marvane", command + " " + Quoted(second)).Output;
    }
};

TEST_P(ControlCharacters, OfALogAreNotPrinted)
{
    const std::string printed = Printed(WithEscapes);
    EXPECT_EQ(printed.find('\x1b'), std::string::npos) << printed;
    EXPECT_NE(printed.find("?[31m"), std::string::npos) << "the log was not understood: " << printed;
    EXPECT_EQ(Printed(PlainText).find("?["), std::string::npos);
}

std::string NameOf(const ::testing::TestParamInfo<const char*>& info)
{
    return ReplaceMatches(info.param, "[^a-z]", "");
}

INSTANTIATE_TEST_SUITE_P(Commands, ControlCharacters,
                         ::testing::Values("talk", "talk --by-link", "errors --all", "summary --all",
                                           "params", "around --line 60", "diff"),
                         NameOf);

} // namespace
} // namespace marvane::testing
