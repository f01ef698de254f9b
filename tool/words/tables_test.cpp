// The numbers of the tables against those of a protocol analyser that is installed.
#include <cstdlib>
#include <fstream>
#include <set>
#include <sstream>

#include <gtest/gtest.h>

#include "tests/support/temporary_folder.h"
#include "tool/words/negative_codes.h"
#include "tool/words/services.h"

namespace marvane::words {
namespace {

using Numbers = std::set<unsigned>;

/// The values of a field as `tshark -G values` lists them; none if there is no tshark.
Numbers ValuesOf(const std::string& field)
{
    const testing::TemporaryFolder folder;
    const std::string list = folder / "values";
    if (std::system(("tshark -G values >" + list + " 2>&1").c_str()) != 0)
        return {};
    Numbers numbers;
    std::ifstream lines(list);
    for (std::string line; std::getline(lines, line);) {
        std::istringstream columns(line);
        std::string kind, name, value;
        if (columns >> kind >> name >> value && kind == "V" && name == field)
            numbers.insert(static_cast<unsigned>(std::stoul(value, nullptr, 16)));
    }
    return numbers;
}

constexpr const char* NoJudge = "no tshark here: the numbers are not compared";

TEST(UdsServices, HaveTheNumbersOfAProtocolAnalyser)
{
    Numbers expected = ValuesOf("uds.sid");
    if (expected.empty())
        GTEST_SKIP() << NoJudge;
    expected.erase(0x3F);  // The analyser's name for the answer byte 7F.
    expected.insert(0x83); // AccessTimingParameter was withdrawn from the standard in 2020.
    Numbers own;
    for (const Service& service : ServicesOf(Dialect::Uds))
        own.insert(service.Sid);
    EXPECT_EQ(own, expected);
}

TEST(UdsNegativeCodes, HaveTheNumbersOfAProtocolAnalyser)
{
    const Numbers expected = ValuesOf("uds.err.code");
    if (expected.empty())
        GTEST_SKIP() << NoJudge;
    Numbers own;
    for (const NegativeCode& code : NegativeCodesOf(Dialect::Uds))
        own.insert(code.Code);
    EXPECT_EQ(own, expected);
}

} // namespace
} // namespace marvane::words
