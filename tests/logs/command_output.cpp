#include "tests/logs/command_output.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>

#include <gtest/gtest.h>

#include "tests/logs/dated_logs.h"
#include "tests/logs/log_digest.h"
#include "tests/support/child_program.h"

namespace marvane::testing {

int CompareOutput(const std::string& name, const std::string& arguments)
{
    const DatedLogs logs;
    constexpr std::string_view place = "%LOGS%/";
    std::string line = arguments;
    for (std::size_t at = 0; (at = line.find(place, at)) != std::string::npos;) {
        const std::size_t end = std::min(line.find(' ', at), line.size());
        const std::string log = line.substr(at + place.size(), end - at - place.size());
        line.replace(at, end - at, Quoted(logs.Path(log)));
    }
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
