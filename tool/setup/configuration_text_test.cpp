#include "tool/setup/configuration_text.h"

#include <gtest/gtest.h>

#include "tool/setup/configuration_findings.h"

namespace marvane::tool {
namespace {

std::string Refused(const std::string& bytes, const std::string& key, const std::string& value)
{
    try {
        WithValue(bytes, key, value);
    } catch (const RefusedValue& refused) {
        return refused.what();
    }
    return "";
}

const std::string File = "<?xml?>\r\n<D_PDU_API_CFG>\r\n<!-- x -->\r\n"
                         "\t<Attribute Name=\"LogFlush\" Type=\"UNUM32\" Value=\"0\"/> <!-- y -->\r\n"
                         "\t<Attribute Value=\"a\" Name=\"LogFileDir\" Type=\"String\"/>\r\n"
                         "</D_PDU_API_CFG>\r\n";

std::string Changed(std::string from, std::string to)
{
    std::string text = File;
    return text.replace(text.find(from), from.size(), to);
}

TEST(SetValue, ChangesItWhereItStands)
{
    EXPECT_EQ(WithValue(File, "LogFlush", "1"), Changed("Value=\"0\"", "Value=\"1\""));
    EXPECT_EQ(WithValue(File, "LogFileDir", "C:\\Logs\\"), Changed("Value=\"a\"", "Value=\"C:\\Logs\\\""));
}

TEST(SetValue, AddsAKeyBeforeTheClosingTag)
{
    EXPECT_EQ(WithValue(File, "LogFnCalls", "2"),
              Changed("</D_PDU_API_CFG>",
                      "\t<Attribute Name=\"LogFnCalls\" Type=\"UNUM32\" Value=\"2\"/>\r\n</D_PDU_API_CFG>"));
}

TEST(SetValue, ChangesTheLineThatCounts)
{
    const std::string twice =
        Changed("</D_PDU_API_CFG>", "<Attribute Name=\"LogFlush\" Type=\"UNUM32\" Value=\"5\"/>\n"
                                    "</D_PDU_API_CFG>");
    EXPECT_EQ(WithValue(twice, "LogFlush", "1"),
              Changed("</D_PDU_API_CFG>", "<Attribute Name=\"LogFlush\" Type=\"UNUM32\" Value=\"1\"/>\n"
                                          "</D_PDU_API_CFG>"));
}

TEST(SetValue, RefusesWhatWouldNotBeReadAsItIsMeant)
{
    EXPECT_EQ(Refused(File, "LogFlush", "0x1"),
              "LogFlush takes a decimal number from 0 to 2147483647, and not \"0x1\"");
    EXPECT_EQ(Refused(File, "LogFlush", "4294967295"),
              "LogFlush takes a decimal number from 0 to 2147483647, and not \"4294967295\"");
    EXPECT_EQ(Refused(File, "LogEnabled", "2"),
              "LogEnabled above 1 is refused by Marvane: the target library is not loaded then");
    EXPECT_EQ(Refused(File, "LogFileDir", "a\"b"), "a value can hold neither a double quote nor a line end");
    EXPECT_EQ(Refused(File, "LogFileDir", "a "),
              "a blank at the beginning or the end would be part of the value");
    EXPECT_EQ(Refused(File, "LogFileDir", std::string(1000, 'l')),
              "the line would be longer than 999 characters, or not be read as it is meant");
    EXPECT_EQ(Refused(File, "Other", "1"), "Other is no key of Marvane");
    EXPECT_EQ(Refused("<?xml?>\n<CFG>\n", "LogFlush", "1"),
              "nothing of the file is read: line 2 is not \"<D_PDU_API_CFG>\"");
    EXPECT_EQ(Refused("<?xml?>\n<D_PDU_API_CFG>\n", "LogFlush", "1"),
              "the closing tag \"</D_PDU_API_CFG>\" is missing");
}

TEST(NewConfigurationText, HasNothingToFind)
{
    NewConfiguration values;
    values.TargetName = "libpdu.so";
    values.LogFolder = "/logs/";
    values.Flush = true;
    for (const char* const level : {"calls", "arguments", "decoded", "full"}) {
        values.Level = level;
        const Configuration configuration = ParseConfiguration(ConfigurationText(values, '/'));
        EXPECT_EQ(configuration.End, ReadingStep::Closed);
        EXPECT_TRUE(
            ConfigurationFindings(configuration, '/', [](const std::string& text) { return text; }).empty());
    }
}

TEST(NewConfigurationText, SaysWhatItsLevelMeans)
{
    NewConfiguration values;
    values.Level = "full";
    values.Files = 20;
    const Configuration full = ParseConfiguration(ConfigurationText(values, '\\'));
    EXPECT_EQ(full.Number(NumericKey::LogFnCalls).Value, 2u);
    EXPECT_EQ(full.Number(NumericKey::LogFnDecodeArgs).Value, 2u);
    EXPECT_EQ(full.Number(NumericKey::LogCallOuts).Value, 1u);
    EXPECT_EQ(full.Number(NumericKey::LogMaxPduBuff).Value, 4096u);
    EXPECT_EQ(full.Number(NumericKey::LogFileMaxNum).Value, 18u);
    values.Level = "calls";
    values.Payload = 77;
    const Configuration calls = ParseConfiguration(ConfigurationText(values, '/'));
    EXPECT_EQ(calls.Number(NumericKey::LogFnCalls).Value, 1u);
    EXPECT_EQ(calls.Number(NumericKey::LogMaxPduBuff).Value, 77u);
}

} // namespace
} // namespace marvane::tool
