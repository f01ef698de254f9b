// Resources, conflicts and modules: single records.
#include "logger/decode/decode.h"
#include "logger/decode/object_names.h"

namespace marvane {

void DecodeRscData(const DecoderContext& context, const char* label, const PDU_RSC_DATA* data)
{
    if (!context.IsOpen())
        return;
    const char* const name = TextOrNull(label);
    if (!data)
        return DecodeLine(context, ToTarget, "%s\t= <NULL>"_fmt, name);
    DecodeLine(context, ToTarget, "%-15s: BusTypeId = %s (%u), ProtocolId = %s (%u), NumPinData = %u"_fmt,
               name, ObjectName(ObjectNameMap::BusTypeNames, data->BusTypeId, "<UNKNOWN>"), data->BusTypeId,
               ObjectName(ObjectNameMap::ProtocolNames, data->ProtocolId, "<UNKNOWN>"), data->ProtocolId,
               data->NumPinData);
    if (!data->pDLCPinData) {
        DecodeLine(context, ToTarget.Deeper(), "RsrcName: %s\t= <NULL>"_fmt, name);
        if (data->NumPinData != 0)
            DecodeLine(context, ToTarget.Deeper(),
                       "*** WARNING - %s: NumPinData = %u BUT pDLCPinData: <NULL> ***"_fmt, name,
                       data->NumPinData);
        return;
    }
    ForEachEntry(context, data->pDLCPinData, data->NumPinData, [&](UNUM32 i, const PDU_PIN_DATA* pin) {
        DecodeLine(context, ToTarget.Deeper(), "pDLCPinData[%u]:\tNum = %2u, Type = %s (%u)"_fmt, i,
                   pin->DLCPinNumber, ObjectName(ObjectNameMap::PinTypeNames, pin->DLCPinTypeId, "<UNKNOWN>"),
                   pin->DLCPinTypeId);
    });
}

void DecodeRscIdList(const DecoderContext& context, Arrow arrow, const char* label,
                     const PDU_RSC_ID_ITEM_DATA* entry)
{
    if (!context.IsOpen())
        return;
    const char* const name = TextOrNull(label);
    const Arrow nested = arrow.Deeper();
    if (!entry)
        return DecodeLine(context, arrow, "%s\t= <NULL>"_fmt, name);
    DecodeLine(context, arrow, "%s:\thMod = %s, NumIds = %u, pResourceIdArray = %8p"_fmt, name,
               HandleText(entry->hMod), entry->NumIds, entry->pResourceIdArray);
    if (!entry->pResourceIdArray) {
        DecodeLine(context, nested, "pResourceId[%s]\t= <NULL>"_fmt, name);
        // Names the wrong field. Kept: log readers match this text.
        if (entry->NumIds != 0)
            DecodeLine(context, nested, "*** WARNING - %s: NumIds = %u BUT pDLCPinData= <NULL> ***"_fmt, name,
                       entry->NumIds);
        return;
    }
    ForEachEntry(context, entry->pResourceIdArray, entry->NumIds, [&](UNUM32 i, const UNUM32* id) {
        DecodeLine(context, nested, "pResourceId[%2u]\t= %u (%s)"_fmt, i, *id,
                   ObjectName(ObjectNameMap::ResourceNames, *id, "<UNKNOWN>"));
    });
}

void DecodeRscConflictList(const DecoderContext& context, const PDU_RSC_CONFLICT_DATA* entry)
{
    if (!context.IsOpen())
        return;
    if (!entry)
        return DecodeLine(context, ToTarget.Deeper(3), "%s\t= <NULL>"_fmt, "pConflictData");
    DecodeLine(context, ToTarget.Deeper(3), "%s:\t\thMod=%s, ResourceId=%s(%u)"_fmt, "pConflictData",
               HandleText(entry->hMod),
               ObjectName(ObjectNameMap::ResourceNames, entry->ResourceId, "<UNKNOWN>"), entry->ResourceId);
}

void DecodeModuleData(const DecoderContext& context, Arrow arrow, const PDU_MODULE_DATA* entry)
{
    if (!context.IsOpen())
        return;
    if (!entry)
        return DecodeLine(context, arrow, "pModuleData\t= <NULL>"_fmt);
    DecodeLine(context, arrow, "ModuleTypeId         \t= %u"_fmt, entry->ModuleTypeId);
    DecodeLine(context, arrow, "hMod                 \t= %s"_fmt, HandleText(entry->hMod));
    DecodeLine(context, arrow, "pVendorModuleName    \t= \"%s\""_fmt, TextOrNull(entry->pVendorModuleName));
    DecodeLine(context, arrow, "pVendorAdditionalInfo\t= \"%s\""_fmt,
               TextOrNull(entry->pVendorAdditionalInfo));
    DecodeLine(context, arrow, "ModuleStatus         \t= %s (0x%04X)"_fmt,
               NameOf(StatusCodeNames, entry->ModuleStatus, "<NULL>"), entry->ModuleStatus);
}

void DecodeModuleIdList(const DecoderContext& context, const PDU_MODULE_ITEM* item)
{
    if (!context.IsOpen())
        return;
    if (item->ItemType != PDU_IT_MODULE_ID)
        DecodeLine(context, FromTarget, "WARNING: Wrong item type %u, should be %u!"_fmt, item->ItemType,
                   PDU_IT_MODULE_ID);
    if (!item->pModuleData)
        return DecodeLine(context, FromTarget, "pItem->pModuleData\t= <NULL>"_fmt);
    if (item->NumEntries == 0)
        return DecodeLine(context, FromTarget, "Num Modules \t= %u"_fmt, item->NumEntries);
    ForEachEntry(context, item->pModuleData, item->NumEntries, [&](UNUM32 i, const PDU_MODULE_DATA* entry) {
        DecodeLine(context, FromTarget, "Module entry\t= %u of %u"_fmt, i + 1, item->NumEntries);
        DecodeModuleData(context, FromTarget.Deeper(), entry);
    });
}

} // namespace marvane
