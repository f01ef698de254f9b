// `talk --by-link` of a log with very many links.
#include <gtest/gtest.h>

#include "tests/command/sample_log.h"
#include "tests/support/child_program.h"

namespace marvane::testing {
namespace {

constexpr unsigned Links = 2000;
constexpr unsigned Rounds = 3;
constexpr unsigned LinesOfRequest = 5;

template <class... Values> std::string Formatted(const char* format, Values... values)
{
    char text[160];
    std::snprintf(text, sizeof text, format, values...);
    return text;
}

unsigned NumberOf(unsigned round, unsigned link)
{
    return round * Links + link;
}

/// Each link in turn sends a request, and that several times.
std::string LogOfRounds()
{
    std::string log;
    for (unsigned round = 0; round < Rounds; ++round)
        for (unsigned link = 1; link <= Links; ++link)
            log +=
                LogLine(0,
                        Formatted(
                            "+ PDUStartComPrimitive(hMod=0x00000001, hCLL=0x%08X, CoPType=PDU_COPT_SENDRECV "
                            "(0x8004), ",
                            link)) +
                "\t\t\t\tCoPDataSize=3, pCoPData=0x1, pCoPCtrlData=0x1, pCoPTag=0x1, phCoP=0x1)\n" +
                LogLine(0, Formatted("   -->  pCoPData       |00000000 <22 F1 %02X>                        "
                                     "                 \"..             |",
                                     0x80 + round)) +
                LogLine(0, Formatted("   <--  hCoP          \t= 0x%08X", NumberOf(round, link))) +
                LogLine(0, "- PDUStartComPrimitive<PDU_STATUS_NOERROR (0x0000)>");
    return log;
}

/// What the command is to show: a heading and the rows of each link, and how many requests there were.
std::string Expected()
{
    std::string expected;
    for (unsigned link = 1; link <= Links; ++link) {
        std::string heading = Formatted("link %u", link);
        heading.resize(90, ' ');
        expected += (link == 1 ? "" : "\n") + heading + "+0.000 s\n";
        if (link == 1)
            expected +=
                "   time    #  request                                  response                         ms"
                "    line\n";
        for (unsigned round = 0; round < Rounds; ++round) {
            const unsigned number = NumberOf(round, link);
            expected +=
                Formatted("  0.000 %4u  22 F1 %02X                               ? no answer in the log"
                          "                 %6u\n",
                          number, 0x80 + round, LinesOfRequest * (number - 1) + 1);
        }
    }
    return expected + "\n6,000 requests: 6,000 open (?)\n";
}

TEST(TalkByLink, OfVeryManyLinksReadsTheLogOnce)
{
    const TemporaryFolder folder;
    WriteFileBytes(folder / LogName, LogOfRounds());
    const ProgramResult file = RunProgram("marvane", "talk --by-link " + Quoted(folder / LogName));
    EXPECT_EQ(file.Output, Expected());
    EXPECT_EQ(file.Status, 0);
    // Standard input can be read once.
    EXPECT_EQ(RunProgram("marvane", "talk --by-link -", folder / LogName).Output, file.Output);
}

} // namespace
} // namespace marvane::testing
