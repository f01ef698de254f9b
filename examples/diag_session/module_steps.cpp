// The steps that concern the module: what it is, what it can do, and commands to it.
#include "examples/diag_session/session.h"

namespace diag {

void IdentifyModule(Session& session)
{
    PDU_MODULE_ITEM* modules = nullptr;
    session.Expect("PDUGetModuleIds", session.Pdu.GetModuleIds(&modules));
    session.Say("Modules found: %u", static_cast<unsigned>(modules->NumEntries));
    if (modules->NumEntries == 0)
        throw Failure("there is no module to work with");
    session.Module = modules->pModuleData[0].hMod;
    session.Say("  %s, %s", modules->pModuleData[0].pVendorModuleName, modules->pModuleData[0].pVendorAdditionalInfo);
    session.Destroy(modules);

    session.Expect("PDUModuleConnect", session.Pdu.ModuleConnect(session.Module));
    session.DrainModuleEvents();
    PDU_VERSION_DATA version = {};
    session.Expect("PDUGetVersion", session.Pdu.GetVersion(session.Module, &version));
    session.Say("Connected: %s, serial number %u, software %s by %s", version.HwName,
                static_cast<unsigned>(version.HwSerialNumber), version.PDUApiSwName, version.VendorName);
    UNUM32 time = 0;
    session.Expect("PDUGetTimestamp", session.Pdu.GetTimestamp(session.Module, &time));
    T_PDU_STATUS status = 0;
    session.Expect("PDUGetStatus", session.Pdu.GetStatus(session.Module, PDU_HANDLE_UNDEF, PDU_HANDLE_UNDEF, &status,
                                                         &time, nullptr));
    session.Say("The module is %s", status == PDU_MODST_READY ? "ready" : "not ready");
}

void ShowResources(Session& session)
{
    PDU_PIN_DATA pins[] = {{6, session.IdOf(PDU_OBJT_PINTYPE, "HI")}, {14, session.IdOf(PDU_OBJT_PINTYPE, "LOW")}};
    PDU_RSC_DATA wanted = {session.IdOf(PDU_OBJT_BUSTYPE, "ISO_11898_2_DWCAN"),
                           session.IdOf(PDU_OBJT_PROTOCOL, "ISO_15765_3_on_ISO_15765_2"), 2, pins};
    session.IdOf(PDU_OBJT_RESOURCE, "ISO15765_CAN_6_14");
    PDU_RSC_ID_ITEM* resources = nullptr;
    session.Expect("PDUGetResourceIds", session.Pdu.GetResourceIds(session.Module, &wanted, &resources));
    const UNUM32 resource = resources->pResourceIdDataArray[0].pResourceIdArray[0];
    session.Say("Resource for UDS on CAN, pins 6 and 14: %u", static_cast<unsigned>(resource));
    session.Destroy(resources);

    PDU_RSC_STATUS_DATA entry = {session.Module, resource, 0};
    PDU_RSC_STATUS_ITEM state = {PDU_IT_RSC_STATUS, 1, &entry};
    session.Expect("PDUGetResourceStatus", session.Pdu.GetResourceStatus(&state));
    session.Say("  it is %s", (entry.ResourceStatus & 1) != 0 ? "in use" : "free");

    PDU_MODULE_DATA module = {1, session.Module, nullptr, nullptr, PDU_MODST_READY};
    PDU_MODULE_ITEM modules = {PDU_IT_MODULE_ID, 1, &module};
    PDU_RSC_CONFLICT_ITEM* conflicts = nullptr;
    session.Expect("PDUGetConflictingResources",
                   session.Pdu.GetConflictingResources(resource, &modules, &conflicts));
    session.Say("  resources in conflict with it: %u", static_cast<unsigned>(conflicts->NumEntries));
    session.Destroy(conflicts);
}

namespace {

/// A command with an output of one number.
UNUM32 ReadNumber(Session& session, const char* command, UNUM32 hCLL = PDU_HANDLE_UNDEF)
{
    PDU_DATA_ITEM* output = nullptr;
    session.Expect(command, session.Pdu.IoCtl(session.Module, hCLL, session.IdOf(PDU_OBJT_IO_CTRL, command), nullptr,
                                              &output));
    const UNUM32 number = *static_cast<const UNUM32*>(output->pData);
    session.Destroy(output);
    return number;
}

/// A command with an input and no output.
void Command(Session& session, const char* command, UNUM32 hCLL, T_PDU_IT type, void* data)
{
    PDU_DATA_ITEM input = {type, data};
    session.Expect(command, session.Pdu.IoCtl(session.Module, hCLL, session.IdOf(PDU_OBJT_IO_CTRL, command),
                                              data ? &input : nullptr, nullptr));
}

} // namespace

void UseModuleCommands(Session& session, UNUM32 hCLL)
{
    session.Say("Battery voltage: %u mV", static_cast<unsigned>(ReadNumber(session, "PDU_IOCTL_READ_VBATT")));
    PDU_IO_PROG_VOLTAGE_DATA voltage = {18000, 15};
    Command(session, "PDU_IOCTL_SET_PROG_VOLTAGE", PDU_HANDLE_UNDEF, PDU_IT_IO_PROG_VOLTAGE, &voltage);
    session.Say("Programming voltage on pin 15: %u mV",
                static_cast<unsigned>(ReadNumber(session, "PDU_IOCTL_READ_PROG_VOLTAGE")));

    PDU_IO_FILTER_DATA filters[] = {
        {PDU_FLT_PASS, 1, 4, {0xFF, 0xFF, 0xFF, 0xFF}, {0x00, 0x00, 0x07, 0xE8}},
        {PDU_FLT_BLOCK_UUDT, 2, 4, {0xFF, 0xFF, 0xFF, 0xF0}, {0x00, 0x00, 0x06, 0x00}},
    };
    PDU_IO_FILTER_LIST list = {2, filters};
    Command(session, "PDU_IOCTL_START_MSG_FILTER", hCLL, PDU_IT_IO_FILTER, &list);
    UNUM32 filter = 1;
    Command(session, "PDU_IOCTL_STOP_MSG_FILTER", hCLL, PDU_IT_IO_UNUM32, &filter);
    Command(session, "PDU_IOCTL_CLEAR_MSG_FILTER", hCLL, 0, nullptr);
    PDU_IO_EVENT_QUEUE_PROPERTY_DATA queue = {200, 0};
    Command(session, "PDU_IOCTL_SET_EVENT_QUEUE_PROPERTIES", hCLL, PDU_IT_IO_EVENT_QUEUE_PROPERTY, &queue);

    PDU_DATA_ITEM* cable = nullptr;
    session.Expect("PDU_IOCTL_GET_CABLE_ID",
                   session.Pdu.IoCtl(session.Module, PDU_HANDLE_UNDEF,
                                     session.IdOf(PDU_OBJT_IO_CTRL, "PDU_IOCTL_GET_CABLE_ID"), nullptr, &cable));
    session.Destroy(cable);
    session.Say("Filters, event queue and cable: done");
}

void UseDoIP(Session& session)
{
    UNUM8 ipv4[] = {192, 168, 0, 1};
    UNUM8 ipv6[] = {0xFE, 0x80, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x01};
    PDU_IP_ADDR_INFO addresses[] = {{4, ipv4}, {6, ipv6}};
    CHAR8 vin[] = "WSIMVC1E2F3000042";
    PDU_IO_VEHICLE_ID_REQUEST_EX request = {{1, vin, 1, 500, 2, addresses}, 3};
    Command(session, "PDU_IOCTL_VEHICLE_ID_REQUEST", PDU_HANDLE_UNDEF, PDU_IT_IO_VEHICLE_ID_REQUEST, &request.Request);
    Command(session, "PDU_IOCTL_VEHICLE_ID_REQUEST", PDU_HANDLE_UNDEF, PDU_IT_IO_VEHICLE_ID_REQUEST_EX, &request);
    PDU_IO_ETH_SWITCH_STATE_DATA activation = {1, 8};
    Command(session, "PDU_IOCTL_SET_ETH_SWITCH_STATE", PDU_HANDLE_UNDEF, PDU_IT_IO_ETH_SWITCH_STATE, &activation);

    const UNUM32 hCLL = OpenLink(session, "IEEE_802_3", "ISO_14229_5_on_ISO_13400_2",
                                 {{3, session.IdOf(PDU_OBJT_PINTYPE, "RX")}, {11, session.IdOf(PDU_OBJT_PINTYPE, "TX")}});
    for (const char* command : {"PDU_IOCTL_GET_ENTITY_ADDRESS", "PDU_IOCTL_GET_ENTITY_STATUS"})
    {
        PDU_DATA_ITEM* output = nullptr;
        session.Expect(command, session.Pdu.IoCtl(session.Module, hCLL, session.IdOf(PDU_OBJT_IO_CTRL, command), nullptr,
                                                  &output));
        session.Destroy(output);
    }
    session.Run(hCLL, PDU_COPT_STARTCOMM, {});
    const Bytes answer = session.Ask(hCLL, {0x22, 0xF1, 0x90}, {.Matched = false});
    session.Say("VIN over DoIP: %s", std::string(answer.begin() + 3, answer.end()).c_str());
    session.Run(hCLL, PDU_COPT_STOPCOMM, {});
    CloseLink(session, hCLL);
}

} // namespace diag
