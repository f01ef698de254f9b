#include <vector>

#include "tests/support/decoded_text.h"

namespace marvane {
namespace {

class Vehicle : public testing::Decoding
{
protected:
    static std::string Request(const PDU_IO_VEHICLE_ID_REQUEST_DATA* item, Arrow arrow = ToTarget)
    {
        return Decoded([&](const DecoderContext& context) { DecodeVehicleIdRequest(context, arrow, item); });
    }
    static std::string Switch(UNUM32 state)
    {
        const PDU_IO_ETH_SWITCH_STATE_DATA item = {.State = state, .PinNumber = 8};
        return Decoded([&](const DecoderContext& context) { DecodeEthSwitchState(context, &item); });
    }
    static std::string Entity(UNUM32 type)
    {
        const PDU_IO_ENTITY_STATUS_DATA item = {
            .EntityType = type, .TcpClientsMax = 8, .TcpClients = 1, .MaxDataSize = 4095};
        return Decoded([&](const DecoderContext& context) { DecodeEntityStatus(context, &item); });
    }
};

TEST_F(Vehicle, ANullRequestIsReported)
{
    EXPECT_EQ(Request(nullptr), "   -->  pVehIdReq\t= <NULL>\n");
    EXPECT_EQ(Request(nullptr, FromTarget), "   <--  pVehIdReq\t= <NULL>\n");
    EXPECT_EQ(Decoded([](const DecoderContext& context) {
                  DecodeVehicleIdRequestEx(context, FromTarget, nullptr);
              }),
              "   <--  pVehIdReq\t= <NULL>\n");
}

TEST_F(Vehicle, CombinationModesHaveTheirNames)
{
    const char* names[] = {"Entity", "VIN", "GroupID", "Collection", "<UNKNOWN>"};
    for (UNUM32 mode = 0; mode < 5; ++mode) {
        const PDU_IO_VEHICLE_ID_REQUEST_DATA item = {.PreselectionMode = 1,
                                                     .PreselectionValue = nullptr,
                                                     .CombinationMode = mode,
                                                     .VehicleDiscoveryTime = 500,
                                                     .NumDestinationAddresses = 0,
                                                     .pDestinationAddresses = nullptr};
        EXPECT_EQ(Request(&item), "   -->  CombinationMode=" + std::string(names[mode]) + " (" +
                                      std::to_string(mode) +
                                      "), PreselectionMode=1, PreselectionValue='<NULL STRING>', "
                                      "VehicleDiscoveryTime=500, NumDestAddrs=0\n");
    }
}

TEST_F(Vehicle, ABufferWithoutEntriesAndEntriesWithoutABufferAreWarnings)
{
    CHAR8 value[] = "VIN";
    PDU_IP_ADDR_INFO address = {};
    const PDU_IO_VEHICLE_ID_REQUEST_DATA unused = {.PreselectionMode = 2,
                                                   .PreselectionValue = value,
                                                   .CombinationMode = 9,
                                                   .VehicleDiscoveryTime = 0,
                                                   .NumDestinationAddresses = 0,
                                                   .pDestinationAddresses = &address};
    EXPECT_EQ(Request(&unused),
              "   -->  CombinationMode=<UNKNOWN> (9), PreselectionMode=2, PreselectionValue='VIN', "
              "VehicleDiscoveryTime=0, NumDestAddrs=0\n"
              "   -->  WARNING: Destination address buffer but no entries!\n");
    const PDU_IO_VEHICLE_ID_REQUEST_DATA missing = {.PreselectionMode = 2,
                                                    .PreselectionValue = value,
                                                    .CombinationMode = 9,
                                                    .VehicleDiscoveryTime = 0,
                                                    .NumDestinationAddresses = 4,
                                                    .pDestinationAddresses = nullptr};
    EXPECT_EQ(Request(&missing, FromTarget),
              "   <--  CombinationMode=<UNKNOWN> (9), PreselectionMode=2, PreselectionValue='VIN', "
              "VehicleDiscoveryTime=0, NumDestAddrs=4\n"
              "   <--  WARNING: Destination address entries indicated but no buffer (4)!\n");
}

TEST_F(Vehicle, AddressesOfBothKindsAndTheirFaults)
{
    UNUM8 ipv4[] = {0xC0, 0xA8, 0x00, 0x01};
    UNUM8 ipv6[] = {0xFE, 0x80, 0, 0, 0, 0, 0, 0, 0x12, 0x34, 0x56, 0x78, 0x9A, 0xBC, 0xDE, 0xF0};
    PDU_IP_ADDR_INFO addresses[] = {
        {.IpVersion = 4, .pAddress = ipv4},    {.IpVersion = 6, .pAddress = ipv6},
        {.IpVersion = 5, .pAddress = ipv4},    {.IpVersion = 4, .pAddress = nullptr},
        {.IpVersion = 6, .pAddress = nullptr}, {.IpVersion = 5, .pAddress = nullptr}};
    const PDU_IO_VEHICLE_ID_REQUEST_DATA item = {.PreselectionMode = 0,
                                                 .PreselectionValue = nullptr,
                                                 .CombinationMode = 1,
                                                 .VehicleDiscoveryTime = 2,
                                                 .NumDestinationAddresses = 6,
                                                 .pDestinationAddresses = addresses};
    EXPECT_EQ(Request(&item),
              "   -->  CombinationMode=VIN (1), PreselectionMode=0, PreselectionValue='<NULL STRING>', "
              "VehicleDiscoveryTime=2, NumDestAddrs=6\n"
              "    >>> pDestinationAddress[00] (IPv4) = 192.168.0.1\n"
              "    >>> pDestinationAddress[01] (IPv6) = FE80:0000:0000:0000:1234:5678:9ABC:DEF0:\n"
              "   -->  WARNING: Unknown IP version = 5\n"
              "   -->  WARNING: Destination address (IPv=4) [03] = NULL\n"
              "   -->  WARNING: Destination address (IPv=6) [04] = NULL\n"
              "   -->  WARNING: Destination address (IPv=INVALID) [05] = NULL\n");
}

TEST_F(Vehicle, TheExtendedRequestAddsItsVersion)
{
    const PDU_IO_VEHICLE_ID_REQUEST_EX item = {.Request = {.PreselectionMode = 0,
                                                           .PreselectionValue = nullptr,
                                                           .CombinationMode = 0,
                                                           .VehicleDiscoveryTime = 2,
                                                           .NumDestinationAddresses = 0,
                                                           .pDestinationAddresses = nullptr},
                                               .Ver = 3};
    EXPECT_EQ(
        Decoded([&](const DecoderContext& context) { DecodeVehicleIdRequestEx(context, FromTarget, &item); }),
        "   <--  CombinationMode=Entity (0), PreselectionMode=0, PreselectionValue='<NULL STRING>', "
        "VehicleDiscoveryTime=2, NumDestAddrs=0\n"
        "   <--  Ver=0x03\n");
}

TEST_F(Vehicle, TheSwitchIsOffOnOrInvalid)
{
    EXPECT_EQ(Switch(0), "   -->  Pin Number\t\t= 8 -> OFF (0)\n");
    EXPECT_EQ(Switch(1), "   -->  Pin Number\t\t= 8 -> ON (1)\n");
    EXPECT_EQ(Switch(2), "   -->  Pin Number\t\t= 8 -> INVALID (2)\n");
}

TEST_F(Vehicle, AnEntityIsAGatewayANodeOrUnknown)
{
    const std::string rest = ", TcpClientsMax=8, TcpClients=1, MaxDataSize=4095\n";
    EXPECT_EQ(Entity(0), "   -->  PDU_IO_ENTITY_STATUS_DATA: EntityType=0 (Gateway)" + rest);
    EXPECT_EQ(Entity(1), "   -->  PDU_IO_ENTITY_STATUS_DATA: EntityType=1 (Node)" + rest);
    EXPECT_EQ(Entity(2), "   -->  PDU_IO_ENTITY_STATUS_DATA: EntityType=2 <UNKNOWN>" + rest);
}

TEST_F(Vehicle, AnEntitysAddressHasFourDigits)
{
    const PDU_IO_ENTITY_ADDRESS_DATA item = {.LogicalAddress = 0xE80, .CtrlTimeout = 2000};
    EXPECT_EQ(Decoded([&](const DecoderContext& context) { DecodeEntityAddress(context, &item); }),
              "   -->  PDU_IO_ENTITY_ADDRESS_DATA: Addr = 0x0E80, Ctrl T/O = 2000\n");
}

TEST_F(Vehicle, NullItemsHaveTheirOwnWords)
{
    EXPECT_EQ(Decoded([](const DecoderContext& context) { DecodeEthSwitchState(context, nullptr); }),
              "   -->  pItem\t= <NULL>\n");
    EXPECT_EQ(Decoded([](const DecoderContext& context) { DecodeEntityAddress(context, nullptr); }),
              "   -->  PDU_IO_ENTITY_ADDRESS_DATA: pItem\t= <NULL>\n");
    EXPECT_EQ(Decoded([](const DecoderContext& context) { DecodeEntityStatus(context, nullptr); }),
              "   -->  PDU_IO_ENTITY_STATUS_DATA: pItem\t= <NULL>\n");
}

TEST_F(Vehicle, AListLargerThanTheBufferEndsWithTheMarker)
{
    UNUM8 ipv4[] = {1, 2, 3, 4};
    std::vector<PDU_IP_ADDR_INFO> addresses(10000, PDU_IP_ADDR_INFO{.IpVersion = 4, .pAddress = ipv4});
    const PDU_IO_VEHICLE_ID_REQUEST_DATA item = {.PreselectionMode = 0,
                                                 .PreselectionValue = nullptr,
                                                 .CombinationMode = 1,
                                                 .VehicleDiscoveryTime = 2,
                                                 .NumDestinationAddresses = 10000,
                                                 .pDestinationAddresses = addresses.data()};
    ExpectCutOff(Request(&item));
}

TEST_F(Vehicle, ATextLongerThanTheBufferIsCutAndTheMarkerFollows)
{
    std::string value(20000, 'v');
    const PDU_IO_VEHICLE_ID_REQUEST_DATA item = {.PreselectionMode = 0,
                                                 .PreselectionValue = value.data(),
                                                 .CombinationMode = 1,
                                                 .VehicleDiscoveryTime = 2,
                                                 .NumDestinationAddresses = 0,
                                                 .pDestinationAddresses = nullptr};
    const std::string text = Request(&item);
    EXPECT_TRUE(text.ends_with("vvv\t\t\t\t...\n"));
    ExpectCutOff(text);
}

TEST_F(Vehicle, EachDecoderHasItsGates)
{
    ExpectThreeGates(
        [](const DecoderContext& context) { DecodeVehicleIdRequest(context, ToTarget, nullptr); });
    ExpectThreeGates(
        [](const DecoderContext& context) { DecodeVehicleIdRequestEx(context, ToTarget, nullptr); });
    ExpectThreeGates([](const DecoderContext& context) { DecodeEthSwitchState(context, nullptr); });
    ExpectThreeGates([](const DecoderContext& context) { DecodeEntityAddress(context, nullptr); });
    ExpectThreeGates([](const DecoderContext& context) { DecodeEntityStatus(context, nullptr); });
}

} // namespace
} // namespace marvane
