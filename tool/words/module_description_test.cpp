#include "tool/words/module_description.h"

#include <gtest/gtest.h>

namespace marvane::words {
namespace {

constexpr std::string_view File = R"(<?xml version="1.0" encoding="UTF-8"?>
<MVCI_MODULE_DESCRIPTION FILE_VERSION="1.0">
  <DESCRIPTION>A module</DESCRIPTION>
  <PINTYPE EID="P1"><ID>1</ID><SHORT_NAME>HI</SHORT_NAME></PINTYPE>
  <MODULETYPE><ID>900</ID><SHORT_NAME>VCI</SHORT_NAME><IO_CTRL IDREF="I1"/><RESOURCE IDREF="R1"/></MODULETYPE>
  <RESOURCE EID="R1">
    <ID>513</ID><SHORT_NAME>CAN_6_14</SHORT_NAME>
    <PIN_ON_MODULE><PIN_ON_MODULE>6</PIN_ON_MODULE><PINTYPE IDREF="P1"/></PIN_ON_MODULE>
    <BUSTYPE IDREF="B1"/><PROTOCOL IDREF="PR1"/>
  </RESOURCE>
  <PROTOCOL EID="PR1">
    <ID>0x2A</ID><SHORT_NAME> ISO_15765_3_on_ISO_15765_2 </SHORT_NAME>
    <COMPARAM_REF><DEFAULT_VALUE>50000</DEFAULT_VALUE><COMPARAM IDREF="C1"/></COMPARAM_REF>
  </PROTOCOL>
  <BUSTYPE EID="B1">
    <ID>3</ID><SHORT_NAME>ISO_11898_2_DWCAN</SHORT_NAME>
    <COMPARAM_REF><DEFAULT_VALUE>500000</DEFAULT_VALUE><COMPARAM IDREF="C2"/></COMPARAM_REF>
  </BUSTYPE>
  <IO_CTRL EID="I1"><ID>7</ID><SHORT_NAME>PDU_IOCTL_RESET</SHORT_NAME></IO_CTRL>
  <COMPARAM EID="C1"><ID>10</ID><SHORT_NAME>CP_P2Max</SHORT_NAME><DESCRIPTION>Time-out &lt;P2&gt;</DESCRIPTION>
    <DATA_TYPE>PDU_PT_UNUM32</DATA_TYPE><DEFAULT_VALUE>1</DEFAULT_VALUE><CLASS>TIMING</CLASS><LAYER>APP</LAYER></COMPARAM>
  <COMPARAM EID="C2"><ID>11</ID><SHORT_NAME>CP_Baudrate</SHORT_NAME></COMPARAM>
  <ERROR_CODE><ID>4711</ID><SHORT_NAME>ERR_BUS_OFF</SHORT_NAME><DESCRIPTION>The bus is off</DESCRIPTION></ERROR_CODE>
</MVCI_MODULE_DESCRIPTION>
)";

TEST(ModuleDescription, NamesTheNumbersOfTheApi)
{
    const ModuleDescription file = ModuleDescription::Read(File);
    EXPECT_EQ(file.Fault(), "");
    EXPECT_EQ(file.Size(), 9u);
    EXPECT_EQ(file.Find(MdfKind::Resource, 513)->Name, "CAN_6_14");
    EXPECT_EQ(file.Find(MdfKind::Protocol, 42)->Name, "ISO_15765_3_on_ISO_15765_2");
    EXPECT_EQ(file.Find(MdfKind::BusType, 3)->Name, "ISO_11898_2_DWCAN");
    EXPECT_EQ(file.Find(MdfKind::IoControl, 7)->Name, "PDU_IOCTL_RESET");
    EXPECT_EQ(file.Find(MdfKind::PinType, 1)->Name, "HI");
    EXPECT_EQ(file.Find(MdfKind::ModuleType, 900)->Name, "VCI");
    EXPECT_EQ(file.Find(MdfKind::ErrorCode, 4711)->Description, "The bus is off");
    EXPECT_EQ(file.Find(MdfKind::ErrorCode, 1), nullptr);
}

TEST(ModuleDescription, KnowsComParams)
{
    const ModuleDescription file = ModuleDescription::Read(File);
    const MdfComParam* const timeOut = file.FindComParam(10);
    ASSERT_NE(timeOut, nullptr);
    EXPECT_EQ(timeOut->Description, "Time-out <P2>");
    EXPECT_EQ(timeOut->DataType + " " + timeOut->Class + " " + timeOut->Layer, "PDU_PT_UNUM32 TIMING APP");
    EXPECT_EQ(file.ComParamId("CP_Baudrate"), 11u);
    EXPECT_EQ(file.ComParamId("CP_None"), std::nullopt);
}

TEST(ModuleDescription, TakesDefaultsFromProtocolThenBusThenComParam)
{
    const ModuleDescription file = ModuleDescription::Read(File);
    EXPECT_EQ(file.DefaultOf("CAN_6_14", 10), "50000");
    EXPECT_EQ(file.DefaultOf("CAN_6_14", 11), "500000");
    EXPECT_EQ(file.DefaultOf("ISO_15765_3_on_ISO_15765_2", 10), "50000");
    EXPECT_EQ(file.DefaultOf("elsewhere", 10), "1");
    EXPECT_EQ(file.DefaultOf("elsewhere", 11), std::nullopt);
    EXPECT_EQ(file.DefaultOf("CAN_6_14", 99), std::nullopt);
}

TEST(ModuleDescription, KeepsWhatStandsBeforeAFault)
{
    const ModuleDescription cut = ModuleDescription::Read(File.substr(0, File.find("<PROTOCOL EID")));
    EXPECT_NE(cut.Fault(), "");
    EXPECT_EQ(cut.Find(MdfKind::Resource, 513)->Name, "CAN_6_14");
    EXPECT_EQ(ModuleDescription::Read("{}").Size(), 0u);
    EXPECT_NE(ModuleDescription::Read("<a/>").Fault(), "");
}

} // namespace
} // namespace marvane::words
