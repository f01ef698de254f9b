// The completion scripts in their shells.
#include <cstdlib>
#include <optional>

#include <gtest/gtest.h>

#include "platform/files.h"
#include "tests/support/child_program.h"
#include "tests/support/temporary_folder.h"

namespace marvane::testing {
namespace {

/// The output of a shell that runs `script` in a folder with its completion script of marvane; none if there
/// is no such shell here.
std::optional<std::string> RunInShell(const std::string& shell, const std::string& completion,
                                      const std::string& script)
{
    if (platform::PathSeparator == '\\' || std::system((shell + " --version >/dev/null 2>&1").c_str()) != 0)
        return std::nullopt;
    const TemporaryFolder folder;
    WriteFileBytes(folder / completion, RunProgram("marvane", "completion " + shell).Output);
    WriteFileBytes(folder / "script", script);
    WriteFileBytes(folder / "run.LGR", "");
    const std::string options = shell == "zsh" ? " -f" : shell == "fish" ? " -N" : "";
    const std::string line = "cd " + Quoted(folder.Path().string()) +
                             " && HOME=. XDG_CONFIG_HOME=. XDG_DATA_HOME=. " + shell + options +
                             " script >out 2>errors </dev/null";
    EXPECT_EQ(std::system(line.c_str()), 0) << FileText(folder / "errors");
    return FileText(folder / "out");
}

TEST(ShellCompletion, OfBash)
{
    const auto output = RunInShell("bash", "marvane.bash",
                                   "source ./marvane.bash\n"
                                   "complete_line() { COMP_WORDS=(\"$@\"); COMP_CWORD=$(($# - 1)); _marvane; "
                                   "echo \"${COMPREPLY[@]}\"; }\n"
                                   "complete_line marvane sh\n"
                                   "complete_line marvane show --unt\n"
                                   "complete_line marvane show --time ''\n"
                                   "complete_line marvane completion p\n"
                                   "complete_line marvane show ru\n");
    if (!output)
        GTEST_SKIP() << "no bash here";
    EXPECT_EQ(*output, "show\n--until --until-match\nabs rel delta\npowershell\nrun.LGR\n");
}

TEST(ShellCompletion, OfFish)
{
    const auto output = RunInShell("fish", "marvane.fish",
                                   "source ./marvane.fish\n"
                                   "for line in 'marvane sh' 'marvane show --unt' 'marvane show --time ' "
                                   "'marvane completion p' 'marvane show ru' 'marvane talk --link ' "
                                   "'marvane talk --mdf ru'\n"
                                   "  echo (string trim \"$line\"): (complete -C $line | cut -f1)\n"
                                   "end\n");
    if (!output)
        GTEST_SKIP() << "no fish here";
    EXPECT_EQ(*output, "marvane sh: show\n"
                       "marvane show --unt: --until --until-match\n"
                       "marvane show --time: abs delta rel\n"
                       "marvane completion p: powershell\n"
                       "marvane show ru: run.LGR\n"
                       "marvane talk --link:\n"
                       "marvane talk --mdf ru: run.LGR\n");
}

/// Types into an interactive zsh on a terminal of its own; ^T writes the line as it is then.
TEST(ShellCompletion, OfZsh)
{
    const auto output = RunInShell(
        "zsh", "_marvane",
        "zmodload zsh/zpty || exit 1\n"
        "zpty inner 'zsh -f -i'\n"
        "zpty -w inner 'PS1=; fpath=($PWD $fpath); autoload -Uz compinit; compinit -u -D'\n"
        "zpty -w inner 'dump() { print -r -- \"$BUFFER|\" >>lines; BUFFER= }; zle -N dump; bindkey ^T dump'\n"
        "for line in 'sh' 'show --unt' 'show --time d' 'completion p' 'show ru' 'talk --link ' 'talk --mdf ru'\n"
        "do zpty -w -n inner \"marvane $line\"$'\\t\\x14'; done\n"
        "zpty -w inner exit\n"
        "while zpty -r inner ignored; do :; done\n"
        "cat lines\n");
    if (!output)
        GTEST_SKIP() << "no zsh here";
    EXPECT_EQ(*output, "marvane show |\n"
                       "marvane show --until|\n"
                       "marvane show --time delta |\n"
                       "marvane completion powershell |\n"
                       "marvane show run.LGR |\n"
                       "marvane talk --link |\n"
                       "marvane talk --mdf run.LGR |\n");
}

} // namespace
} // namespace marvane::testing
