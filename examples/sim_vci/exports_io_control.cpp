// PDUIoCtl: commands to the module and its links.
#include "examples/sim_vci/faults.h"
#include "examples/sim_vci/objects.h"
#include "examples/sim_vci/vci.h"

using namespace sim;

namespace {

/// The data of an input item if it has that type, else null.
template <class Record> const Record* Input(const PDU_DATA_ITEM* item, T_PDU_IT type)
{
    return item && item->ItemType == type ? static_cast<const Record*>(item->pData) : nullptr;
}

/// Gives the application a copy of a record as output item.
template <class Record>
T_PDU_ERROR Output(PDU_DATA_ITEM** place, T_PDU_IT type, const Record& record, Item&& item = {})
{
    if (!place)
        return PDU_ERR_INVALID_PARAMETERS;
    auto* const root = item.New<PDU_DATA_ITEM>();
    auto* const data = item.New<Record>();
    *data = record;
    *root = {type, data};
    *place = OpenItems.Publish(std::move(item), root);
    return PDU_STATUS_NOERROR;
}

T_PDU_ERROR OutputNumber(PDU_DATA_ITEM** place, UNUM32 number)
{
    return Output(place, PDU_IT_IO_UNUM32, number);
}

T_PDU_ERROR OutputCableId(PDU_DATA_ITEM** place)
{
    Item item;
    UNUM8* const bytes = item.Bytes({'O', 'B', 'D', '-', 'C', 'A', 'B', 'L', 'E', 0x00, 0x7F, 0x80});
    return Output(place, PDU_IT_IO_BYTEARRAY, PDU_IO_BYTEARRAY_DATA{.DataSize = 12, .pData = bytes},
                  std::move(item));
}

T_PDU_ERROR Accepted(bool good)
{
    return good ? PDU_STATUS_NOERROR : PDU_ERR_INVALID_PARAMETERS;
}

T_PDU_ERROR SetProgVoltage(const PDU_DATA_ITEM* input)
{
    const auto* const voltage = Input<PDU_IO_PROG_VOLTAGE_DATA>(input, PDU_IT_IO_PROG_VOLTAGE);
    if (!voltage)
        return PDU_ERR_INVALID_PARAMETERS;
    if (voltage->ProgVoltage_mv > 20000)
        return PDU_ERR_VOLTAGE_NOT_SUPPORTED;
    Interface.ProgVoltage = voltage->ProgVoltage_mv;
    return PDU_STATUS_NOERROR;
}

T_PDU_ERROR SetSwitch(const PDU_DATA_ITEM* input)
{
    const auto* const state = Input<PDU_IO_ETH_SWITCH_STATE_DATA>(input, PDU_IT_IO_ETH_SWITCH_STATE);
    if (state)
        Interface.EthernetSwitch = state->State;
    return Accepted(state != nullptr);
}

} // namespace

T_PDU_ERROR PDUIoCtl(UNUM32 hMod, UNUM32 hCLL, UNUM32 IoCtlCommandId, PDU_DATA_ITEM* pInputData,
                     PDU_DATA_ITEM** ppOutputData)
{
    CurrentFaults.OnCall(__func__);
    const std::lock_guard hold(Interface.Mutex);
    if (hMod != ModuleHandle || (hCLL != PDU_HANDLE_UNDEF && !Interface.FindLink(hMod, hCLL)))
        return PDU_ERR_INVALID_HANDLE;
    if (!Interface.ModuleConnected)
        return PDU_ERR_MODULE_NOT_CONNECTED;
    switch (IoCtlCommandId) {
    case id::ReadBattery:
        return OutputNumber(ppOutputData, 12640);
    case id::ReadIgnition:
        return OutputNumber(ppOutputData, 1);
    case id::SetProgVoltage:
        return SetProgVoltage(pInputData);
    case id::ReadProgVoltage:
        return OutputNumber(ppOutputData, Interface.ProgVoltage);
    case id::CableId:
        return OutputCableId(ppOutputData);
    case id::StartFilter:
        return Accepted(Input<PDU_IO_FILTER_LIST>(pInputData, PDU_IT_IO_FILTER) != nullptr);
    case id::StopFilter:
        return Accepted(Input<UNUM32>(pInputData, PDU_IT_IO_UNUM32) != nullptr);
    case id::ClearFilter:
    case id::Reset:
        return PDU_STATUS_NOERROR;
    case id::SetQueueProperty:
        return Accepted(Input<PDU_IO_EVENT_QUEUE_PROPERTY_DATA>(pInputData, PDU_IT_IO_EVENT_QUEUE_PROPERTY) !=
                        nullptr);
    case id::VehicleId:
        return Accepted(Input<void>(pInputData, PDU_IT_IO_VEHICLE_ID_REQUEST) != nullptr ||
                        Input<void>(pInputData, PDU_IT_IO_VEHICLE_ID_REQUEST_EX) != nullptr);
    case id::EthernetSwitch:
        return SetSwitch(pInputData);
    case id::EntityAddress:
        return Output(ppOutputData, PDU_IT_IO_ENTITY_ADDRESS,
                      PDU_IO_ENTITY_ADDRESS_DATA{.LogicalAddress = 0x1010, .CtrlTimeout = 2000});
    case id::EntityStatus:
        return Output(ppOutputData, PDU_IT_IO_ENTITY_STATUS,
                      PDU_IO_ENTITY_STATUS_DATA{
                          .EntityType = 0, .TcpClientsMax = 8, .TcpClients = 1, .MaxDataSize = 4095});
    case id::OpenItems:
        return OutputNumber(ppOutputData, static_cast<UNUM32>(OpenItems.Open()));
    default:
        return PDU_ERR_ID_NOT_SUPPORTED;
    }
}
