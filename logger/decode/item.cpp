// Generic items of PDUIoCtl: finds the decoder of what an item holds.
#include <algorithm>

#include "logger/decode/decode.h"
#include "logger/decode/object_names.h"

namespace marvane {

namespace {

/// The item's data as the record of its type.
template <class Record> const Record& As(const PDU_DATA_ITEM& item)
{
    return *static_cast<const Record*>(item.pData);
}

void NumberItem(const DecoderContext& context, Arrow arrow, const PDU_DATA_ITEM& item)
{
    const UNUM32 number = As<UNUM32>(item);
    DecodeLine(context, arrow.Deeper(), "*pData   \t= 0x%X (%u)"_fmt, number, number);
}

void VoltageItem(const DecoderContext& context, Arrow arrow, const PDU_DATA_ITEM& item)
{
    const auto& voltage = As<PDU_IO_PROG_VOLTAGE_DATA>(item);
    DecodeLine(context, arrow.Deeper(), "Pin = %u, Volts = %umV"_fmt, voltage.PinOnDLC,
               voltage.ProgVoltage_mv);
}

void ByteArrayItem(const DecoderContext& context, Arrow arrow, const PDU_DATA_ITEM& item)
{
    const auto& array = As<PDU_IO_BYTEARRAY_DATA>(item);
    DumpBuffer(context, arrow, "pByteArrayArray", array.pData, array.DataSize, array.DataSize);
}

void FilterItem(const DecoderContext& context, Arrow arrow, const PDU_DATA_ITEM& item)
{
    DecodeFilterList(context, arrow.Deeper(), &As<PDU_IO_FILTER_LIST>(item));
}

void QueuePropertyItem(const DecoderContext& context, Arrow arrow, const PDU_DATA_ITEM& item)
{
    const auto& queue = As<PDU_IO_EVENT_QUEUE_PROPERTY_DATA>(item);
    DecodeLine(context, arrow.Deeper(), "QueueSize = %u, QueueMode = %d"_fmt, queue.QueueSize,
               queue.QueueMode);
}

void ResourceStatusItem(const DecoderContext& context, Arrow arrow, const PDU_DATA_ITEM& item)
{
    const auto& resource = As<PDU_RSC_STATUS_DATA>(item);
    const UNUM32 status = resource.ResourceStatus;
    DecodeLine(context, arrow.Deeper(), "hMod = %u, ResourceId = %s (%u), Status = 0x%X"_fmt, resource.hMod,
               ObjectName(ObjectNameMap::ResourceNames, resource.ResourceId, "<UNKNOWN>"),
               resource.ResourceId, status);
    DecodeLine(context, arrow.Deeper(2),
               "Status decode: Phys ComParams Locked = %d, TX Q locked = %d, Available = %d, In use = %d"_fmt,
               status >> 3 & 1, status >> 2 & 1, status >> 1 & 1, status & 1);
}

void ParamItem(const DecoderContext& context, Arrow arrow, const PDU_DATA_ITEM& item)
{
    DecodeComParam(context, arrow.Deeper(), &As<PDU_PARAM_ITEM>(item));
}

void EventItem(const DecoderContext& context, Arrow arrow, const PDU_DATA_ITEM& item)
{
    const auto& event = As<PDU_EVENT_ITEM>(item);
    DecodeLine(context, arrow.Deeper(),
               "%s (0x%04X): hCoP = %u, Tag = %8p, Type = %d, Timestamp = %u, pData=%8p"_fmt,
               NameOf(ItemTypeNames, event.ItemType, "<UNKNOWN>"), event.ItemType, event.hCop, event.pCoPTag,
               event.ItemType, event.Timestamp, event.pData);
    DecodeEventItem(context, event.ItemType, event.pData);
}

void ResourceIdItem(const DecoderContext& context, Arrow arrow, const PDU_DATA_ITEM& item)
{
    const auto& ids = As<PDU_RSC_ID_ITEM>(item);
    DecodeLine(context, arrow.Deeper(), "Type = %d, NumModules = %u, pRsrcDataArray = %p"_fmt, ids.ItemType,
               ids.NumModules, ids.pResourceIdDataArray);
    if (!ids.pResourceIdDataArray)
        return;
    ForEachEntry(context, ids.pResourceIdDataArray, ids.NumModules,
                 [&](UNUM32 i, const PDU_RSC_ID_ITEM_DATA* entry) {
                     DecodeLine(context, arrow.Deeper(2), "pRsrcIdLst->pResourceIdDataArray[%u]"_fmt, i);
                     DecodeRscIdList(context, arrow.Deeper(2), "RsrcItem", entry);
                 });
}

void ConflictItem(const DecoderContext& context, Arrow arrow, const PDU_DATA_ITEM& item)
{
    const auto& conflict = As<PDU_RSC_CONFLICT_DATA>(item);
    DecodeLine(context, arrow.Deeper(), "hMod = %u, ResourceId = %s (%d)"_fmt, conflict.hMod,
               ObjectName(ObjectNameMap::ResourceNames, conflict.ResourceId, "<UNKNOWN>"),
               conflict.ResourceId);
}

void ModuleIdItem(const DecoderContext& context, Arrow, const PDU_DATA_ITEM& item)
{
    DecodeModuleIdList(context, &As<PDU_MODULE_ITEM>(item));
}

void ResponseTableItem(const DecoderContext& context, Arrow arrow, const PDU_DATA_ITEM& item)
{
    DecodeUniqueRespIdTable(context, arrow.Deeper(), &As<PDU_UNIQUE_RESP_ID_TABLE_ITEM>(item));
}

void VehicleIdItem(const DecoderContext& context, Arrow arrow, const PDU_DATA_ITEM& item)
{
    DecodeVehicleIdRequest(context, arrow, &As<PDU_IO_VEHICLE_ID_REQUEST_DATA>(item));
}

void VehicleIdExItem(const DecoderContext& context, Arrow arrow, const PDU_DATA_ITEM& item)
{
    DecodeVehicleIdRequestEx(context, arrow, &As<PDU_IO_VEHICLE_ID_REQUEST_EX>(item));
}

void SwitchStateItem(const DecoderContext& context, Arrow, const PDU_DATA_ITEM& item)
{
    DecodeEthSwitchState(context, &As<PDU_IO_ETH_SWITCH_STATE_DATA>(item));
}

void EntityAddressItem(const DecoderContext& context, Arrow, const PDU_DATA_ITEM& item)
{
    DecodeEntityAddress(context, &As<PDU_IO_ENTITY_ADDRESS_DATA>(item));
}

void EntityStatusItem(const DecoderContext& context, Arrow, const PDU_DATA_ITEM& item)
{
    DecodeEntityStatus(context, &As<PDU_IO_ENTITY_STATUS_DATA>(item));
}

void UnknownItem(const DecoderContext& context, Arrow arrow, const PDU_DATA_ITEM&)
{
    DecodeLine(context, arrow.Deeper(), "UNKOWN"_fmt);
}

/// Decoder of the items of one type.
struct ItemDecoder
{
    T_PDU_IT Type;
    void (*Decode)(const DecoderContext& context, Arrow arrow, const PDU_DATA_ITEM& item);
};

constexpr ItemDecoder ItemDecoders[] = {
    {PDU_IT_IO_UNUM32, NumberItem},
    {PDU_IT_IO_PROG_VOLTAGE, VoltageItem},
    {PDU_IT_IO_BYTEARRAY, ByteArrayItem},
    {PDU_IT_IO_FILTER, FilterItem},
    {PDU_IT_IO_EVENT_QUEUE_PROPERTY, QueuePropertyItem},
    {PDU_IT_RSC_STATUS, ResourceStatusItem},
    {PDU_IT_PARAM, ParamItem},
    {PDU_IT_RESULT, EventItem},
    {PDU_IT_STATUS, EventItem},
    {PDU_IT_ERROR, EventItem},
    {PDU_IT_INFO, EventItem},
    {PDU_IT_RSC_ID, ResourceIdItem},
    {PDU_IT_RSC_CONFLICT, ConflictItem},
    {PDU_IT_MODULE_ID, ModuleIdItem},
    {PDU_IT_UNIQUE_RESP_ID_TABLE, ResponseTableItem},
    {PDU_IT_IO_VEHICLE_ID_REQUEST, VehicleIdItem},
    {PDU_IT_IO_ETH_SWITCH_STATE, SwitchStateItem},
    {PDU_IT_IO_ENTITY_ADDRESS, EntityAddressItem},
    {PDU_IT_IO_ENTITY_STATUS, EntityStatusItem},
    {PDU_IT_IO_VEHICLE_ID_REQUEST_EX, VehicleIdExItem},
};

void DecodeItemData(const DecoderContext& context, Arrow arrow, const PDU_DATA_ITEM& item)
{
    const auto* const known =
        std::find_if(std::begin(ItemDecoders), std::end(ItemDecoders),
                     [&](const ItemDecoder& decoder) { return decoder.Type == item.ItemType; });
    (known == std::end(ItemDecoders) ? UnknownItem : known->Decode)(context, arrow, item);
}

} // namespace

void DecodeItem(const DecoderContext& context, Arrow arrow, const char* label, const PDU_DATA_ITEM* item)
{
    if (!context.IsOpen())
        return;
    const char* const name = TextOrNull(label);
    if (!item)
        return DecodeLine(context, arrow, "%s\t= <NULL>"_fmt, name);
    DecodeLine(context, arrow, "%s->ItemType\t= %s (%d)"_fmt, name,
               NameOf(ItemTypeNames, item->ItemType, "<UNKNOWN>"), item->ItemType);
    DecodeLine(context, arrow, "%s->pData   \t= %8p"_fmt, name, item->pData);
    if (item->pData)
        DecodeItemData(context, arrow, *item);
}

} // namespace marvane
