#include "line/marks.h"

#include <ostream>
#include <string>

#include <gtest/gtest.h>

namespace marvane {

void PrintTo(const MarkedLine& line, std::ostream* out)
{
    *out << static_cast<int>(line.Mark) << " '" << line.Rest << "'";
}

namespace {

TEST(Marks, OfACallAreReadBack)
{
    const auto with = [](std::string_view mark, std::string_view rest) {
        return std::string(mark) + std::string(rest);
    };
    const std::string entry = with(marks::Entry, "PDUConnect(hMod=0x00000001)");
    const std::string exit = with(marks::Exit, "PDUConnect<PDU_STATUS_NOERROR (0x0000)>");
    const std::string callOut = with(marks::CallOutEnd, "PDUConnect");
    const std::string notLoaded = with("PDUConnect", marks::NotLoaded);
    EXPECT_EQ(ParseMark(entry), (MarkedLine{LineMark::Entry, "PDUConnect(hMod=0x00000001)"}));
    EXPECT_EQ(ParseMark(exit), (MarkedLine{LineMark::Exit, "PDUConnect<PDU_STATUS_NOERROR (0x0000)>"}));
    EXPECT_EQ(ParseMark(callOut), (MarkedLine{LineMark::CallOutEnd, "PDUConnect"}));
    EXPECT_EQ(ParseMark(notLoaded), (MarkedLine{LineMark::NotLoaded, "PDUConnect"}));
}

TEST(Marks, OfFilesAreReadBack)
{
    EXPECT_EQ(ParseMark("# PDUIoCtl - Changing log file"), (MarkedLine{LineMark::ChangingFile, "PDUIoCtl"}));
    EXPECT_EQ(ParseMark("# PDUIoCtl - Continuation file"),
              (MarkedLine{LineMark::ContinuationFile, "PDUIoCtl"}));
    EXPECT_EQ(ParseMark("# PDUDestruct - Close this log file"),
              (MarkedLine{LineMark::ClosingFile, "PDUDestruct"}));
}

TEST(Marks, OfTheHeaderAreReadBack)
{
    EXPECT_EQ(ParseMark("########## INITIALISE ##########"), (MarkedLine{LineMark::Initialise, ""}));
    EXPECT_EQ(ParseMark("########## D-PDU API LOGGER VERSION: R01.000.0000.0000 ##########"),
              (MarkedLine{LineMark::Version, "R01.000.0000.0000"}));
    EXPECT_EQ(ParseMark("LogHeader{Loaded=0}"), (MarkedLine{LineMark::Header, "{Loaded=0}"}));
    EXPECT_EQ(ParseMark("Config setting: LogFileDir=C:\\Logs\\"),
              (MarkedLine{LineMark::Setting, "LogFileDir=C:\\Logs\\"}));
}

TEST(Marks, TheMarkOfAFullBufferIsALineOfItsOwn)
{
    EXPECT_EQ(ParseMark("\t\t\t\t..."), (MarkedLine{LineMark::BufferFull, ""}));
    EXPECT_EQ(ParseMark("\t\t\t\t...."), (MarkedLine{LineMark::None, "\t\t\t\t...."}));
}

TEST(Marks, OtherLinesHaveNone)
{
    for (const std::string_view text :
         {"", "+", "-", "#", " ", "# ", "# PDUIoCtl", "    <<< pDataBytes     |00000000 <62>",
          "   -->  Time\t= 0", "\t\t -->  [00] 0x20 = X", "[DoIP] ->  Diagnostic message",
          "########## D-PDU API LOGGER VERSION: ####", "LogHead", "Config", "foreign text"})
        EXPECT_EQ(ParseMark(text), (MarkedLine{LineMark::None, text})) << text;
}

} // namespace
} // namespace marvane
