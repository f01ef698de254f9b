// Steps about the module: what it is, and which resources it has.
#include "examples/diag_session/session.h"

namespace diag {

namespace {

void FindModule(Session& session)
{
    PDU_MODULE_ITEM* modules = nullptr;
    session.Expect("PDUGetModuleIds", session.Pdu.PDUGetModuleIds(&modules));
    if (!modules)
        throw Failure("PDUGetModuleIds returned no list");
    session.Say("Modules found: %u", static_cast<unsigned>(modules->NumEntries));
    if (modules->NumEntries == 0)
        throw Failure("there is no module to work with");
    session.Module = modules->pModuleData[0].hMod;
    session.Say("  %s, %s", modules->pModuleData[0].pVendorModuleName,
                modules->pModuleData[0].pVendorAdditionalInfo);
    session.Destroy(modules);
}

} // namespace

void IdentifyModule(Session& session)
{
    FindModule(session);
    session.Expect("PDUModuleConnect", session.Pdu.PDUModuleConnect(session.Module));
    session.DrainModuleEvents();
    PDU_VERSION_DATA version = {};
    session.Expect("PDUGetVersion", session.Pdu.PDUGetVersion(session.Module, &version));
    session.Say("Connected: %s, serial number %u, software %s by %s", version.HwName,
                static_cast<unsigned>(version.HwSerialNumber), version.PDUApiSwName, version.VendorName);
    UNUM32 before = 0, after = 0;
    session.Expect("PDUGetTimestamp", session.Pdu.PDUGetTimestamp(session.Module, &before));
    session.Say("The module is %s", session.StatusOf(PDU_HANDLE_UNDEF));
    session.Expect("PDUGetTimestamp", session.Pdu.PDUGetTimestamp(session.Module, &after));
    session.Say("  its clock goes %s", after >= before ? "forward" : "backward");
}

namespace {

/// The first resource with the wanted bus, protocol and pins; with null the first of all, whose number is
/// printed.
UNUM32 FindResource(Session& session, PDU_RSC_DATA* wanted)
{
    PDU_RSC_ID_ITEM* resources = nullptr;
    session.Expect("PDUGetResourceIds", session.Pdu.PDUGetResourceIds(session.Module, wanted, &resources));
    const PDU_RSC_ID_ITEM_DATA& found = resources->pResourceIdDataArray[0];
    const UNUM32 first = found.pResourceIdArray[0];
    if (!wanted)
        session.Say("Resources of the module: %u", static_cast<unsigned>(found.NumIds));
    session.Destroy(resources);
    return first;
}

void ShowConflicts(Session& session, UNUM32 resource)
{
    PDU_MODULE_DATA module = {.ModuleTypeId = 1,
                              .hMod = session.Module,
                              .pVendorModuleName = nullptr,
                              .pVendorAdditionalInfo = nullptr,
                              .ModuleStatus = PDU_MODST_READY};
    PDU_MODULE_ITEM modules = {.ItemType = PDU_IT_MODULE_ID, .NumEntries = 1, .pModuleData = &module};
    PDU_RSC_CONFLICT_ITEM* conflicts = nullptr;
    session.Expect("PDUGetConflictingResources",
                   session.Pdu.PDUGetConflictingResources(resource, &modules, &conflicts));
    session.Say("  resources in conflict with it: %u", static_cast<unsigned>(conflicts->NumEntries));
    session.Destroy(conflicts);
}

} // namespace

void ShowResources(Session& session)
{
    session.IdOf(PDU_OBJT_RESOURCE, "ISO15765_CAN_6_14");
    session.IdOf(PDU_OBJT_RESOURCE, "DOIP_3_8_11_12_13");
    FindResource(session, nullptr);
    PDU_PIN_DATA pins[] = {{.DLCPinNumber = 6, .DLCPinTypeId = session.IdOf(PDU_OBJT_PINTYPE, "HI")},
                           {.DLCPinNumber = 14, .DLCPinTypeId = session.IdOf(PDU_OBJT_PINTYPE, "LOW")}};
    PDU_RSC_DATA wanted = {.BusTypeId = session.IdOf(PDU_OBJT_BUSTYPE, "ISO_11898_2_DWCAN"),
                           .ProtocolId = session.IdOf(PDU_OBJT_PROTOCOL, "ISO_15765_3_on_ISO_15765_2"),
                           .NumPinData = 2,
                           .pDLCPinData = pins};
    const UNUM32 resource = FindResource(session, &wanted);
    session.Say("Resource for UDS on CAN, pins 6 and 14: %u", static_cast<unsigned>(resource));
    ShowResourceStatus(session, resource);
    ShowConflicts(session, resource);
}

void ShowResourceStatus(Session& session, UNUM32 resource)
{
    constexpr UNUM32 inUse = 1, parametersLocked = 8;
    PDU_RSC_STATUS_DATA entry = {.hMod = session.Module, .ResourceId = resource, .ResourceStatus = 0};
    PDU_RSC_STATUS_ITEM state = {
        .ItemType = PDU_IT_RSC_STATUS, .NumEntries = 1, .pResourceStatusData = &entry};
    session.Expect("PDUGetResourceStatus", session.Pdu.PDUGetResourceStatus(&state));
    session.Say("  it is %s%s", (entry.ResourceStatus & inUse) != 0 ? "in use" : "free",
                (entry.ResourceStatus & parametersLocked) != 0 ? ", its parameters are locked" : "");
}

} // namespace diag
