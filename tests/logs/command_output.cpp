#include "tests/logs/command_output.h"

#include <cstdlib>
#include <fstream>

#include <gtest/gtest.h>

#include "tests/logs/log_digest.h"
#include "tests/support/child_program.h"

namespace marvane::testing {

int CompareOutput(const std::string& name, const std::string& arguments)
{
    std::string line = arguments;
    const std::string folder = HandMadeLog("");
    for (std::size_t at = 0; (at = line.find("%LOGS%/", at)) != std::string::npos;)
        line.replace(at, 7, folder);
    const ProgramResult result = RunProgram("marvane", line);
    EXPECT_EQ(result.Errors, "") << name;
    CompareText(name, result.Output);
    return result.Status;
}

void CompareText(const std::string& name, const std::string& text)
{
    if (const char* golden = std::getenv("MARVANE_WRITE_GOLDEN"))
        std::ofstream(std::string(golden) + "/" + name + ".txt", std::ios::binary) << text;
    else
        EXPECT_EQ(text, FileText(HandMadeLog("output/" + name + ".txt"))) << name;
}

} // namespace marvane::testing
