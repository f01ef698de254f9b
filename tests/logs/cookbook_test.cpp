// The examples of docs/cookbook.md show what the command prints.
#include <filesystem>
#include <set>
#include <span>
#include <sstream>
#include <vector>

#include <gtest/gtest.h>

#include "tests/logs/log_digest.h"
#include "tests/support/child_program.h"
#include "tests/support/pattern.h"
#include "tests/support/temporary_folder.h"

namespace marvane::testing {
namespace {

using Lines = std::vector<std::string>;

struct Example
{
    std::string Question; ///< the heading that it is under
    std::string Command;  ///< after "$ marvane "
    Lines Output;         ///< with "..." for any lines
};

Lines LinesOf(const std::string& text)
{
    Lines lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

/// The commands of the blocks of text, each with the lines that follow it.
std::vector<Example> Examples()
{
    std::vector<Example> examples;
    std::string question;
    bool isInside = false;
    for (const std::string& line : LinesOf(FileText(HandMadeLog("../../docs/cookbook.md")))) {
        if (line.starts_with("```"))
            isInside = line == "```text";
        else if (line.starts_with("## "))
            question = line;
        else if (isInside && line.starts_with("$ marvane "))
            examples.push_back({question, line.substr(10), {}});
        else if (isInside)
            examples.back().Output.push_back(line);
    }
    return examples;
}

/// Whether lines are the expected ones, in which "..." is any number of lines.
bool AreLike(std::span<const std::string> lines, std::span<const std::string> expected)
{
    if (expected.empty())
        return lines.empty();
    if (expected.front() != "...")
        return !lines.empty() && lines.front() == expected.front() &&
               AreLike(lines.subspan(1), expected.subspan(1));
    for (std::size_t left = 0; left <= lines.size(); ++left)
        if (AreLike(lines.subspan(left), expected.subspan(1)))
            return true;
    return false;
}

/// The arguments with the paths of logs in place of "demo/" and other folders, and of files in `folder`.
std::string WithPaths(const std::string& command, const TemporaryFolder& folder)
{
    std::string arguments;
    std::istringstream words(command);
    for (std::string word; std::getline(words, word, ' ');) {
        if (word.ends_with('/'))
            word =
                Quoted(HandMadeLog(word == "demo/" ? "demo" : "cookbook/" + word.substr(0, word.size() - 1)));
        else if (word.ends_with(".LGR"))
            word = Quoted(folder / word);
        arguments += (arguments.empty() ? "" : " ") + word;
    }
    return arguments;
}

/// What an example prints. Standard output goes to a file if it asks for that.
std::string Printed(const Example& example, const TemporaryFolder& folder)
{
    const std::size_t redirection = example.Command.find(" > ");
    const ProgramResult result =
        RunProgram("marvane", WithPaths(example.Command.substr(0, redirection), folder));
    if (redirection == std::string::npos)
        return result.Output + result.Errors;
    WriteFileBytes(folder / example.Command.substr(redirection + 3), result.Output);
    return result.Errors;
}

TEST(Cookbook, ShowsWhatTheCommandPrints)
{
    const TemporaryFolder folder;
    for (const Example& example : Examples()) {
        const std::string printed = Printed(example, folder);
        EXPECT_TRUE(AreLike(LinesOf(printed), example.Output)) << "$ marvane " << example.Command << "\n"
                                                               << printed;
    }
}

TEST(Cookbook, AnswersTenQuestions)
{
    std::set<std::string> answered;
    for (const Example& example : Examples())
        answered.insert(example.Question);
    std::size_t questions = 0;
    for (const std::string& line : LinesOf(FileText(HandMadeLog("../../docs/cookbook.md"))))
        if (HasForm(line, "## \\d.*")) {
            ++questions;
            EXPECT_TRUE(answered.contains(line)) << line;
        }
    EXPECT_EQ(questions, 10u);
}

} // namespace
} // namespace marvane::testing
