#include <array>

#include "tests/golden/error_steps.h"

namespace marvane::testing {

namespace {

void SendControl(Stage& stage, const std::string& name, const PDU_COP_CTRL_DATA& data)
{
    auto& control = stage.log.Keep(name, data);
    stage.api.PDUStartComPrimitive(1, 2, PDU_COPT_SENDRECV, 0, nullptr, &control, nullptr, nullptr);
}

/// A null response list; a list of three whose second entry has null identifiers.
void ExpectWrongResponses(Stage& stage)
{
    SendControl(stage, "control without responses", {0, -2, -1, 0, {3, nullptr}, 3, nullptr});
    auto& responses = stage.log.Keep<std::array<PDU_EXP_RESP_DATA, 3>>(
        "responses", {{{0, 1, 2, nullptr, nullptr, 0, nullptr},
                       {1, 2, 0, nullptr, nullptr, 4, nullptr},
                       {1, 3, 0, nullptr, nullptr, 0, nullptr}}});
    SendControl(stage, "control without identifiers", {0, 0, 5, 0, {0, nullptr}, 3, responses.data()});
}

void LinkWithWrongLists(Stage& stage)
{
    auto& flags = stage.log.Keep<PDU_FLAG_DATA>("flags without bytes", {2, nullptr});
    auto& resource = stage.log.Keep<PDU_RSC_DATA>("resource without pins", {1, 2, 3, nullptr});
    stage.api.PDUCreateComLogicalLink(1, &resource, 5, nullptr, nullptr, &flags);
}

void AskWithWrongLists(Stage& stage)
{
    auto& status =
        stage.log.Keep<PDU_RSC_STATUS_ITEM>("status without entries", {PDU_IT_RSC_STATUS, 1, nullptr});
    stage.api.PDUGetResourceStatus(&status);
    auto& resources =
        stage.log.Keep<PDU_RSC_ID_ITEM_DATA>("ids without array", {PDU_HANDLE_UNDEF, 2, nullptr});
    auto& list = stage.log.Keep<PDU_RSC_ID_ITEM>("list of wrong type", {0x9999, 1, &resources});
    auto& found = stage.log.Keep<PDU_RSC_ID_ITEM*>("found list", nullptr);
    stage.script.Give("PDUGetResourceIds", 2, &list);
    stage.api.PDUGetResourceIds(PDU_HANDLE_UNDEF, nullptr, &found);
}

void GetWrongModules(Stage& stage)
{
    auto& found = stage.log.Keep<PDU_MODULE_ITEM*>("found modules", nullptr);
    auto& none = stage.log.Keep<PDU_MODULE_ITEM>("list without modules", {PDU_IT_MODULE_ID, 2, nullptr});
    stage.script.Give("PDUGetModuleIds", 0, &none);
    stage.api.PDUGetModuleIds(&found);
    auto& module = stage.log.Keep<PDU_MODULE_DATA>("module", {0, PDU_HANDLE_UNDEF, nullptr, nullptr, 0x8064});
    auto& wrong = stage.log.Keep<PDU_MODULE_ITEM>("modules of wrong type", {PDU_IT_RSC_ID, 1, &module});
    stage.script.Give("PDUGetModuleIds", 0, &wrong);
    stage.api.PDUGetModuleIds(&found);
    wrong.NumEntries = 0;
    stage.api.PDUGetModuleIds(&found);
}

void SetWrongTables(Stage& stage)
{
    auto& none = stage.log.Keep<PDU_UNIQUE_RESP_ID_TABLE_ITEM>("table without entries",
                                                               {PDU_IT_UNIQUE_RESP_ID_TABLE, 2, nullptr});
    stage.api.PDUSetUniqueRespIdTable(1, 2, &none);
    none.NumEntries = 0;
    stage.api.PDUSetUniqueRespIdTable(1, 2, &none);
    auto& entry =
        stage.log.Keep<PDU_ECU_UNIQUE_RESP_DATA>("entry without parameters", {4294967293, 1, nullptr});
    auto& wrong =
        stage.log.Keep<PDU_UNIQUE_RESP_ID_TABLE_ITEM>("table of wrong type", {PDU_IT_PARAM, 1, &entry});
    stage.api.PDUSetUniqueRespIdTable(1, 2, &wrong);
}

} // namespace

void UseWrongLists(Stage& stage)
{
    stage.script.On("PDUCreateComLogicalLink", nullptr);
    ExpectWrongResponses(stage);
    LinkWithWrongLists(stage);
    AskWithWrongLists(stage);
    GetWrongModules(stage);
    SetWrongTables(stage);
}

void UseWrongItems(Stage& stage)
{
    stage.script.On("PDUIoCtl", nullptr);
    auto& bare = stage.log.Keep<PDU_DATA_ITEM>("item without data", {PDU_IT_IO_UNUM32, nullptr});
    stage.api.PDUIoCtl(1, 2, 1, &bare, nullptr);
    auto& address = stage.log.Keep<PDU_IP_ADDR_INFO>("unused address", {4, nullptr});
    Send<PDU_IO_VEHICLE_ID_REQUEST_DATA>(stage, 2, PDU_IT_IO_VEHICLE_ID_REQUEST, "request without count",
                                         {0, nullptr, 0, 0, 0, &address});
    Send<PDU_IO_VEHICLE_ID_REQUEST_DATA>(stage, 2, PDU_IT_IO_VEHICLE_ID_REQUEST, "request without addresses",
                                         {0, nullptr, 3, 0, 3, nullptr});
    Send<PDU_IO_FILTER_LIST>(stage, 3, PDU_IT_IO_FILTER, "filters without array", {1, nullptr});
    Send<PDU_IO_FILTER_LIST>(stage, 3, PDU_IT_IO_FILTER, "no filters", {0, nullptr});
    Send<PDU_IO_BYTEARRAY_DATA>(stage, 4, PDU_IT_IO_BYTEARRAY, "bytes without array", {3, nullptr});
    Send<PDU_RSC_ID_ITEM>(stage, 5, PDU_IT_RSC_ID, "ids without modules", {PDU_IT_RSC_ID, 1, nullptr});

    auto& info = stage.log.Keep<PDU_EXTRA_INFO>("info without bytes", {2, 3, nullptr, nullptr});
    auto& result = stage.log.Keep<PDU_RESULT_DATA>(
        "result without bytes", {{1, nullptr}, 0, 0, {4, nullptr}, 0, 0, &info, 7, nullptr});
    Take(stage, "event without bytes", {PDU_IT_RESULT, 0, nullptr, 0, &result});
}

} // namespace marvane::testing
