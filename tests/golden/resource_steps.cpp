#include <array>

#include "tests/golden/diagnostic_steps.h"

namespace marvane::testing {

namespace {

void Learn(Stage& stage, UNUM32& place, T_PDU_OBJT type, const char* name, UNUM32 id)
{
    stage.script.Give("PDUGetObjectId", 2, id);
    stage.api.PDUGetObjectId(type, stage.log.KeepText(name), &place);
}

PDU_RSC_DATA& WantedResource(Stage& stage, const std::string& name)
{
    auto& pins =
        stage.log.Keep<std::array<PDU_PIN_DATA, 2>>(name + ": pins", {{{6, PinHigh}, {14, PinHigh + 1}}});
    return stage.log.Keep<PDU_RSC_DATA>(name, {CanBus, UdsOnCan, 2, pins.data()});
}

void AskForIds(Stage& stage)
{
    auto& ids = stage.log.Keep<std::array<UNUM32, 2>>("resource ids", {CanResource, 401});
    auto& modules = stage.log.Keep<std::array<PDU_RSC_ID_ITEM_DATA, 2>>(
        "resources of modules", {{{1, 2, ids.data()}, {2, 0, nullptr}}});
    auto& item = stage.log.Keep<PDU_RSC_ID_ITEM>("resource list", {PDU_IT_RSC_ID, 2, modules.data()});
    auto& found = stage.log.Keep<PDU_RSC_ID_ITEM*>("found resources", nullptr);
    stage.script.Give("PDUGetResourceIds", 2, &item);
    stage.api.PDUGetResourceIds(1, &WantedResource(stage, "wanted resource"), &found);
    stage.api.PDUDestroyItem(found);
}

void AskForStatus(Stage& stage)
{
    auto& entries = stage.log.Keep<std::array<PDU_RSC_STATUS_DATA, 2>>(
        "status of resources", {{{1, CanResource, 0}, {PDU_HANDLE_UNDEF, 401, 0}}});
    auto& item = stage.log.Keep<PDU_RSC_STATUS_ITEM>("status list", {PDU_IT_RSC_STATUS, 2, entries.data()});
    stage.script.On("PDUGetResourceStatus", [&](const FakeCall&) {
        entries[0].ResourceStatus = 2;
        entries[1].ResourceStatus = 0x0D;
        return PDU_STATUS_NOERROR;
    });
    stage.api.PDUGetResourceStatus(&item);
}

void AskForConflicts(Stage& stage)
{
    auto& modules = stage.log.Keep<std::array<PDU_MODULE_DATA, 1>>(
        "asked modules", {{{1, 1, stage.log.KeepText("Bench VCI"), nullptr, PDU_MODST_READY}}});
    auto& asked = stage.log.Keep<PDU_MODULE_ITEM>("asked module list", {PDU_IT_MODULE_ID, 1, modules.data()});
    auto& entries =
        stage.log.Keep<std::array<PDU_RSC_CONFLICT_DATA, 2>>("conflict 0", {{{1, CanResource}, {2, 402}}});
    stage.log.Name(&entries[1], "conflict 1");
    auto& item =
        stage.log.Keep<PDU_RSC_CONFLICT_ITEM>("conflict list", {PDU_IT_RSC_CONFLICT, 2, entries.data()});
    auto& found = stage.log.Keep<PDU_RSC_CONFLICT_ITEM*>("found conflicts", nullptr);
    stage.script.Give("PDUGetConflictingResources", 2, &item);
    stage.api.PDUGetConflictingResources(CanResource, &asked, &found);
    stage.api.PDUDestroyItem(found);
}

void PDU_CALL OnLinkEvent(T_PDU_EVT_DATA, UNUM32, UNUM32, void*, void*) {}

} // namespace

void LearnNames(Stage& stage)
{
    auto& id = stage.log.Keep("object id", UNUM32());
    Learn(stage, id, PDU_OBJT_PROTOCOL, "UDS_on_CAN", UdsOnCan);
    Learn(stage, id, PDU_OBJT_BUSTYPE, "CAN", CanBus);
    Learn(stage, id, PDU_OBJT_PINTYPE, "HI", PinHigh);
    Learn(stage, id, PDU_OBJT_RESOURCE, "CAN_6_14", CanResource);
    Learn(stage, id, PDU_OBJT_IO_CTRL, "PDU_IOCTL_READ_VBATT", ReadBattery);
    Learn(stage, id, PDU_OBJT_COMPARAM, "CP_RepeatReqCountApp", RepeatCount);
    Learn(stage, id, PDU_OBJT_COMPARAM, "CP_CanRespUSDTId", ResponseId);
}

void AskForResources(Stage& stage)
{
    AskForIds(stage);
    AskForStatus(stage);
    AskForConflicts(stage);
}

void OpenLink(Stage& stage)
{
    auto& flagBytes = stage.log.Keep<std::array<UNUM8, 2>>("create flag bytes", {0xC1, 0x00});
    auto& flags = stage.log.Keep<PDU_FLAG_DATA>("create flags", {2, flagBytes.data()});
    auto& link = stage.log.Keep("link", UNUM32());
    auto& tag = stage.log.Keep("link tag", int());
    stage.log.NameFunction(OnLinkEvent, "callback of the link");
    stage.script.Give<UNUM32>("PDUCreateComLogicalLink", 4, 2);
    stage.api.PDUCreateComLogicalLink(1, &WantedResource(stage, "resource of the link"), CanResource, &tag,
                                      &link, &flags);
    stage.api.PDURegisterEventCallback(1, 2, OnLinkEvent);
    stage.api.PDUConnect(1, 2);
    stage.api.PDULockResource(1, 2, 3);
    stage.api.PDUUnlockResource(1, 2, 3);
}

} // namespace marvane::testing
