#include "logger/decode/decode.h"
#include "logger/decode/object_names.h"

namespace marvane {

void DecodeRscData(const DecoderFrame& frame, const PDU_RSC_DATA* data, const char* label)
{
    if (!frame.IsOpen())
        return;
    const char* const name = TextOrNull(label);
    if (!data)
        return DecodeLine(frame, IndentTable[0], "%s\t= <NULL>"_fmt, name);
    DecodeLine(frame, IndentTable[0], "%-15s: BusTypeId = %s (%u), ProtocolId = %s (%u), NumPinData = %u"_fmt,
               name, ObjectName(ObjectNameMap::BusTypeNames, data->BusTypeId, "<UNKNOWN>"), data->BusTypeId,
               ObjectName(ObjectNameMap::ProtocolNames, data->ProtocolId, "<UNKNOWN>"), data->ProtocolId,
               data->NumPinData);
    if (!data->pDLCPinData) {
        DecodeLine(frame, IndentTable[1], "RsrcName: %s\t= <NULL>"_fmt, name);
        if (data->NumPinData != 0)
            DecodeLine(frame, IndentTable[1],
                       "*** WARNING - %s: NumPinData = %u BUT pDLCPinData: <NULL> ***"_fmt, name,
                       data->NumPinData);
        return;
    }
    ForEachEntry(frame, data->pDLCPinData, data->NumPinData, [&](UNUM32 i, const PDU_PIN_DATA* pin) {
        DecodeLine(frame, IndentTable[1], "pDLCPinData[%u]:\tNum = %2u, Type = %s (%u)"_fmt, i,
                   pin->DLCPinNumber, ObjectName(ObjectNameMap::PinTypeNames, pin->DLCPinTypeId, "<UNKNOWN>"),
                   pin->DLCPinTypeId);
    });
}

void DecodeRscIdList(const DecoderFrame& frame, const PDU_RSC_ID_ITEM_DATA* entry, const char* label,
                     int direction)
{
    if (!frame.IsOpen())
        return;
    const char* const name = TextOrNull(label);
    const std::size_t indent = IndentIndex(direction, 2);
    const std::size_t nested = IndentIndex(direction, 3);
    if (!entry)
        return DecodeLine(frame, indent, "%s\t= <NULL>"_fmt, name);
    DecodeLine(frame, indent, "%s:\thMod = %s, NumIds = %u, pResourceIdArray = %8p"_fmt, name,
               HandleText(entry->hMod), entry->NumIds, entry->pResourceIdArray);
    if (!entry->pResourceIdArray) {
        DecodeLine(frame, nested, "pResourceId[%s]\t= <NULL>"_fmt, name);
        // The line names another field than the one that is null; readers know it so.
        if (entry->NumIds != 0)
            DecodeLine(frame, nested, "*** WARNING - %s: NumIds = %u BUT pDLCPinData= <NULL> ***"_fmt, name,
                       entry->NumIds);
        return;
    }
    ForEachEntry(frame, entry->pResourceIdArray, entry->NumIds, [&](UNUM32 i, const UNUM32* id) {
        DecodeLine(frame, nested, "pResourceId[%2u]\t= %u (%s)"_fmt, i, *id,
                   ObjectName(ObjectNameMap::ResourceNames, *id, "<UNKNOWN>"));
    });
}

void DecodeRscConflictList(const DecoderFrame& frame, const PDU_RSC_CONFLICT_DATA* entry)
{
    if (!frame.IsOpen())
        return;
    if (!entry)
        return DecodeLine(frame, IndentTable[3], "%s\t= <NULL>"_fmt, "pConflictData");
    DecodeLine(frame, IndentTable[3], "%s:\t\thMod=%s, ResourceId=%s(%u)"_fmt, "pConflictData",
               HandleText(entry->hMod),
               ObjectName(ObjectNameMap::ResourceNames, entry->ResourceId, "<UNKNOWN>"), entry->ResourceId);
}

void DecodeModuleData(const DecoderFrame& frame, const PDU_MODULE_DATA* entry, int direction)
{
    if (!frame.IsOpen())
        return;
    const std::size_t indent = IndentIndex(direction, 1);
    if (!entry)
        return DecodeLine(frame, indent, "pModuleData\t= <NULL>"_fmt);
    DecodeLine(frame, indent, "ModuleTypeId         \t= %u"_fmt, entry->ModuleTypeId);
    DecodeLine(frame, indent, "hMod                 \t= %s"_fmt, HandleText(entry->hMod));
    DecodeLine(frame, indent, "pVendorModuleName    \t= \"%s\""_fmt, TextOrNull(entry->pVendorModuleName));
    DecodeLine(frame, indent, "pVendorAdditionalInfo\t= \"%s\""_fmt,
               TextOrNull(entry->pVendorAdditionalInfo));
    DecodeLine(frame, indent, "ModuleStatus         \t= %s (0x%04X)"_fmt,
               NameOf(StatusCodeNames, entry->ModuleStatus, "<NULL>"), entry->ModuleStatus);
}

void DecodeModuleIdList(const DecoderFrame& frame, const PDU_MODULE_ITEM* item)
{
    if (!frame.IsOpen())
        return;
    if (item->ItemType != PDU_IT_MODULE_ID)
        DecodeLine(frame, IndentTable[4], "WARNING: Wrong item type %u, should be %u!"_fmt, item->ItemType,
                   PDU_IT_MODULE_ID);
    if (!item->pModuleData)
        return DecodeLine(frame, IndentTable[4], "pItem->pModuleData\t= <NULL>"_fmt);
    if (item->NumEntries == 0)
        return DecodeLine(frame, IndentTable[4], "Num Modules \t= %u"_fmt, item->NumEntries);
    ForEachEntry(frame, item->pModuleData, item->NumEntries, [&](UNUM32 i, const PDU_MODULE_DATA* entry) {
        DecodeLine(frame, IndentTable[4], "Module entry\t= %u of %u"_fmt, i + 1, item->NumEntries);
        DecodeModuleData(frame, entry, DirectionOut);
    });
}

} // namespace marvane
