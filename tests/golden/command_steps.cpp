#include <array>

#include "tests/golden/diagnostic_steps.h"

namespace marvane::testing {

namespace {

void UseFilters(Stage& stage)
{
    auto& filters = stage.log.Keep<std::array<PDU_IO_FILTER_DATA, 2>>(
        "filters", {{{PDU_FLT_PASS, 1, 4, {0xFF, 0xFF, 0xFF, 0xFF}, {0x00, 0x00, 0x07, 0xE8}},
                     {PDU_FLT_BLOCK_UUDT,
                      2,
                      12,
                      {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xF0},
                      {0x41, 0x42, 0x43, 0x44, 0x45, 0x46, 0x47, 0x48, 0x49, 0x4A, 0x4B, 0x4C}}}});
    Send<PDU_IO_FILTER_LIST>(stage, 503, PDU_IT_IO_FILTER, "filter list", {2, filters.data()});
}

void FindVehicle(Stage& stage)
{
    auto& ipv4 = stage.log.Keep<std::array<UNUM8, 4>>("ipv4", {192, 168, 0, 1});
    auto& ipv6 =
        stage.log.Keep<std::array<UNUM8, 16>>("ipv6", {0xFE, 0x80, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1});
    auto& addresses =
        stage.log.Keep<std::array<PDU_IP_ADDR_INFO, 2>>("addresses", {{{4, ipv4.data()}, {6, ipv6.data()}}});
    const PDU_IO_VEHICLE_ID_REQUEST_DATA request = {.PreselectionMode = 1,
                                                    .PreselectionValue =
                                                        stage.log.KeepText("VIN0000000000042"),
                                                    .CombinationMode = 1,
                                                    .VehicleDiscoveryTime = 500,
                                                    .NumDestinationAddresses = 2,
                                                    .pDestinationAddresses = addresses.data()};
    Send(stage, 507, PDU_IT_IO_VEHICLE_ID_REQUEST, "vehicle request", request);
    Send<PDU_IO_VEHICLE_ID_REQUEST_EX>(stage, 507, PDU_IT_IO_VEHICLE_ID_REQUEST_EX, "long vehicle request",
                                       {{0, nullptr, 2, 0, 0, nullptr}, 3});
}

} // namespace

void UseCommands(Stage& stage)
{
    Fetch<UNUM32>(stage, ReadBattery, PDU_IT_IO_UNUM32, "voltage", 12640);
    Send<PDU_IO_PROG_VOLTAGE_DATA>(stage, 501, PDU_IT_IO_PROG_VOLTAGE, "programming voltage", {18000, 15});
    auto& bytes = stage.log.Keep<std::array<UNUM8, 3>>("cable bytes", {0x43, 0x00, 0xFF});
    Fetch<PDU_IO_BYTEARRAY_DATA>(stage, 512, PDU_IT_IO_BYTEARRAY, "cable", {3, bytes.data()});
    UseFilters(stage);
    Send<UNUM32>(stage, 504, PDU_IT_IO_UNUM32, "filter number", 1);
    Send<PDU_IO_EVENT_QUEUE_PROPERTY_DATA>(stage, 506, PDU_IT_IO_EVENT_QUEUE_PROPERTY, "queue property",
                                           {200, 1});
    FindVehicle(stage);
    Send<PDU_IO_ETH_SWITCH_STATE_DATA>(stage, 508, PDU_IT_IO_ETH_SWITCH_STATE, "switch on", {1, 8});
    Send<PDU_IO_ETH_SWITCH_STATE_DATA>(stage, 508, PDU_IT_IO_ETH_SWITCH_STATE, "switch off", {0, 8});
    Fetch<PDU_IO_ENTITY_ADDRESS_DATA>(stage, 509, PDU_IT_IO_ENTITY_ADDRESS, "entity address", {0x1010, 2000});
    Fetch<PDU_IO_ENTITY_STATUS_DATA>(stage, 510, PDU_IT_IO_ENTITY_STATUS, "entity status", {0, 8, 1, 4095});
    Fetch<PDU_IO_ENTITY_STATUS_DATA>(stage, 510, PDU_IT_IO_ENTITY_STATUS, "node status", {1, 4, 0, 64});
    // The command has neither input nor output.
    stage.script.On("PDUIoCtl", nullptr);
    stage.api.PDUIoCtl(1, 2, 505, nullptr, nullptr);
}

void UseItemsOfOtherKinds(Stage& stage)
{
    Send<PDU_RSC_STATUS_DATA>(stage, 520, PDU_IT_RSC_STATUS, "status item", {1, CanResource, 0x0A});
    auto& canId = stage.log.Keep<UNUM32>("item address", 0x7E9);
    Send<PDU_PARAM_ITEM>(stage, 521, PDU_IT_PARAM, "parameter",
                         {PDU_IT_PARAM, ResponseId, PDU_PT_UNUM32, PDU_PC_UNIQUE_ID, &canId});
    auto& finished = stage.log.Keep<T_PDU_STATUS>("finished", PDU_COPST_FINISHED);
    Fetch<PDU_EVENT_ITEM>(stage, 522, PDU_IT_STATUS, "event", {PDU_IT_STATUS, 9, nullptr, 3000, &finished});
    auto& ids = stage.log.Keep<std::array<UNUM32, 1>>("listed ids", {CanResource});
    auto& resources =
        stage.log.Keep<std::array<PDU_RSC_ID_ITEM_DATA, 1>>("listed resources", {{{1, 1, ids.data()}}});
    Fetch<PDU_RSC_ID_ITEM>(stage, 523, PDU_IT_RSC_ID, "id list", {PDU_IT_RSC_ID, 1, resources.data()});
    Fetch<PDU_RSC_CONFLICT_DATA>(stage, 524, PDU_IT_RSC_CONFLICT, "conflict", {1, 402});
    auto& modules = stage.log.Keep<std::array<PDU_MODULE_DATA, 1>>(
        "listed modules", {{{7, 1, stage.log.KeepText("Bench VCI"), nullptr, PDU_MODST_NOT_READY}}});
    Fetch<PDU_MODULE_ITEM>(stage, 525, PDU_IT_MODULE_ID, "listed module list",
                           {PDU_IT_MODULE_ID, 1, modules.data()});

    auto& timing = stage.log.Keep<PDU_PARAM_STRUCT_SESSION_TIMING>("item timing", {3, 0, 50, 1, 244});
    auto& field = stage.log.Keep<PDU_PARAM_STRUCTFIELD_DATA>("item timing field",
                                                             {PDU_CPST_SESSION_TIMING, 1, 1, &timing});
    auto& parameter = stage.log.Keep<PDU_PARAM_ITEM>(
        "item parameter", {PDU_IT_PARAM, 610, PDU_PT_STRUCTFIELD, PDU_PC_TIMING, &field});
    auto& entry = stage.log.Keep<PDU_ECU_UNIQUE_RESP_DATA>("item entry", {7, 1, &parameter});
    Fetch<PDU_UNIQUE_RESP_ID_TABLE_ITEM>(stage, 526, PDU_IT_UNIQUE_RESP_ID_TABLE, "table",
                                         {PDU_IT_UNIQUE_RESP_ID_TABLE, 1, &entry});
}

} // namespace marvane::testing
