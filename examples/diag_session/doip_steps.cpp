// Steps over Ethernet: finding the vehicle and its gateway, and one request.
#include "examples/diag_session/io_control.h"

namespace diag {

namespace {

void FindVehicle(Session& session)
{
    UNUM8 ipv4[] = {192, 168, 0, 1};
    UNUM8 ipv6[] = {0xFE, 0x80, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x01};
    PDU_IP_ADDR_INFO addresses[] = {{.IpVersion = 4, .pAddress = ipv4}, {.IpVersion = 6, .pAddress = ipv6}};
    CHAR8 vin[] = "WSIMVC1E2F3000042";
    PDU_IO_VEHICLE_ID_REQUEST_EX request = {.Request = {.PreselectionMode = 1,
                                                        .PreselectionValue = vin,
                                                        .CombinationMode = 1,
                                                        .VehicleDiscoveryTime = 500,
                                                        .NumDestinationAddresses = 2,
                                                        .pDestinationAddresses = addresses},
                                            .Ver = 3};
    Command(session, "PDU_IOCTL_VEHICLE_ID_REQUEST", PDU_HANDLE_UNDEF, PDU_IT_IO_VEHICLE_ID_REQUEST,
            &request.Request);
    Command(session, "PDU_IOCTL_VEHICLE_ID_REQUEST", PDU_HANDLE_UNDEF, PDU_IT_IO_VEHICLE_ID_REQUEST_EX,
            &request);
    session.Say("Vehicle %s asked for at 2 addresses", vin);
}

void ShowGateway(Session& session, UNUM32 hCLL)
{
    PDU_DATA_ITEM* const address = Output(session, "PDU_IOCTL_GET_ENTITY_ADDRESS", hCLL);
    session.Say("  logical address of its gateway: %04X",
                static_cast<unsigned>(
                    static_cast<const PDU_IO_ENTITY_ADDRESS_DATA*>(address->pData)->LogicalAddress));
    session.Destroy(address);
    PDU_DATA_ITEM* const status = Output(session, "PDU_IOCTL_GET_ENTITY_STATUS", hCLL);
    const auto& entity = *static_cast<const PDU_IO_ENTITY_STATUS_DATA*>(status->pData);
    session.Say("  testers connected: %u of at most %u", static_cast<unsigned>(entity.TcpClients),
                static_cast<unsigned>(entity.TcpClientsMax));
    session.Destroy(status);
}

} // namespace

void UseDoIP(Session& session)
{
    FindVehicle(session);
    PDU_IO_ETH_SWITCH_STATE_DATA activation = {.State = 1, .PinNumber = 8};
    Command(session, "PDU_IOCTL_SET_ETH_SWITCH_STATE", PDU_HANDLE_UNDEF, PDU_IT_IO_ETH_SWITCH_STATE,
            &activation);
    session.Say("Ethernet on pin %u: switched on", static_cast<unsigned>(activation.PinNumber));

    const UNUM32 hCLL =
        OpenLink(session, "IEEE_802_3", "ISO_14229_5_on_ISO_13400_2",
                 {{3, session.IdOf(PDU_OBJT_PINTYPE, "RX")}, {11, session.IdOf(PDU_OBJT_PINTYPE, "TX")}});
    ShowGateway(session, hCLL);
    session.Run(hCLL, PDU_COPT_STARTCOMM, {});
    const Bytes answer = session.Ask(hCLL, {0x22, 0xF1, 0x90}, {.Matched = false});
    session.Say("VIN over DoIP: %s", std::string(answer.begin() + 3, answer.end()).c_str());
    session.Run(hCLL, PDU_COPT_STOPCOMM, {});
    CloseLink(session, hCLL);

    activation.State = 0;
    Command(session, "PDU_IOCTL_SET_ETH_SWITCH_STATE", PDU_HANDLE_UNDEF, PDU_IT_IO_ETH_SWITCH_STATE,
            &activation);
    session.Say("Ethernet on pin %u: switched off", static_cast<unsigned>(activation.PinNumber));
}

} // namespace diag
