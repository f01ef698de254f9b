// PDUIoCtl: commands to the module and its links.
#include <algorithm>
#include <iterator>

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

T_PDU_ERROR TakeVehicleIdRequest(const PDU_DATA_ITEM* input)
{
    return Accepted(Input<void>(input, PDU_IT_IO_VEHICLE_ID_REQUEST) != nullptr ||
                    Input<void>(input, PDU_IT_IO_VEHICLE_ID_REQUEST_EX) != nullptr);
}

T_PDU_ERROR OutputEntityAddress(PDU_DATA_ITEM** place)
{
    return Output(place, PDU_IT_IO_ENTITY_ADDRESS,
                  PDU_IO_ENTITY_ADDRESS_DATA{.LogicalAddress = 0x1010, .CtrlTimeout = 2000});
}

T_PDU_ERROR OutputEntityStatus(PDU_DATA_ITEM** place)
{
    return Output(
        place, PDU_IT_IO_ENTITY_STATUS,
        PDU_IO_ENTITY_STATUS_DATA{.EntityType = 0, .TcpClientsMax = 8, .TcpClients = 1, .MaxDataSize = 4095});
}

/// Takes an input item of that type and ignores what it says.
template <class Record, T_PDU_IT Type> T_PDU_ERROR Take(const PDU_DATA_ITEM* input)
{
    return Accepted(Input<Record>(input, Type) != nullptr);
}

/// What a command does: it takes an item, or gives one out, or neither.
struct Command
{
    UNUM32 Id;
    T_PDU_ERROR (*Take)(const PDU_DATA_ITEM* input) = nullptr;
    T_PDU_ERROR (*Give)(PDU_DATA_ITEM** place) = nullptr;
};

constexpr Command Commands[] = {
    {.Id = id::ReadBattery, .Give = [](PDU_DATA_ITEM** place) { return OutputNumber(place, 12640); }},
    {.Id = id::ReadIgnition, .Give = [](PDU_DATA_ITEM** place) { return OutputNumber(place, 1); }},
    {.Id = id::SetProgVoltage, .Take = SetProgVoltage},
    {.Id = id::ReadProgVoltage,
     .Give = [](PDU_DATA_ITEM** place) { return OutputNumber(place, Interface.ProgVoltage); }},
    {.Id = id::CableId, .Give = OutputCableId},
    {.Id = id::StartFilter, .Take = Take<PDU_IO_FILTER_LIST, PDU_IT_IO_FILTER>},
    {.Id = id::StopFilter, .Take = Take<UNUM32, PDU_IT_IO_UNUM32>},
    {.Id = id::ClearFilter},
    {.Id = id::Reset},
    {.Id = id::SetQueueProperty,
     .Take = Take<PDU_IO_EVENT_QUEUE_PROPERTY_DATA, PDU_IT_IO_EVENT_QUEUE_PROPERTY>},
    {.Id = id::VehicleId, .Take = TakeVehicleIdRequest},
    {.Id = id::EthernetSwitch, .Take = SetSwitch},
    {.Id = id::EntityAddress, .Give = OutputEntityAddress},
    {.Id = id::EntityStatus, .Give = OutputEntityStatus},
    {.Id = id::OpenItems,
     .Give =
         [](PDU_DATA_ITEM** place) { return OutputNumber(place, static_cast<UNUM32>(OpenItems.Open())); }},
};

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
    const auto command = std::ranges::find(Commands, IoCtlCommandId, &Command::Id);
    if (command == std::end(Commands))
        return PDU_ERR_ID_NOT_SUPPORTED;
    if (command->Take)
        return command->Take(pInputData);
    return command->Give ? command->Give(ppOutputData) : PDU_STATUS_NOERROR;
}
