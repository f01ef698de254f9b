// DoIP: vehicle identification, Ethernet switch, entity address and status.
#include "logger/decode/decode.h"

namespace marvane {

namespace {

const char* IpVersionText(UNUM32 version)
{
    return version == 4 ? "4" : version == 6 ? "6" : "INVALID";
}

void DecodeDestination(const DecoderContext& context, Arrow arrow, UNUM32 k, const PDU_IP_ADDR_INFO& address)
{
    const UNUM8* const b = address.pAddress;
    const Arrow nested = arrow.Deeper();
    if (!b)
        DecodeLine(context, arrow, "WARNING: Destination address (IPv=%s) [%02u] = NULL"_fmt,
                   IpVersionText(address.IpVersion), k);
    else if (address.IpVersion == 4)
        DecodeLine(context, nested, "pDestinationAddress[%02u] (IPv4) = %u.%u.%u.%u"_fmt, k, b[0], b[1], b[2],
                   b[3]);
    else if (address.IpVersion == 6)
        DecodeLine(context, nested,
                   "pDestinationAddress[%02u] (IPv6) = "
                   "%02X%02X:%02X%02X:%02X%02X:%02X%02X:%02X%02X:%02X%02X:%02X%02X:%02X%02X:"_fmt,
                   k, b[0], b[1], b[2], b[3], b[4], b[5], b[6], b[7], b[8], b[9], b[10], b[11], b[12], b[13],
                   b[14], b[15]);
    else
        DecodeLine(context, arrow, "WARNING: Unknown IP version = %u"_fmt, address.IpVersion);
}

} // namespace

void DecodeVehicleIdRequest(const DecoderContext& context, Arrow arrow,
                            const PDU_IO_VEHICLE_ID_REQUEST_DATA* item)
{
    if (!context.IsOpen())
        return;
    if (!item)
        return DecodeLine(context, arrow, "pVehIdReq\t= <NULL>"_fmt);
    const UNUM32 count = item->NumDestinationAddresses;
    DecodeLine(
        context, arrow,
        "CombinationMode=%s (%u), PreselectionMode=%u, PreselectionValue='%s', VehicleDiscoveryTime=%u, "
        "NumDestAddrs=%u"_fmt,
        NameOf(CombinationModeNames, item->CombinationMode, "<UNKNOWN>"), item->CombinationMode,
        item->PreselectionMode, TextOrNull(item->PreselectionValue), item->VehicleDiscoveryTime, count);
    if (item->pDestinationAddresses && count == 0)
        return DecodeLine(context, arrow, "WARNING: Destination address buffer but no entries!"_fmt);
    if (!item->pDestinationAddresses && count != 0)
        return DecodeLine(context, arrow,
                          "WARNING: Destination address entries indicated but no buffer (%u)!"_fmt, count);
    ForEachEntry(context, item->pDestinationAddresses, count, [&](UNUM32 k, const PDU_IP_ADDR_INFO* address) {
        DecodeDestination(context, arrow, k, *address);
    });
}

void DecodeVehicleIdRequestEx(const DecoderContext& context, Arrow arrow,
                              const PDU_IO_VEHICLE_ID_REQUEST_EX* item)
{
    if (!context.IsOpen())
        return;
    if (!item)
        return DecodeLine(context, arrow, "pVehIdReq\t= <NULL>"_fmt);
    DecodeVehicleIdRequest(context, arrow, &item->Request);
    DecodeLine(context, arrow, "Ver=0x%02X"_fmt, item->Ver);
}

void DecodeEthSwitchState(const DecoderContext& context, const PDU_IO_ETH_SWITCH_STATE_DATA* item)
{
    if (!context.IsOpen())
        return;
    if (!item)
        return DecodeLine(context, ToTarget, "pItem\t= <NULL>"_fmt);
    DecodeLine(context, ToTarget, "Pin Number\t\t= %u -> %s (%u)"_fmt, item->PinNumber,
               item->State == 0   ? "OFF"
               : item->State == 1 ? "ON"
                                  : "INVALID",
               item->State);
}

void DecodeEntityAddress(const DecoderContext& context, const PDU_IO_ENTITY_ADDRESS_DATA* item)
{
    if (!context.IsOpen())
        return;
    if (!item)
        return DecodeLine(context, ToTarget, "PDU_IO_ENTITY_ADDRESS_DATA: pItem\t= <NULL>"_fmt);
    DecodeLine(context, ToTarget, "PDU_IO_ENTITY_ADDRESS_DATA: Addr = 0x%04X, Ctrl T/O = %u"_fmt,
               item->LogicalAddress, item->CtrlTimeout);
}

void DecodeEntityStatus(const DecoderContext& context, const PDU_IO_ENTITY_STATUS_DATA* item)
{
    if (!context.IsOpen())
        return;
    if (!item)
        return DecodeLine(context, ToTarget, "PDU_IO_ENTITY_STATUS_DATA: pItem\t= <NULL>"_fmt);
    DecodeLine(
        context, ToTarget,
        "PDU_IO_ENTITY_STATUS_DATA: EntityType=%u %s, TcpClientsMax=%u, TcpClients=%u, MaxDataSize=%u"_fmt,
        item->EntityType,
        item->EntityType == 0   ? "(Gateway)"
        : item->EntityType == 1 ? "(Node)"
                                : "<UNKNOWN>",
        item->TcpClientsMax, item->TcpClients, item->MaxDataSize);
}

} // namespace marvane
