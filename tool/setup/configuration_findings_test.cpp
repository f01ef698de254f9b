#include "tool/setup/configuration_findings.h"

#include <gtest/gtest.h>

namespace marvane::tool {
namespace {

constexpr const char* Opening = "<?xml version=\"1.0\"?>\n<D_PDU_API_CFG>\n";
constexpr const char* Closing = "</D_PDU_API_CFG>\n";

/// A configuration without a fault; the lines of a test follow from line 9 on.
const std::string Good =
    AttributeText("InstalledPath", "/v/") + "\n" + AttributeText("PDUAPILibDll", "libpdu.so") + "\n" +
    AttributeText("LogFileDir", "/logs/") + "\n" + AttributeText("LogEnabled", "1") + "\n" +
    AttributeText("LogFnCalls", "2") + "\n" + AttributeText("LogFlush", "1") + "\n";

std::string Expanded(const std::string& text)
{
    return text == "%KNOWN%" ? "/known" : text;
}

/// A finding with its lines joined: where they are wrapped is another test's.
std::string Unwrapped(std::string shown)
{
    const std::string wrap = "\n" + std::string(22, ' ');
    for (std::size_t at = shown.find(wrap); at != std::string::npos; at = shown.find(wrap))
        shown.replace(at, wrap.size(), " ");
    return shown;
}

std::string Shown(const std::string& file, char separator = '/')
{
    std::string shown;
    for (const CheckFinding& finding : ConfigurationFindings(ParseConfiguration(file), separator, Expanded))
        shown += Unwrapped(ShownFinding(finding));
    return shown;
}

/// The findings about lines that follow those of the good configuration.
std::string OfLines(const std::string& lines, char separator = '/')
{
    return Shown(Opening + Good + lines + "\n" + Closing, separator);
}

std::string Line(const std::string& key, const std::string& value)
{
    return AttributeText(key, value);
}

TEST(CheckedConfiguration, WithoutAFaultHasNoFinding)
{
    EXPECT_EQ(OfLines("<!-- a comment -->\n"), "");
}

TEST(CheckedFile, OfUtf16IsNotRead)
{
    const std::string shown =
        "   X  line 1          The file is UTF-16: nothing of it is read. Save it as UTF-8 without a byte-order mark.\n";
    EXPECT_EQ(Shown(std::string("\xFF\xFE<\0?\0", 6)), shown);
    EXPECT_EQ(Shown(std::string("<\0?\0x\0", 6)), shown);
}

TEST(CheckedFile, MayHaveAByteOrderMark)
{
    EXPECT_EQ(Shown("\xEF\xBB\xBF" + std::string(Opening) + Good + Closing),
              "  --  line 1          A byte-order mark; harmless, since any line 1 is accepted.\n");
    EXPECT_EQ(Shown("any\n<D_PDU_API_CFG>\n" + Good + Closing),
              "  --  line 1          No XML declaration; harmless, since any line 1 is accepted.\n");
}

TEST(CheckedFile, NeedsItsSecondLineAsItIs)
{
    EXPECT_EQ(Shown(""), "   X  line 1          The file is empty.\n");
    EXPECT_EQ(
        Shown("<?xml?>\n<D_PDU_API_CFG> \n" + Good + Closing),
        "   X  line 2          Line 2 must be exactly \"<D_PDU_API_CFG>\", without blanks around it: nothing of the file is read.\n");
    EXPECT_EQ(
        Shown("<D_PDU_API_CFG>\n" + Good + Closing),
        "   X  line 2          Line 2 must be exactly \"<D_PDU_API_CFG>\": nothing of the file is read. It is on line 1: put a line above it.\n");
    EXPECT_EQ(
        Shown("<?xml?>\n<!-- -->\n<D_PDU_API_CFG>\n" + Good + Closing),
        "   X  line 2          Line 2 must be exactly \"<D_PDU_API_CFG>\": nothing of the file is read. It is on line 3: one line alone may be above it.\n");
    EXPECT_EQ(
        Shown("<?xml?>\n<CFG>\n"),
        "   X  line 2          Line 2 must be exactly \"<D_PDU_API_CFG>\": nothing of the file is read. Line 2 is \"<CFG>\".\n");
}

TEST(CheckedFile, EndsWithItsClosingTag)
{
    EXPECT_EQ(
        Shown(Opening + Good),
        "   !  end of file     The last line must be exactly \"</D_PDU_API_CFG>\". What is above it counts all the same.\n");
    EXPECT_EQ(
        Shown(Opening + Good + " </D_PDU_API_CFG>\n"),
        "   !  line 9          The closing tag has blanks around it and does not count: lines that follow it are read too.\n");
    EXPECT_EQ(Shown(Opening + Good + Closing + Line("LogCbCalls", "1") + "\n"),
              "   !  line 10         The attribute is after the closing tag on line 9 and does not count.\n");
    EXPECT_EQ(
        OfLines(std::string(1000, ' ')),
        "   X  line 9          The line is longer than 999 characters: reading ends here, and nothing that follows counts.\n");
}

TEST(CheckedLine, HasOneAttributeWithThreeFields)
{
    const std::string advice = " and is not read as it is meant. Write Name=\"...\" Type=\"...\" "
                               "Value=\"...\" on one line.\n";
    EXPECT_EQ(OfLines("<Attribute Name='LogCbCalls' Type='UNUM32' Value='1'/>"),
              "   !  line 9          The attribute has single quotes at Name" + advice);
    EXPECT_EQ(OfLines("<Attribute Name=\xE2\x80\x9CLogCbCalls\xE2\x80\x9D Type=\"UNUM32\" Value=\"1\"/>"),
              "   !  line 9          The attribute has curly quotes at Name" + advice);
    EXPECT_EQ(
        OfLines("<Attribute Name=\"LogCbCalls\" Type=\"UNUM32\" Value = \"1\"/>"),
        "   !  line 9          The attribute has blanks around the \"=\" of Value and is not read as it is meant. Write Name=\"...\" Type=\"...\" Value=\"...\" on one line.\n");
    EXPECT_EQ(
        OfLines("<Attribute Name=\"LogCbCalls\" Value=\"1\"/>"),
        "   !  line 9          The attribute has no Type and is not read as it is meant. Write Name=\"...\" Type=\"...\" Value=\"...\" on one line.\n");
    EXPECT_EQ(OfLines("<Attribute Name=\"LogCbCalls\" Type=\"UNUM32\" Value=\"1/>"),
              "   !  line 9          The closing quote of Value is missing: the line does not count.\n");
}

TEST(CheckedLine, IsNotSharedOrSplit)
{
    EXPECT_EQ(
        OfLines(Line("LogCbCalls", "1") + Line("LogCallOuts", "1")),
        "   !  line 9          Two attributes on one line: only LogCbCalls counts. Give each a line of its own.\n");
    EXPECT_EQ(
        OfLines("<Attribute Name=\"LogCbCalls\" Type=\"UNUM32\"\n  Value=\"1\"/>"),
        "   !  line 9          The attribute goes over several lines and is not read as it is meant. Write it on one line.\n");
    EXPECT_EQ(
        OfLines("<Attribute\n  Name=\"LogCbCalls\" Type=\"UNUM32\" Value=\"1\"/>"),
        "   !  line 9          The attribute goes over several lines and does not count. Write it on one line.\n");
    EXPECT_EQ(
        OfLines("<LogCbCalls>1</LogCbCalls>"),
        "   !  line 9          The element does not count. Write <Attribute Name=\"LogCbCalls\" Type=\"UNUM32\" Value=\"...\"/>.\n");
    EXPECT_EQ(OfLines("<attribute Name=\"LogCbCalls\" Type=\"UNUM32\" Value=\"1\"/>"),
              "   !  line 9          The line does not count: the tag must be spelt \"<Attribute \".\n");
}

TEST(CheckedLine, NamesAKnownKeyOfTheRightType)
{
    EXPECT_EQ(
        OfLines("<Attribute Name=\"logcbcalls\" Type=\"UNUM32\" Value=\"1\"/>"),
        "   !  line 9          logcbcalls does not count: upper and lower case matter. Write LogCbCalls.\n");
    EXPECT_EQ(OfLines("<Attribute Name=\"LogCbCals\" Type=\"UNUM32\" Value=\"1\"/>"),
              "   !  line 9          LogCbCals is no key of Marvane. Did you mean LogCbCalls?\n");
    EXPECT_EQ(OfLines("<Attribute Name=\"Colour\" Type=\"String\" Value=\"red\"/>"),
              "  --  line 9          Colour is no key of Marvane and has no effect.\n");
    EXPECT_EQ(
        OfLines("<Attribute Name=\"LogCbCalls\" Type=\"String\" Value=\"1\"/>"),
        "   !  line 9          LogCbCalls has Type=\"String\" and does not count. Write Type=\"UNUM32\".\n");
    EXPECT_EQ(
        OfLines("<Attribute Name=\"ShortName\" Type=\"string\" Value=\"1\"/>"),
        "   !  line 9          ShortName has Type=\"string\" and does not count. Write Type=\"String\".\n");
}

TEST(CheckedLine, InACommentCountsAllTheSame)
{
    EXPECT_EQ(
        OfLines("<!-- " + Line("LogCbCalls", "1") + " -->"),
        "   !  line 9          LogCbCalls stands in a comment and counts all the same. Delete the line to switch it off.\n");
    EXPECT_EQ(
        OfLines("<!--\n" + Line("LogFnCalls", "2") + "\n-->"),
        "   !  line 10         LogFnCalls stands in a comment and counts all the same: it overrides line 7. Delete the line to switch it off.\n");
    EXPECT_EQ(OfLines(Line("LogFnCalls", "2")),
              "   !  line 9          LogFnCalls is here a second time: it overrides line 7.\n");
}

TEST(CheckedLine, ShouldBeUtf8)
{
    EXPECT_EQ(
        OfLines(Line("ShortName", "\xE4")),
        "   !  line 9          The line is not UTF-8: its characters depend on the system's code page. Save the file as UTF-8.\n");
}

TEST(CheckedLine, WithoutAnAttributeMayHoldAnyBytes)
{
    EXPECT_EQ(OfLines("<!-- \xE4 -->"),
              "  --  line 9          The line is not UTF-8; harmless, since it holds no attribute.\n");
    EXPECT_EQ(Shown("<?xml \xE4?>\n<D_PDU_API_CFG>\n" + Good + Closing),
              "  --  line 1          The line is not UTF-8; harmless, since any line 1 is accepted.\n");
}

TEST(CheckedNumber, IsDecimalAndFits)
{
    EXPECT_EQ(OfLines(Line("LogCbCalls", "0x1")),
              "   !  line 9          LogCbCalls = \"0x1\" is read as 0. Write \"1\".\n");
    EXPECT_EQ(
        OfLines(Line("LogCbCalls", "yes")),
        "   !  line 9          LogCbCalls = \"yes\" is read as 0. Write a decimal number of digits alone.\n");
    EXPECT_EQ(
        OfLines(Line("LogFileMaxSize", "10M") + "\n" + Line("LogFileMaxNum", "3")),
        "   !  line 9          LogFileMaxSize = \"10M\" is read as 10. Write \"10485760\".\n"
        "   !  line 9          LogFileMaxSize is so small that a file fills within a second: each call then changes the file. Write \"10000000\".\n");
    EXPECT_EQ(
        OfLines(Line("LogMaxPduBuff", "4294967295")),
        "   !  line 9          LogMaxPduBuff = \"4294967295\" is read as 2147483647: larger numbers do not fit.\n");
    EXPECT_EQ(
        OfLines(Line("LogMaxPduBuff", "-1")),
        "   !  line 9          LogMaxPduBuff = \"-1\" is read as 4294967295. Write a decimal number of digits alone.\n");
    EXPECT_EQ(OfLines(Line("LogMaxPduBuff", "0064")), "");
}

/// The good configuration with one key another value.
std::string With(const std::string& key, const std::string& good, const std::string& value)
{
    std::string text = Good;
    const std::string line = AttributeText(key, good) + "\n";
    text.replace(text.find(line), line.size(), value.empty() ? "\n" : AttributeText(key, value) + "\n");
    return Shown(Opening + text + Closing);
}

TEST(CheckedNumber, LogEnabledIsOne)
{
    EXPECT_EQ(
        With("LogEnabled", "1", ""),
        "   !  LogEnabled      is missing: nothing is logged. Write <Attribute Name=\"LogEnabled\" Type=\"UNUM32\" Value=\"1\"/>.\n");
    EXPECT_EQ(With("LogEnabled", "1", "0"),
              "   !  line 6          LogEnabled is 0: nothing is logged. Write \"1\".\n");
    EXPECT_EQ(
        With("LogEnabled", "1", "2"),
        "   X  line 6          LogEnabled is above 1 and refused: the target library is not loaded. Write \"1\".\n");
    EXPECT_EQ(
        With("LogEnabled", "1", "on"),
        "   !  line 6          LogEnabled = \"on\" is read as 0. Write a decimal number of digits alone.\n"
        "   !  line 6          LogEnabled is 0: nothing is logged. Write \"1\".\n");
}

TEST(CheckedNumber, LogFnCallsIsTwo)
{
    EXPECT_EQ(With("LogFnCalls", "2", "0"),
              "   !  line 7          LogFnCalls is 0: the log holds headers and no calls. Write \"2\".\n");
    EXPECT_EQ(With("LogFnCalls", "2", ""),
              "   !  LogFnCalls      is missing: the log holds headers and no calls. Write \"2\".\n");
}

TEST(CheckedNumber, DecodingNeedsLogFnCallsTwo)
{
    const std::string one = Good.substr(0, Good.find("<Attribute Name=\"LogFnCalls\"")) +
                            Line("LogFnCalls", "1") + "\n" +
                            Good.substr(Good.find("<Attribute Name=\"LogFlush\""));
    EXPECT_EQ(
        Shown(Opening + one + Line("LogFnDecodeRsps", "1") + "\n" + Closing),
        "   !  line 7          LogFnCalls is 1: arguments and results are decoded with 2 only. Write \"2\".\n");
}

TEST(CheckedNumber, LogNewFileCfgIsNoSubstituteForLogEnabled)
{
    EXPECT_EQ(
        Shown(std::string(Opening) + Good.substr(0, Good.find("<Attribute Name=\"LogEnabled\"")) +
              Line("LogNewFileCfg", "1") + "\n" + Good.substr(Good.find("<Attribute Name=\"LogFnCalls\"")) +
              Closing),
        "   !  LogEnabled      is not 1: LogNewFileCfg alone switches logging on, without some of the lines. Write <Attribute Name=\"LogEnabled\" Type=\"UNUM32\" Value=\"1\"/>.\n");
}

TEST(CheckedNumber, HasAnEffectOnOthers)
{
    EXPECT_EQ(
        OfLines(Line("LogFileMaxSize", "10000000")),
        "   !  line 9          LogFileMaxSize has no effect while LogFileMaxNum is 0: one file grows for ever. Set LogFileMaxNum too.\n");
    EXPECT_EQ(
        OfLines(Line("LogMaxPduBuff", "8")),
        "   !  line 9          LogMaxPduBuff is so small that answers are cut. Write \"4096\" to see them whole.\n");
    EXPECT_EQ(
        OfLines(Line("LogTlsSessionKey", "1")),
        "   !  line 9          LogTlsSessionKey overwrites the application's default event callback when Marvane starts. Delete the line.\n");
    EXPECT_EQ(
        OfLines(Line("DoIPTlsRecordSizeLimit", "5000")),
        "   !  line 9          DoIPTlsRecordSizeLimit overwrites the application's default event callback when Marvane starts. Delete the line.\n");
    EXPECT_EQ(
        OfLines(Line("DbgAPP", "debug")),
        "   !  line 9          DbgAPP = \"debug\" is no level and does not count. Write ERROR, WARN, NOTICE, INFO, DEBUG, DEBUG1, DEBUG2 or DEBUG3.\n");
    EXPECT_EQ(
        With("LogFlush", "1", "0"),
        "  --  line 8          LogFlush is not 1: the last lines are lost if the application crashes.\n");
}

TEST(CheckedPath, OfTheLibraryIsFolderAndName)
{
    const auto installed = [](const std::string& value) { return With("InstalledPath", "/v/", value); };
    EXPECT_EQ(
        installed("/v"),
        "   X  line 3          InstalledPath = \"/v\" The separator is missing at the end. Write \"/v/\".\n");
    EXPECT_EQ(installed("."), "");
    EXPECT_EQ(
        installed("./"),
        "   X  line 3          InstalledPath = \"./\" This is the folder in which the application was started. Write \".\" for the folder of Marvane.\n");
    EXPECT_EQ(
        installed("v/"),
        "   !  line 3          InstalledPath = \"v/\" A relative folder: it depends on where the application was started. Write the whole path.\n");
    EXPECT_EQ(
        installed(""),
        "   !  InstalledPath   is missing: the system's search finds some library of that name. Write the folder, or \".\" for the folder of Marvane.\n");
    EXPECT_EQ(
        With("PDUAPILibDll", "libpdu.so", "/v/libpdu.so"),
        "   X  line 4          PDUAPILibDll = \"/v/libpdu.so\" is a whole path, and InstalledPath is put before it. Write the file name alone.\n");
    EXPECT_EQ(
        With("PDUAPILibDll", "libpdu.so", ""),
        "   X  PDUAPILibDll    is missing: no target library can be loaded. Add <Attribute Name=\"PDUAPILibDll\" Type=\"String\" Value=\"...\"/>.\n");
}

TEST(CheckedPath, OfTheLibraryNameHasNoFolder)
{
    const auto named = [](const std::string& installed, const std::string& name) {
        return Shown(std::string(Opening) +
                     (installed.empty() ? "\n" : Line("InstalledPath", installed) + "\n") +
                     Line("PDUAPILibDll", name) + Good.substr(Good.find("libpdu.so\"/>") + 12) + Closing);
    };
    EXPECT_EQ(
        named("", "v/libpdu.so"),
        "   !  line 4          PDUAPILibDll = \"v/libpdu.so\" A relative path: it depends on where the application was started. Write the file name alone, and its folder in InstalledPath.\n");
    EXPECT_EQ(
        named("/v/", "sub/libpdu.so"),
        "   !  line 4          PDUAPILibDll = \"sub/libpdu.so\" holds a folder, and InstalledPath is put before it. Write the file name alone, and the whole folder in InstalledPath.\n");
    EXPECT_EQ(named("", "/v/libpdu.so"), "");
    EXPECT_EQ(named("/v/", ""),
              "   X  line 4          PDUAPILibDll = \"\" The name of the target library is empty.\n");
}

TEST(CheckedPath, IsSpeltForMarvane)
{
    const auto folder = [](const std::string& value) { return With("LogFileDir", "/logs/", value); };
    EXPECT_EQ(
        folder("/logs/ "),
        "   X  line 5          LogFileDir = \"/logs/ \" A blank at the beginning or the end is part of the path. Delete it.\n");
    EXPECT_EQ(
        folder("~/logs"),
        "   X  line 5          LogFileDir = \"~/logs\" \"~\" is not replaced. Write %HOME% or the whole path.\n"
        "   !  line 5          LogFileDir = \"~/logs\" A relative folder: it depends on where the application was started. Write the whole path.\n");
    EXPECT_EQ(
        folder("/logs/${USER}"),
        "   X  line 5          LogFileDir = \"/logs/${USER}\" \"$\" begins no reference. Write %USER%.\n");
    EXPECT_EQ(
        folder("$HOME/logs"),
        "   X  line 5          LogFileDir = \"$HOME/logs\" \"$\" begins no reference. Write %HOME%.\n"
        "   !  line 5          LogFileDir = \"$HOME/logs\" A relative folder: it depends on where the application was started. Write the whole path.\n");
    EXPECT_EQ(
        folder("/a&amp;b"),
        "   X  line 5          LogFileDir = \"/a&amp;b\" \"&amp;\" is not replaced: the file is no XML to Marvane. Write the character itself.\n");
    EXPECT_EQ(
        folder("/%UNKNOWN%/"),
        "   X  line 5          LogFileDir = \"/%UNKNOWN%/\" The environment variable of %UNKNOWN% is not set here: the text stays as it is.\n");
    EXPECT_EQ(folder("%KNOWN%"), "");
}

TEST(CheckedPath, OfTheLogsIsThereAndFits)
{
    EXPECT_EQ(
        With("LogFileDir", "/logs/", ""),
        "   X  LogFileDir      is missing: Marvane does not start, and no target library is loaded. Add <Attribute Name=\"LogFileDir\" Type=\"String\" Value=\"/var/log/marvane/\"/>.\n");
    const std::string longer = "/" + std::string(255, 'l');
    EXPECT_EQ(With("LogFileDir", "/logs/", longer),
              "   X  line 5          LogFileDir = \"" + longer +
                  "\" The path has 256 bytes; more than 255 are cut.\n");
    EXPECT_EQ(
        With("LogFileDir", "/logs/", "logs/"),
        "   !  line 5          LogFileDir = \"logs/\" A relative folder: it depends on where the application was started. Write the whole path.\n");
}

TEST(CheckedPath, OfTheLogsIsNotEmptyAndEndsWithASeparator)
{
    const std::string logs = Line("LogFileDir", "/logs/");
    const auto with = [&](const std::string& folder, const std::string& more) {
        std::string text = Good;
        text.replace(text.find(logs), logs.size(), Line("LogFileDir", folder));
        return Shown(Opening + text + more + Closing);
    };
    EXPECT_EQ(
        with("", ""),
        "   X  line 5          LogFileDir = \"\" The folder is empty: files are made in the root folder.\n");
    const std::string comms = Line("LogCommsFile", "1") + "\n" + Line("LogDoIPComms", "1") + "\n";
    EXPECT_EQ(with("/logs/", comms), "");
    EXPECT_EQ(
        with("/logs", comms),
        "   !  line 5          LogFileDir = \"/logs\" Without a separator at the end the comms log is made beside the folder. Write \"/logs/\".\n");
}

TEST(CheckedPath, OfWindowsHasItsOwnRules)
{
    const auto shown = [](const std::string& folder) {
        return Shown(std::string(Opening) + Line("InstalledPath", "C:\\v\\") + "\n" +
                         Line("PDUAPILibDll", "pdu.dll") + "\n" + Line("LogFileDir", folder) + "\n" +
                         Line("LogEnabled", "1") + "\n" + Line("LogFnCalls", "2") + "\n" +
                         Line("LogFlush", "1") + "\n" + Closing,
                     '\\');
    };
    EXPECT_EQ(shown("D:\\Logs\\"), "");
    EXPECT_EQ(
        shown("\\\\server\\logs\\"),
        "   !  line 5          LogFileDir = \"\\\\server\\logs\\\" A folder on the network: each line of the log waits for it.\n");
    EXPECT_EQ(
        shown("D:/Logs/a"),
        "   !  line 5          LogFileDir = \"D:/Logs/a\" Forward slashes: only the last folder of the path can be made. "
        "Write \"\\\".\n");
}

} // namespace
} // namespace marvane::tool
