#include "decode/decode.h"

namespace marvane {

namespace {

void DecodeResourceStatusBits(const DecoderFrame& frame, const PDU_RSC_STATUS_DATA& resource, int direction)
{
    const UNUM32 status = resource.ResourceStatus;
    DecodeLine(frame, IndentIndex(direction, 1), "hMod = %u, ResourceId = %s (%u), Status = 0x%X",
               resource.hMod, ObjectName(ObjectNameMap::ResourceNames, resource.ResourceId, "<UNKNOWN>"),
               resource.ResourceId, status);
    DecodeLine(frame, IndentIndex(direction, 2),
               "Status decode: Phys ComParams Locked = %d, TX Q locked = %d, Available = %d, In use = %d",
               status >> 3 & 1, status >> 2 & 1, status >> 1 & 1, status & 1);
}

void DecodeEvent(const DecoderFrame& frame, const PDU_EVENT_ITEM& event, int direction)
{
    DecodeLine(frame, IndentIndex(direction, 1),
               "%s (0x%04X): hCoP = %u, Tag = %8p, Type = %d, Timestamp = %u, pData=%8p",
               NameOf(ItemTypeNames, event.ItemType, "<UNKNOWN>"), event.ItemType, event.hCop, event.pCoPTag,
               event.ItemType, event.Timestamp, event.pData);
    DecodeEventItem(frame, event.ItemType, event.pData);
}

void DecodeRscIds(const DecoderFrame& frame, const PDU_RSC_ID_ITEM& item, int direction)
{
    DecodeLine(frame, IndentIndex(direction, 1), "Type = %d, NumModules = %u, pRsrcDataArray = %p",
               item.ItemType, item.NumModules, item.pResourceIdDataArray);
    if (!item.pResourceIdDataArray)
        return;
    ForEachEntry(frame, item.pResourceIdDataArray, item.NumModules,
                 [&](UNUM32 i, const PDU_RSC_ID_ITEM_DATA* entry) {
                     DecodeLine(frame, IndentIndex(direction, 2), "pRsrcIdLst->pResourceIdDataArray[%u]", i);
                     DecodeRscIdList(frame, entry, "RsrcItem", direction);
                 });
}

/// The item's data, taken as the record that the type names.
template <class Record> const Record& As(const PDU_DATA_ITEM& item)
{
    return *static_cast<const Record*>(item.pData);
}

void DecodeItemData(const DecoderFrame& frame, const PDU_DATA_ITEM& item, int direction)
{
    const std::size_t nested = IndentIndex(direction, 1);
    switch (item.ItemType) {
    case PDU_IT_IO_UNUM32:
        return DecodeLine(frame, nested, "*pData   \t= 0x%X (%u)", As<UNUM32>(item), As<UNUM32>(item));
    case PDU_IT_IO_PROG_VOLTAGE: {
        const auto& voltage = As<PDU_IO_PROG_VOLTAGE_DATA>(item);
        return DecodeLine(frame, nested, "Pin = %u, Volts = %umV", voltage.PinOnDLC, voltage.ProgVoltage_mv);
    }
    case PDU_IT_IO_BYTEARRAY: {
        const auto& array = As<PDU_IO_BYTEARRAY_DATA>(item);
        return DumpBuffer(frame, direction, 0, "pByteArrayArray", array.pData, array.DataSize,
                          array.DataSize);
    }
    case PDU_IT_IO_FILTER:
        return DecodeFilterList(frame, direction, &As<PDU_IO_FILTER_LIST>(item));
    case PDU_IT_IO_EVENT_QUEUE_PROPERTY: {
        const auto& queue = As<PDU_IO_EVENT_QUEUE_PROPERTY_DATA>(item);
        return DecodeLine(frame, nested, "QueueSize = %u, QueueMode = %d", queue.QueueSize, queue.QueueMode);
    }
    case PDU_IT_RSC_STATUS:
        return DecodeResourceStatusBits(frame, As<PDU_RSC_STATUS_DATA>(item), direction);
    case PDU_IT_PARAM:
        return DecodeComParam(frame, &As<PDU_PARAM_ITEM>(item), direction, 1);
    case PDU_IT_RESULT:
    case PDU_IT_STATUS:
    case PDU_IT_ERROR:
    case PDU_IT_INFO:
        return DecodeEvent(frame, As<PDU_EVENT_ITEM>(item), direction);
    case PDU_IT_RSC_ID:
        return DecodeRscIds(frame, As<PDU_RSC_ID_ITEM>(item), direction);
    case PDU_IT_RSC_CONFLICT: {
        const auto& conflict = As<PDU_RSC_CONFLICT_DATA>(item);
        return DecodeLine(frame, nested, "hMod = %u, ResourceId = %s (%d)", conflict.hMod,
                          ObjectName(ObjectNameMap::ResourceNames, conflict.ResourceId, "<UNKNOWN>"),
                          conflict.ResourceId);
    }
    case PDU_IT_MODULE_ID:
        return DecodeModuleIdList(frame, &As<PDU_MODULE_ITEM>(item));
    case PDU_IT_UNIQUE_RESP_ID_TABLE:
        return DecodeUniqueRespIdTable(frame, &As<PDU_UNIQUE_RESP_ID_TABLE_ITEM>(item), direction, 1);
    case PDU_IT_IO_VEHICLE_ID_REQUEST:
        return DecodeVehicleIdRequest(frame, &As<PDU_IO_VEHICLE_ID_REQUEST_DATA>(item), direction);
    case PDU_IT_IO_ETH_SWITCH_STATE:
        return DecodeEthSwitchState(frame, &As<PDU_IO_ETH_SWITCH_STATE_DATA>(item));
    case PDU_IT_IO_ENTITY_ADDRESS:
        return DecodeEntityAddress(frame, &As<PDU_IO_ENTITY_ADDRESS_DATA>(item));
    case PDU_IT_IO_ENTITY_STATUS:
        return DecodeEntityStatus(frame, &As<PDU_IO_ENTITY_STATUS_DATA>(item));
    case PDU_IT_IO_VEHICLE_ID_REQUEST_EX:
        return DecodeVehicleIdRequestEx(frame, &As<PDU_IO_VEHICLE_ID_REQUEST_EX>(item), direction);
    default:
        return DecodeLine(frame, nested, "UNKOWN");
    }
}

} // namespace

void DecodeItem(const DecoderFrame& frame, const char* label, const PDU_DATA_ITEM* item, int direction)
{
    if (!frame.IsOpen())
        return;
    const std::size_t indent = IndentIndex(direction, 0);
    const char* const name = TextOrNull(label);
    if (!item)
        return DecodeLine(frame, indent, "%s\t= <NULL>", name);
    DecodeLine(frame, indent, "%s->ItemType\t= %s (%d)", name,
               NameOf(ItemTypeNames, item->ItemType, "<UNKNOWN>"), item->ItemType);
    DecodeLine(frame, indent, "%s->pData   \t= %8p", name, item->pData);
    if (item->pData)
        DecodeItemData(frame, *item, direction);
}

} // namespace marvane
