// The picture of the conversation in README.md shows what the command prints today. With
// MARVANE_WRITE_PICTURES set to docs/pictures it is made anew: look at it before you commit it.
#include "tests/logs/terminal_picture.h"

#include <cstdlib>
#include <fstream>
#include <stdexcept>

#include <gtest/gtest.h>

#include "tests/logs/log_digest.h"
#include "tests/support/child_program.h"

namespace marvane::testing {
namespace {

TEST(TerminalPictures, HaveEachRunOfCharactersAtItsColumn)
{
    EXPECT_EQ(
        TerminalPicture("talk", "a b  <c>\n\n  \x1b[31mX\x1b[0m no\n"),
        "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"94.4\" height=\"104\" viewBox=\"0 0 94.4 104\" "
        "font-family=\"ui-monospace, Menlo, Consolas, 'DejaVu Sans Mono', monospace\" font-size=\"13\" "
        "fill=\"#e6edf3\">\n"
        "<title>talk</title>\n"
        "<rect width=\"94.4\" height=\"104\" rx=\"8\" fill=\"#161b22\"/>\n"
        "<text x=\"16\" y=\"29\" textLength=\"46.8\" font-weight=\"bold\">$ talk</text>\n"
        "<text x=\"16\" y=\"47\" textLength=\"23.4\">a b</text>\n"
        "<text x=\"55\" y=\"47\" textLength=\"23.4\">&lt;c&gt;</text>\n"
        "<text x=\"31.6\" y=\"83\" textLength=\"7.8\" fill=\"#ff7b72\">X</text>\n"
        "<text x=\"47.2\" y=\"83\" textLength=\"15.6\">no</text>\n"
        "</svg>\n");
    EXPECT_THROW(TerminalPicture("talk", "\x1b[8mhidden"), std::invalid_argument);
}

TEST(TerminalPictures, OfReadmeShowTheConversationOfToday)
{
    const ProgramResult talk = RunProgram("marvane", "talk --color always " + Quoted(HandMadeLog("demo")));
    EXPECT_EQ(talk.Status, 0) << talk.Errors;
    const std::string picture = TerminalPicture("marvane talk", talk.Output);
    if (const char* const folder = std::getenv("MARVANE_WRITE_PICTURES"))
        std::ofstream(std::string(folder) + "/talk.svg", std::ios::binary) << picture;
    EXPECT_EQ(FileText(HandMadeLog("../../docs/pictures/talk.svg")), picture);
}

} // namespace
} // namespace marvane::testing
