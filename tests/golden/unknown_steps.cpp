#include <array>

#include "tests/golden/error_steps.h"

namespace marvane::testing {

namespace {

void AskUnknownStates(Stage& stage)
{
    auto& number = stage.log.Keep("number", UNUM32());
    stage.script.Give<UNUM32>("PDUGetStatus", 3, 0x8064);
    stage.api.PDUGetStatus(1, 2, 3, &number, nullptr, nullptr);
    // The code of an event error is not the status of a call.
    stage.script.Give<UNUM32>("PDUGetLastError", 2, PDU_ERR_EVT_RX_TIMEOUT);
    stage.api.PDUGetLastError(1, 2, &number, nullptr, nullptr, nullptr);
    stage.script.Give<UNUM32>("PDUGetObjectId", 2, 9);
    stage.api.PDUGetObjectId(0x8027, stage.log.KeepText("Other"), &number);
    stage.script.On("PDUStartComPrimitive", nullptr);
    stage.api.PDUStartComPrimitive(1, 2, 0x8007, 0, nullptr, nullptr, nullptr, nullptr);
}

void TakeUnknownEvents(Stage& stage)
{
    auto& status = stage.log.Keep<T_PDU_STATUS>("unknown status", 0x8015);
    Take(stage, "unknown status event", {PDU_IT_STATUS, 3, nullptr, 1, &status});
    auto& error = stage.log.Keep<PDU_ERROR_DATA>("unknown error", {0x10A, 1});
    Take(stage, "unknown error event", {PDU_IT_ERROR, 3, nullptr, 2, &error});
    auto& information = stage.log.Keep<PDU_INFO_DATA>("unknown information", {0x8073, 1});
    Take(stage, "unknown information event", {PDU_IT_INFO, 3, nullptr, 3, &information});
    Take(stage, "unknown event", {0x1304, 3, nullptr, 4, &status});
    Take(stage, "unknown event without data", {0x1305, PDU_HANDLE_UNDEF, nullptr, 0, nullptr});
}

void SendUnknownItems(Stage& stage)
{
    Send<UNUM32>(stage, 1, 0x1234, "unknown", 0);
    auto& address = stage.log.Keep<std::array<UNUM8, 4>>("address", {1, 2, 3, 4});
    auto& addresses = stage.log.Keep<std::array<PDU_IP_ADDR_INFO, 4>>(
        "unknown addresses", {{{5, address.data()}, {4, nullptr}, {6, nullptr}, {5, nullptr}}});
    Send<PDU_IO_VEHICLE_ID_REQUEST_DATA>(stage, 2, PDU_IT_IO_VEHICLE_ID_REQUEST, "unknown request",
                                         {0, nullptr, 9, 0, 4, addresses.data()});
    Send<PDU_IO_ETH_SWITCH_STATE_DATA>(stage, 3, PDU_IT_IO_ETH_SWITCH_STATE, "unknown switch", {2, 8});
    Fetch<PDU_IO_ENTITY_STATUS_DATA>(stage, 4, PDU_IT_IO_ENTITY_STATUS, "unknown entity", {2, 0, 0, 0});
    auto& filter = stage.log.Keep<PDU_IO_FILTER_DATA>("unknown filter", {3, 1, 0, {}, {}});
    Send<PDU_IO_FILTER_LIST>(stage, 5, PDU_IT_IO_FILTER, "unknown filter list", {1, &filter});
    Send<PDU_EVENT_ITEM>(stage, 6, PDU_IT_RESULT, "unknown inner event", {0x1306, 3, nullptr, 5, &filter});
}

void SetParameter(Stage& stage, const std::string& name, T_PDU_PT type, T_PDU_PC parameterClass, void* value)
{
    auto& item = stage.log.Keep<PDU_PARAM_ITEM>(name, {PDU_IT_PARAM, 3, type, parameterClass, value});
    stage.api.PDUSetComParam(1, 2, &item);
}

} // namespace

void UseUnknownValues(Stage& stage)
{
    AskUnknownStates(stage);
    TakeUnknownEvents(stage);
    SendUnknownItems(stage);
}

void UseUnknownParameters(Stage& stage)
{
    auto& number = stage.log.Keep<UNUM32>("parameter value", 1);
    SetParameter(stage, "parameter of unknown type", 0x10A, 8, &number);
    SetParameter(stage, "parameter without value", PDU_PT_UNUM32, PDU_PC_TIMING, nullptr);
    auto& timing =
        stage.log.Keep<PDU_PARAM_STRUCT_ACCESS_TIMING>("timing of unknown set", {1, 2, 3, 4, 5, 0});
    auto& known = stage.log.Keep<PDU_PARAM_STRUCTFIELD_DATA>("field of unknown set",
                                                             {PDU_CPST_ACCESS_TIMING, 1, 1, &timing});
    SetParameter(stage, "parameter of unknown set", PDU_PT_STRUCTFIELD, PDU_PC_TIMING, &known);
    auto& unknown =
        stage.log.Keep<PDU_PARAM_STRUCTFIELD_DATA>("field of unknown structs", {3, 1, 1, &timing});
    SetParameter(stage, "parameter of unknown structs", PDU_PT_STRUCTFIELD, PDU_PC_TIMING, &unknown);
    auto& empty = stage.log.Keep<PDU_PARAM_STRUCTFIELD_DATA>("field without structs",
                                                             {PDU_CPST_SESSION_TIMING, 1, 1, nullptr});
    SetParameter(stage, "parameter without structs", PDU_PT_STRUCTFIELD, PDU_PC_TIMING, &empty);
    auto& emptyAccess = stage.log.Keep<PDU_PARAM_STRUCTFIELD_DATA>("field without timing",
                                                                   {PDU_CPST_ACCESS_TIMING, 1, 1, nullptr});
    SetParameter(stage, "parameter without timing", PDU_PT_STRUCTFIELD, PDU_PC_TIMING, &emptyAccess);
    auto& bytes = stage.log.Keep<PDU_PARAM_BYTEFIELD_DATA>("field without bytes", {4, 5, nullptr});
    SetParameter(stage, "parameter without bytes", PDU_PT_BYTEFIELD, PDU_PC_COM, &bytes);
    auto& longs = stage.log.Keep<PDU_PARAM_LONGFIELD_DATA>("field without longs", {4, 0, nullptr});
    SetParameter(stage, "parameter without longs", PDU_PT_LONGFIELD, PDU_PC_COM, &longs);
}

} // namespace marvane::testing
