// A typical diagnostic session with everything decoded: every call at least once, every kind of record.
#include <array>
#include <cstdio>

#include <gtest/gtest.h>

#include "tests/golden/diagnostic_steps.h"

namespace marvane::testing {
namespace {

void PDU_CALL OnAnyEvent(T_PDU_EVT_DATA, UNUM32, UNUM32, void*, void*) {}

void Begin(Stage& stage)
{
    auto& apiTag = stage.log.Keep("api tag", int());
    stage.log.NameFunction(OnAnyEvent, "callback of the api");
    stage.api.PDUConstruct(stage.log.KeepText("Verbose=1"), &apiTag);
    stage.api.PDURegisterEventCallback(PDU_HANDLE_UNDEF, PDU_HANDLE_UNDEF, OnAnyEvent);

    auto& modules = stage.log.Keep<std::array<PDU_MODULE_DATA, 2>>(
        "modules",
        {{{1, 1, stage.log.KeepText("Bench VCI"), stage.log.KeepText("SerialNumber='7'"), PDU_MODST_AVAIL},
          {1, 2, stage.log.KeepText("Spare VCI"), nullptr, PDU_MODST_NOT_AVAIL}}});
    auto& list = stage.log.Keep<PDU_MODULE_ITEM>("module list", {PDU_IT_MODULE_ID, 2, modules.data()});
    auto& found = stage.log.Keep<PDU_MODULE_ITEM*>("found modules", nullptr);
    stage.script.Give("PDUGetModuleIds", 0, &list);
    stage.api.PDUGetModuleIds(&found);
    stage.api.PDUDestroyItem(found);

    // The module signals its event while the call is under way, on the same thread.
    stage.script.On("PDUModuleConnect", [&](const FakeCall&) {
        stage.script.Signal(1, PDU_HANDLE_UNDEF, nullptr, &apiTag);
        return PDU_STATUS_NOERROR;
    });
    stage.api.PDUModuleConnect(1);
}

void TakeInformation(Stage& stage)
{
    auto& data = stage.log.Keep<PDU_INFO_DATA>("information", {PDU_INFO_MODULE_LIST_CHG, 3});
    auto& event = stage.log.Keep<PDU_EVENT_ITEM>("information event",
                                                 {PDU_IT_INFO, PDU_HANDLE_UNDEF, nullptr, 1000, &data});
    auto& taken = stage.log.Keep<PDU_EVENT_ITEM*>("taken information", nullptr);
    stage.script.Give("PDUGetEventItem", 2, &event);
    stage.api.PDUGetEventItem(1, PDU_HANDLE_UNDEF, &taken);
    stage.api.PDUDestroyItem(taken);
}

PDU_VERSION_DATA Version()
{
    PDU_VERSION_DATA version = {.MVCI_Part1StandardVersion = 0x02020000,
                                .MVCI_Part2StandardVersion = 0x02010300,
                                .HwSerialNumber = 4711,
                                .HwName = "Bench hardware",
                                .HwVersion = 0x01020304,
                                .HwDate = 0x32010C07,
                                .HwInterface = 2,
                                .FwName = "Firmware",
                                .FwVersion = {},
                                .FwDate = {},
                                .VendorName = {},
                                .PDUApiSwName = {},
                                .PDUApiSwVersion = {},
                                .PDUApiSwDate = {}};
    version.FwVersion = 0xFF000A00;
    version.FwDate = 0x37091E28;
    std::snprintf(version.VendorName, sizeof version.VendorName, "Bench");
    std::snprintf(version.PDUApiSwName, sizeof version.PDUApiSwName, "Bench D-PDU API");
    version.PDUApiSwVersion = 0x00010000;
    version.PDUApiSwDate = 0x00000000;
    return version;
}

void AskTheModule(Stage& stage)
{
    stage.script.Give("PDUGetVersion", 1, Version());
    stage.api.PDUGetVersion(1, &stage.log.Keep<PDU_VERSION_DATA>("version", {}));
    auto& status = stage.log.Keep("status", T_PDU_STATUS());
    auto& time = stage.log.Keep("time", UNUM32());
    auto& extra = stage.log.Keep("extra", UNUM32());
    stage.script.Give<UNUM32>("PDUGetTimestamp", 1, 123456);
    stage.api.PDUGetTimestamp(1, &time);
    stage.script.Give<T_PDU_STATUS>("PDUGetStatus", 3, PDU_MODST_READY);
    stage.api.PDUGetStatus(1, PDU_HANDLE_UNDEF, PDU_HANDLE_UNDEF, &status, &time, &extra);
    stage.api.PDUGetStatus(1, PDU_HANDLE_UNDEF, PDU_HANDLE_UNDEF, &status, nullptr, nullptr);
}

void End(Stage& stage)
{
    auto& error = stage.log.Keep("error", T_PDU_ERR_EVT());
    auto& primitive = stage.log.Keep("failed primitive", UNUM32());
    auto& time = stage.log.Keep("error time", UNUM32());
    auto& extra = stage.log.Keep("extra error", UNUM32());
    stage.script.On("PDUGetLastError", [](const FakeCall& call) {
        Script::Write<T_PDU_ERR_EVT>(call, 2, PDU_ERR_EVT_NOERROR);
        Script::Write<UNUM32>(call, 3, PDU_HANDLE_UNDEF);
        Script::Write<UNUM32>(call, 4, 77);
        Script::Write<UNUM32>(call, 5, 0);
        return PDU_STATUS_NOERROR;
    });
    stage.api.PDUGetLastError(1, 2, &error, &primitive, &time, &extra);
    stage.api.PDUDisconnect(1, 2);
    stage.api.PDURegisterEventCallback(1, 2, nullptr);
    stage.api.PDUDestroyComLogicalLink(1, 2);
    stage.api.PDUModuleDisconnect(1);
    stage.api.PDUDestruct();
}

TEST(GoldenSession, ADiagnosticSessionWithEverythingDecoded)
{
    Stage stage({{"LogFnDecodeArgs", "2"}, {"LogFnDecodeRsps", "2"}, {"LogCbCalls", "1"}});
    Begin(stage);
    TakeInformation(stage);
    AskTheModule(stage);
    LearnNames(stage);
    AskForResources(stage);
    OpenLink(stage);
    UseComParams(stage);
    UseResponseTable(stage);
    Talk(stage);
    UseCommands(stage);
    UseItemsOfOtherKinds(stage);
    End(stage);
    stage.log.ExpectEqual("diagnostic_session");
}

} // namespace
} // namespace marvane::testing
