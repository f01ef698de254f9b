#include <algorithm>

#include "logger/decode/decode.h"
#include "logger/decode/object_names.h"

namespace marvane {

namespace {

/// The item's data, taken as the record that the type names.
template <class Record> const Record& As(const PDU_DATA_ITEM& item)
{
    return *static_cast<const Record*>(item.pData);
}

void DecodeNumber(const DecoderFrame& frame, const PDU_DATA_ITEM& item, int direction)
{
    const UNUM32 number = As<UNUM32>(item);
    DecodeLine(frame, IndentIndex(direction, 1), "*pData   \t= 0x%X (%u)"_fmt, number, number);
}

void DecodeVoltage(const DecoderFrame& frame, const PDU_DATA_ITEM& item, int direction)
{
    const auto& voltage = As<PDU_IO_PROG_VOLTAGE_DATA>(item);
    DecodeLine(frame, IndentIndex(direction, 1), "Pin = %u, Volts = %umV"_fmt, voltage.PinOnDLC,
               voltage.ProgVoltage_mv);
}

void DecodeByteArray(const DecoderFrame& frame, const PDU_DATA_ITEM& item, int direction)
{
    const auto& array = As<PDU_IO_BYTEARRAY_DATA>(item);
    DumpBuffer(frame, direction, 0, "pByteArrayArray", array.pData, array.DataSize, array.DataSize);
}

void DecodeFilter(const DecoderFrame& frame, const PDU_DATA_ITEM& item, int direction)
{
    DecodeFilterList(frame, direction, &As<PDU_IO_FILTER_LIST>(item));
}

void DecodeQueueProperty(const DecoderFrame& frame, const PDU_DATA_ITEM& item, int direction)
{
    const auto& queue = As<PDU_IO_EVENT_QUEUE_PROPERTY_DATA>(item);
    DecodeLine(frame, IndentIndex(direction, 1), "QueueSize = %u, QueueMode = %d"_fmt, queue.QueueSize,
               queue.QueueMode);
}

void DecodeResourceStatus(const DecoderFrame& frame, const PDU_DATA_ITEM& item, int direction)
{
    const auto& resource = As<PDU_RSC_STATUS_DATA>(item);
    const UNUM32 status = resource.ResourceStatus;
    DecodeLine(frame, IndentIndex(direction, 1), "hMod = %u, ResourceId = %s (%u), Status = 0x%X"_fmt,
               resource.hMod, ObjectName(ObjectNameMap::ResourceNames, resource.ResourceId, "<UNKNOWN>"),
               resource.ResourceId, status);
    DecodeLine(frame, IndentIndex(direction, 2),
               "Status decode: Phys ComParams Locked = %d, TX Q locked = %d, Available = %d, In use = %d"_fmt,
               status >> 3 & 1, status >> 2 & 1, status >> 1 & 1, status & 1);
}

void DecodeParam(const DecoderFrame& frame, const PDU_DATA_ITEM& item, int direction)
{
    DecodeComParam(frame, &As<PDU_PARAM_ITEM>(item), direction, 1);
}

void DecodeEvent(const DecoderFrame& frame, const PDU_DATA_ITEM& item, int direction)
{
    const auto& event = As<PDU_EVENT_ITEM>(item);
    DecodeLine(frame, IndentIndex(direction, 1),
               "%s (0x%04X): hCoP = %u, Tag = %8p, Type = %d, Timestamp = %u, pData=%8p"_fmt,
               NameOf(ItemTypeNames, event.ItemType, "<UNKNOWN>"), event.ItemType, event.hCop, event.pCoPTag,
               event.ItemType, event.Timestamp, event.pData);
    DecodeEventItem(frame, event.ItemType, event.pData);
}

void DecodeResourceIds(const DecoderFrame& frame, const PDU_DATA_ITEM& item, int direction)
{
    const auto& ids = As<PDU_RSC_ID_ITEM>(item);
    DecodeLine(frame, IndentIndex(direction, 1), "Type = %d, NumModules = %u, pRsrcDataArray = %p"_fmt,
               ids.ItemType, ids.NumModules, ids.pResourceIdDataArray);
    if (!ids.pResourceIdDataArray)
        return;
    ForEachEntry(
        frame, ids.pResourceIdDataArray, ids.NumModules, [&](UNUM32 i, const PDU_RSC_ID_ITEM_DATA* entry) {
            DecodeLine(frame, IndentIndex(direction, 2), "pRsrcIdLst->pResourceIdDataArray[%u]"_fmt, i);
            DecodeRscIdList(frame, entry, "RsrcItem", direction);
        });
}

void DecodeConflict(const DecoderFrame& frame, const PDU_DATA_ITEM& item, int direction)
{
    const auto& conflict = As<PDU_RSC_CONFLICT_DATA>(item);
    DecodeLine(frame, IndentIndex(direction, 1), "hMod = %u, ResourceId = %s (%d)"_fmt, conflict.hMod,
               ObjectName(ObjectNameMap::ResourceNames, conflict.ResourceId, "<UNKNOWN>"),
               conflict.ResourceId);
}

void DecodeModuleIds(const DecoderFrame& frame, const PDU_DATA_ITEM& item, int)
{
    DecodeModuleIdList(frame, &As<PDU_MODULE_ITEM>(item));
}

void DecodeResponseTable(const DecoderFrame& frame, const PDU_DATA_ITEM& item, int direction)
{
    DecodeUniqueRespIdTable(frame, &As<PDU_UNIQUE_RESP_ID_TABLE_ITEM>(item), direction, 1);
}

void DecodeVehicleId(const DecoderFrame& frame, const PDU_DATA_ITEM& item, int direction)
{
    DecodeVehicleIdRequest(frame, &As<PDU_IO_VEHICLE_ID_REQUEST_DATA>(item), direction);
}

void DecodeVehicleIdEx(const DecoderFrame& frame, const PDU_DATA_ITEM& item, int direction)
{
    DecodeVehicleIdRequestEx(frame, &As<PDU_IO_VEHICLE_ID_REQUEST_EX>(item), direction);
}

void DecodeSwitchState(const DecoderFrame& frame, const PDU_DATA_ITEM& item, int)
{
    DecodeEthSwitchState(frame, &As<PDU_IO_ETH_SWITCH_STATE_DATA>(item));
}

void DecodeAddressOfEntity(const DecoderFrame& frame, const PDU_DATA_ITEM& item, int)
{
    DecodeEntityAddress(frame, &As<PDU_IO_ENTITY_ADDRESS_DATA>(item));
}

void DecodeStatusOfEntity(const DecoderFrame& frame, const PDU_DATA_ITEM& item, int)
{
    DecodeEntityStatus(frame, &As<PDU_IO_ENTITY_STATUS_DATA>(item));
}

void DecodeUnknown(const DecoderFrame& frame, const PDU_DATA_ITEM&, int direction)
{
    DecodeLine(frame, IndentIndex(direction, 1), "UNKOWN"_fmt);
}

struct ItemDecoder
{
    T_PDU_IT Type;
    void (*Decode)(const DecoderFrame& frame, const PDU_DATA_ITEM& item, int direction);
};

constexpr ItemDecoder ItemDecoders[] = {
    {PDU_IT_IO_UNUM32, DecodeNumber},
    {PDU_IT_IO_PROG_VOLTAGE, DecodeVoltage},
    {PDU_IT_IO_BYTEARRAY, DecodeByteArray},
    {PDU_IT_IO_FILTER, DecodeFilter},
    {PDU_IT_IO_EVENT_QUEUE_PROPERTY, DecodeQueueProperty},
    {PDU_IT_RSC_STATUS, DecodeResourceStatus},
    {PDU_IT_PARAM, DecodeParam},
    {PDU_IT_RESULT, DecodeEvent},
    {PDU_IT_STATUS, DecodeEvent},
    {PDU_IT_ERROR, DecodeEvent},
    {PDU_IT_INFO, DecodeEvent},
    {PDU_IT_RSC_ID, DecodeResourceIds},
    {PDU_IT_RSC_CONFLICT, DecodeConflict},
    {PDU_IT_MODULE_ID, DecodeModuleIds},
    {PDU_IT_UNIQUE_RESP_ID_TABLE, DecodeResponseTable},
    {PDU_IT_IO_VEHICLE_ID_REQUEST, DecodeVehicleId},
    {PDU_IT_IO_ETH_SWITCH_STATE, DecodeSwitchState},
    {PDU_IT_IO_ENTITY_ADDRESS, DecodeAddressOfEntity},
    {PDU_IT_IO_ENTITY_STATUS, DecodeStatusOfEntity},
    {PDU_IT_IO_VEHICLE_ID_REQUEST_EX, DecodeVehicleIdEx},
};

void DecodeItemData(const DecoderFrame& frame, const PDU_DATA_ITEM& item, int direction)
{
    const auto* const known =
        std::find_if(std::begin(ItemDecoders), std::end(ItemDecoders),
                     [&](const ItemDecoder& decoder) { return decoder.Type == item.ItemType; });
    (known == std::end(ItemDecoders) ? DecodeUnknown : known->Decode)(frame, item, direction);
}

} // namespace

void DecodeItem(const DecoderFrame& frame, const char* label, const PDU_DATA_ITEM* item, int direction)
{
    if (!frame.IsOpen())
        return;
    const std::size_t indent = IndentIndex(direction, 0);
    const char* const name = TextOrNull(label);
    if (!item)
        return DecodeLine(frame, indent, "%s\t= <NULL>"_fmt, name);
    DecodeLine(frame, indent, "%s->ItemType\t= %s (%d)"_fmt, name,
               NameOf(ItemTypeNames, item->ItemType, "<UNKNOWN>"), item->ItemType);
    DecodeLine(frame, indent, "%s->pData   \t= %8p"_fmt, name, item->pData);
    if (item->pData)
        DecodeItemData(frame, *item, direction);
}

} // namespace marvane
