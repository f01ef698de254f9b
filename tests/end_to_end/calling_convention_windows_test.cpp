// The calling convention, seen by a target library and an application that are compiled apart.
#include <gtest/gtest.h>

#include "tests/support/child_program.h"
#include "tests/support/session.h"

namespace marvane::testing {
namespace {

std::size_t CountOf(const std::string& text, const std::string& part)
{
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size()))
        ++count;
    return count;
}

TEST(CallingConvention, TheStackIsTheSameBeforeAndAfterEachCallAndCallback)
{
    const Session session({{"LogCbCalls", "1"}}, "apart_target");
    const ProgramResult run = RunProgram("apart_caller", "");
    EXPECT_EQ(run.Output, "29 functions called, 4 events, 0 faults\n");
    EXPECT_EQ(run.Status, 0);
    const std::string log = WithoutStamps(session.Log());
    EXPECT_EQ(CountOf(log, "{stamp} + PDUCallbackTrap(Type=0x5A001E01, hMod=0x5A001501, hCLL=0x5A001502, "),
              4u)
        << log;
    EXPECT_EQ(CountOf(log, "{stamp} [DoIP] ->  a report of the target\n"), 4u) << log;
    EXPECT_EQ(CountOf(log, "{stamp} - PDU"), 29u + 3 * 27 + 4) << log;
}

} // namespace
} // namespace marvane::testing
