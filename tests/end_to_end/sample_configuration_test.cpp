// The sample configuration, unmodified, read by the reader of configuration files.
#include <algorithm>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "logger/state/CConfigData.h"
#include "logger/state/settings.h"
#include "tests/support/diagnostic_log.h"
#include "tests/support/sample_configuration.h"

namespace marvane::testing {
namespace {

using ::testing::Pair;
using ::testing::UnorderedElementsAre;

/// Reads the sample, with warnings recorded.
class SampleConfiguration : public ::testing::Test
{
protected:
    SampleConfiguration() { config_.ProcessConfigurationElements(SampleConfigurationPath()); }

    static bool IsKnown(const std::string& key)
    {
        const auto isIt = [&](const auto& known) { return key == known.Name; };
        return key == "LogFileDir" || std::any_of(NumericKeyNames.begin(), NumericKeyNames.end(), isIt) ||
               std::any_of(StringKeyNames.begin(), StringKeyNames.end(), isIt);
    }

    /// Number of lines between the tags without an attribute: comments and blank lines.
    static long LinesWithoutAttribute()
    {
        std::istringstream lines(FileText(SampleConfigurationPath()));
        std::string line;
        long count = 0;
        while (std::getline(lines, line))
            count += line.find("<Attribute ") == std::string::npos ? 1 : 0;
        return count - 3;
    }

    DiagnosticLog log_{1};
    CConfigData config_{"D_PDU_API_CFG"};
};

TEST_F(SampleConfiguration, ItsValuesAreRead)
{
    EXPECT_THAT(config_.Texts(),
                UnorderedElementsAre(Pair("InstalledPath", "."), Pair("PDUAPILibDll", "SimVci.dll"),
                                     Pair("LogFileDir", "%TEMP%")));
    EXPECT_THAT(
        config_.Numbers(),
        UnorderedElementsAre(Pair("LogEnabled", 1u), Pair("LogFnCalls", 2u), Pair("LogFnDecodeArgs", 2u),
                             Pair("LogFnDecodeRsps", 2u), Pair("LogMaxPduBuff", 64u), Pair("LogCbCalls", 1u),
                             Pair("LogCallOuts", 0u), Pair("LogFlush", 1u), Pair("LogFileMaxSize", 10000000u),
                             Pair("LogFileMaxNum", 8u), Pair("LogNewFileCfg", 0u), Pair("LogDoIPComms", 0u),
                             Pair("LogCommsFile", 0u)));
}

TEST_F(SampleConfiguration, HasKnownKeysOnly)
{
    for (const auto& [key, value] : config_.Texts())
        EXPECT_TRUE(IsKnown(key)) << key;
    for (const auto& [key, value] : config_.Numbers())
        EXPECT_TRUE(IsKnown(key)) << key;
}

TEST_F(SampleConfiguration, IsReadCompletelyAndOnlyItsCommentsAreNoAttributes)
{
    std::string expected;
    for (long i = 0; i < LinesWithoutAttribute(); ++i)
        expected += "WARN|class CConfigData|CConfigData::ProcessConfigurationElement|Not an attribute\n";
    EXPECT_GT(LinesWithoutAttribute(), 0);
    EXPECT_EQ(log_.Records(), expected);
}

} // namespace
} // namespace marvane::testing
