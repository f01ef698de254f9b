#include "logger/state/CConfigData.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/files.h"
#include "tests/support/diagnostic_log.h"

namespace marvane {
namespace {

using testing::DiagnosticLog;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

constexpr const char* Opening = "<?xml version=\"1.0\"?>\n<D_PDU_API_CFG>\n";
constexpr const char* Closing = "</D_PDU_API_CFG>\n";

/// Reads texts as configuration files; warnings alone are recorded.
class ConfigData : public ::testing::Test
{
protected:
    void Read(const std::string& text)
    {
        testing::WriteFileBytes(path, text);
        config.ProcessConfigurationElements(path);
    }

    /// Reads one line between the tags.
    void ReadLine(const std::string& line) { Read(Opening + line + "\n" + Closing); }

    static std::string Warning(const std::string& message,
                               const std::string& function = "ProcessConfigurationElement")
    {
        return "WARN|class CConfigData|CConfigData::" + function + "|" + message + "\n";
    }
    static std::string ReadingWarning(const std::string& message)
    {
        return Warning(message, "ProcessConfigurationElements");
    }

    DiagnosticLog log{1};
    std::string path = log.Folder() / "config.xml";
    CConfigData config{"D_PDU_API_CFG"};
};

TEST_F(ConfigData, ReadsTextsAndNumbersIntoTwoDictionaries)
{
    Read(
        std::string(Opening) + "<Attribute Name=\"A\" Type=\"String\" Value=\"text\"/>\n" +
        "\t<Attribute Value=\"12\" Type=\"UNUM32\" Name=\"B\">\n<Attribute Name=\"A\" Type=\"UNUM32\" Value=\"3\"\n" +
        Closing);
    EXPECT_THAT(config.Texts(), ElementsAre(Pair("A", "text")));
    EXPECT_THAT(config.Numbers(), ElementsAre(Pair("A", 3u), Pair("B", 12u)));
    EXPECT_EQ(log.Records(), "");
}

TEST_F(ConfigData, ALaterAttributeReplacesAnEarlierOne)
{
    ReadLine(
        "<Attribute Name=\"A\" Type=\"String\" Value=\"1\"/>\n<Attribute Name=\"A\" Type=\"String\" Value=\"2\"/>");
    EXPECT_THAT(config.Texts(), ElementsAre(Pair("A", "2")));
}

TEST_F(ConfigData, AFileOfHeaderAndOpeningTagEndsWithCouldNotReadLine)
{
    Read(Opening);
    EXPECT_EQ(log.Records(), ReadingWarning("Could not read line"));
    EXPECT_THAT(config.Texts(), IsEmpty());
    EXPECT_THAT(config.Numbers(), IsEmpty());
}

TEST_F(ConfigData, AnEmptyFileHasNoHeader)
{
    Read("");
    EXPECT_EQ(log.Records(), ReadingWarning("Could not read XML header"));
}

TEST_F(ConfigData, ATrailingBlankRefusesTheOpeningTag)
{
    Read("<?xml?>\n<D_PDU_API_CFG> \n" + std::string(Closing));
    EXPECT_EQ(log.Records(), ReadingWarning("Could not read block name"));
}

TEST_F(ConfigData, TheOpeningTagOnLineOneIsTakenForTheHeader)
{
    Read("<D_PDU_API_CFG>\n<D_PDU_API_CFG>\n<Attribute Name=\"A\" Type=\"UNUM32\" Value=\"1\"/>\n" +
         std::string(Closing));
    EXPECT_THAT(config.Numbers(), ElementsAre(Pair("A", 1u)));
    Read("<D_PDU_API_CFG>\n<Attribute Name=\"B\" Type=\"UNUM32\" Value=\"1\"/>\n" + std::string(Closing));
    EXPECT_THAT(config.Numbers(), ElementsAre(Pair("A", 1u)));
    EXPECT_EQ(log.Records(), ReadingWarning("Could not read block name"));
}

TEST_F(ConfigData, AFileOfOneLineHasNoBlockName)
{
    Read("<?xml?>\n");
    EXPECT_EQ(log.Records(), ReadingWarning("Could not read block name"));
}

TEST_F(ConfigData, AnIndentedClosingTagIsNoClosingTag)
{
    Read(std::string(Opening) + "\t</D_PDU_API_CFG>\n<Attribute Name=\"A\" Type=\"UNUM32\" Value=\"1\"/>\n");
    EXPECT_EQ(log.Records(), Warning("Not an attribute") + ReadingWarning("Could not read line"));
    EXPECT_THAT(config.Numbers(), ElementsAre(Pair("A", 1u)));
}

TEST_F(ConfigData, WhatStandsBehindTheClosingTagIsNeverSeen)
{
    Read(std::string(Opening) + Closing + "<Attribute Name=\"A\" Type=\"UNUM32\" Value=\"1\"/>\n");
    EXPECT_THAT(config.Numbers(), IsEmpty());
    EXPECT_EQ(log.Records(), "");
}

TEST_F(ConfigData, ALineOf999CharactersIsReadAndOneOf1000EndsTheReading)
{
    const std::string start = "<Attribute Name=\"A\" Type=\"UNUM32\" Value=\"1\"/>";
    Read(Opening + start + std::string(999 - start.size(), 'x') + "\n" + Closing);
    EXPECT_THAT(config.Numbers(), ElementsAre(Pair("A", 1u)));
    EXPECT_EQ(log.Records(), "");
    const std::string other = "<Attribute Name=\"B\" Type=\"UNUM32\" Value=\"1\"/>";
    Read(Opening + other + std::string(1000 - other.size(), 'x') + "\n" + Closing);
    EXPECT_THAT(config.Numbers(), ElementsAre(Pair("A", 1u)));
    EXPECT_EQ(log.Records(), ReadingWarning("Could not read line"));
}

TEST_F(ConfigData, AHeaderOf1000CharactersIsNoHeader)
{
    Read(std::string(1000, 'h') + "\n<D_PDU_API_CFG>\n" + Closing);
    EXPECT_EQ(log.Records(), ReadingWarning("Could not read XML header"));
}

TEST_F(ConfigData, ACarriageReturnIsNoPartOfTheLine)
{
    const std::string start = "<Attribute Name=\"A\" Type=\"String\" Value=\"x\"/>";
    Read("<?xml?>\r\n<D_PDU_API_CFG>\r\n" + start + std::string(999 - start.size(), 'x') +
         "\r\n</D_PDU_API_CFG>\r\n");
    EXPECT_THAT(config.Texts(), ElementsAre(Pair("A", "x")));
    EXPECT_EQ(log.Records(), "");
}

TEST_F(ConfigData, ALastLineWithoutALineFeedIsAGoodLine)
{
    Read(std::string(Opening) + "</D_PDU_API_CFG>");
    EXPECT_EQ(log.Records(), "");
}

TEST_F(ConfigData, AnAttributeWithoutNameIsStoredUnderWhatStandsThere)
{
    ReadLine("<Attribute Type=\"String\" Value=\"x\"/>");
    EXPECT_THAT(config.Texts(), ElementsAre(Pair("ibute Type=", "x")));
}

TEST_F(ConfigData, AnAttributeWithoutValueStoresWhatStandsThere)
{
    ReadLine("<Attribute Name=\"A\" Type=\"String\"/>\n<Attribute Name=\"B\" Type=\"UNUM32\"/>");
    EXPECT_THAT(config.Texts(), ElementsAre(Pair("A", "bute Name=")));
    EXPECT_THAT(config.Numbers(), ElementsAre(Pair("B", 0u)));
}

TEST_F(ConfigData, AnAttributeWithoutTypeIsUnsupported)
{
    ReadLine("<Attribute Name=\"A\" Value=\"1\"/>");
    EXPECT_EQ(log.Records(), Warning("Unsupported type: ibute Name="));
}

TEST_F(ConfigData, TypesAreComparedExactly)
{
    ReadLine("<Attribute Name=\"A\" Type=\"string\" Value=\"1\"/>");
    EXPECT_EQ(log.Records(), Warning("Unsupported type: string"));
}

TEST_F(ConfigData, ACommentedAttributeIsLiveAndAnotherCommentIsNone)
{
    ReadLine("<!-- <Attribute Name=\"A\" Type=\"UNUM32\" Value=\"1\"/> -->\n<!-- a comment -->\n");
    EXPECT_THAT(config.Numbers(), ElementsAre(Pair("A", 1u)));
    EXPECT_EQ(log.Records(), Warning("Not an attribute") + Warning("Not an attribute"));
}

TEST_F(ConfigData, OfManyEmptyLinesAThousandAreReported)
{
    Read(Opening + std::string(3000, '\n') + Closing);
    std::string expected;
    for (int i = 0; i < 1000; ++i)
        expected += Warning("Not an attribute");
    EXPECT_EQ(log.Records(), expected + Warning("Not an attribute; more are not reported"));
}

TEST_F(ConfigData, AFieldWithoutClosingQuoteDropsTheLine)
{
    ReadLine("<Attribute Type=\"String\" Value=\"x\" Name=\"A\n"
             "<Attribute Name=\"A\" Value=\"x\" Type=\"String\n"
             "<Attribute Name=\"A\" Type=\"String\" Value=\"x");
    EXPECT_THAT(config.Texts(), IsEmpty());
    EXPECT_EQ(log.Records(), Warning("The attribute with no name") + Warning("The attribute with no Type") +
                                 Warning("The attribute with no Value"));
}

TEST_F(ConfigData, AMarkerInsideAnotherWordIsTaken)
{
    ReadLine("<Attribute FileName=\"x\" Name=\"A\" Type=\"UNUM32\" Value=\"1\"/>");
    EXPECT_THAT(config.Numbers(), ElementsAre(Pair("x", 1u)));
}

TEST_F(ConfigData, NumbersAreDecimalWithSignAndSaturate)
{
    ReadLine("<Attribute Name=\"a\" Type=\"UNUM32\" Value=\"-1\"/>\n"
             "<Attribute Name=\"b\" Type=\"UNUM32\" Value=\"4294967295\"/>\n"
             "<Attribute Name=\"c\" Type=\"UNUM32\" Value=\"0x10\"/>\n"
             "<Attribute Name=\"d\" Type=\"UNUM32\" Value=\" +12abc\"/>\n"
             "<Attribute Name=\"e\" Type=\"UNUM32\" Value=\"\"/>\n"
             "<Attribute Name=\"f\" Type=\"UNUM32\" Value=\"-99999999999999999999999\"/>");
    EXPECT_THAT(config.Numbers(), ElementsAre(Pair("a", 4294967295u), Pair("b", 2147483647u), Pair("c", 0u),
                                              Pair("d", 12u), Pair("e", 0u), Pair("f", 2147483648u)));
}

TEST_F(ConfigData, AnEmptyTextIsPresent)
{
    ReadLine("<Attribute Name=\"A\" Type=\"String\" Value=\"\"/>");
    std::string value = "untouched";
    EXPECT_EQ(config.GetStringValue("A", value), 0);
    EXPECT_EQ(value, "");
}

TEST_F(ConfigData, AnAbsentTextLeavesTheValueUntouched)
{
    std::string value = "untouched";
    EXPECT_EQ(config.GetStringValue("A", value), 1);
    EXPECT_EQ(value, "untouched");
}

TEST_F(ConfigData, ReferencesAreExpandedAtEachLookup)
{
    ReadLine("<Attribute Name=\"A\" Type=\"String\" Value=\"<%MARVANE_UNIT_TEST%>\"/>");
    std::string value;
    {
        const testing::EnvironmentValue variable("MARVANE_UNIT_TEST", "one");
        config.GetStringValue("A", value);
        EXPECT_EQ(value, "<one>");
    }
    config.GetStringValue("A", value);
    EXPECT_EQ(value, "<%MARVANE_UNIT_TEST%>");
}

TEST_F(ConfigData, AFileThatCanNotBeOpenedIsNamed)
{
    config.ProcessConfigurationElements(log.Folder() / "none.xml");
    EXPECT_EQ(log.Records(),
              ReadingWarning("Could not open configuration file: " + (log.Folder() / "none.xml")));
}

TEST(ConfigName, IsTheVariableAsItStands)
{
    const DiagnosticLog log(4);
    const testing::EnvironmentValue variable("PDU_CFG_FILE", "%TEMP%/no/such file");
    EXPECT_EQ(CConfigData::GetConfigQualifiedName(), "%TEMP%/no/such file");
    EXPECT_EQ(
        log.Records(),
        "DEBUG|lib/CConfigData|ConfigData::GetConfigQualifiedName|QualifiedName = %TEMP%/no/such file\n");
}

TEST(ConfigName, LiesBesideTheLibraryIfTheVariableIsEmpty)
{
    const DiagnosticLog log(1);
    const testing::EnvironmentValue variable("PDU_CFG_FILE", "");
    const std::string own = CConfigData::GetLibQualifiedPathName();
    EXPECT_FALSE(own.empty());
    EXPECT_EQ(CConfigData::GetConfigQualifiedName(),
              own.substr(0, own.rfind(platform::PathSeparator) + 1) + "D_PDU_API_CFG.xml");
}

TEST_F(ConfigData, EveryStepIsToldAtLevelDebug)
{
    const DiagnosticLog detailed(4);
    ReadLine("<Attribute Name=\"A\" Type=\"UNUM32\" Value=\"-1\"/>");
    EXPECT_EQ(
        detailed.Records(),
        "DEBUG|class CConfigData|CConfigData::ProcessConfigurationElement|pElement: <Attribute Name=\"A\" "
        "Type=\"UNUM32\" Value=\"-1\"/>\n"
        "DEBUG|class CConfigData|CConfigData::ProcessConfigurationElement|A = 4294967295\n");
}

} // namespace
} // namespace marvane
