// ComParams: single values, byte fields, long fields and structures.
#include <cstring>

#include "logger/decode/decode.h"
#include "logger/decode/object_names.h"

namespace marvane {

namespace {

std::string_view ComParamName(UNUM32 id)
{
    return ObjectName(ObjectNameMap::ComParamNames, id, "[NOT YET READ]");
}

/// Reads a number that need not be aligned.
template <class Number> Number Read(const void* data)
{
    Number number;
    std::memcpy(&number, data, sizeof number);
    return number;
}

} // namespace

void DecodeComParam(const DecoderContext& context, Arrow arrow, const PDU_PARAM_ITEM* item)
{
    if (!context.IsOpen())
        return;
    if (!item)
        return DecodeLine(context, arrow, "ComParam pointer\t= <NULL>"_fmt);
    DecodeLine(context, arrow,
               "ComParam (%8p) Id = %s (id=%u), DataType = %s (0x%04X), Class = %s (0x%04X)"_fmt, item,
               ComParamName(item->ComParamId), item->ComParamId,
               NameOf(ComParamTypeNames, item->ComParamDataType, "<UNKNOWN>"), item->ComParamDataType,
               NameOf(ComParamClassNames, item->ComParamClass, "<UNKNOWN>"), item->ComParamClass);
    DecodeParamValue(context, arrow.Deeper(), item->ComParamId, item->ComParamDataType, item->pComParamData);
}

void DecodeParamValue(const DecoderContext& context, Arrow arrow, UNUM32 id, T_PDU_PT type, const void* data)
{
    if (!LoggingActive())
        return;
    if (!data)
        return DecodeLine(context, arrow, "pDataVal\t= <NULL>"_fmt);
    const std::string_view name = ComParamName(id);
    // A negative narrow number is shown in hexadecimal with all eight digits, since it is widened. Kept: log
    // readers match it.
    const auto number = [&](auto format, auto value) {
        DecodeLine(context, arrow, format, name, id, value, value);
    };
    switch (type) {
    case PDU_PT_UNUM8:
        return number("%-30s (id=%3u): =\t(u 8)%10u\t(0x%02X)"_fmt, UNUM32{Read<UNUM8>(data)});
    case PDU_PT_SNUM8:
        return number("%-30s (id=%3u): =\t(s 8)%10d\t(0x%02X)"_fmt, SNUM32{Read<SNUM8>(data)});
    case PDU_PT_UNUM16:
        return number("%-30s (id=%3u): =\t(u16)%10u\t(0x%04X)"_fmt, UNUM32{Read<UNUM16>(data)});
    case PDU_PT_SNUM16:
        return number("%-30s (id=%3u): =\t(s16)%10d\t(0x%04X)"_fmt, SNUM32{Read<SNUM16>(data)});
    case PDU_PT_UNUM32:
        return number("%-30s (id=%3u): =\t(u32)%10u\t(0x%08X)"_fmt, Read<UNUM32>(data));
    case PDU_PT_SNUM32:
        return number("%-30s (id=%3u): =\t(s32)%10d\t(0x%08X)"_fmt, Read<SNUM32>(data));
    case PDU_PT_BYTEFIELD:
        return DecodeByteField(context, arrow, id, static_cast<const PDU_PARAM_BYTEFIELD_DATA*>(data));
    case PDU_PT_STRUCTFIELD:
        return DecodeStructField(context, arrow, id, static_cast<const PDU_PARAM_STRUCTFIELD_DATA*>(data));
    case PDU_PT_LONGFIELD:
        return DecodeLongField(context, arrow, id, static_cast<const PDU_PARAM_LONGFIELD_DATA*>(data));
    default:
        return DecodeLine(context, arrow, "%s (id=%3u): \tunknown type= %s (%u)"_fmt, name, id,
                          NameOf(ComParamTypeNames, type, "<UNKNOWN>"), type);
    }
}

void DecodeByteField(const DecoderContext& context, Arrow arrow, UNUM32 id,
                     const PDU_PARAM_BYTEFIELD_DATA* field)
{
    if (!context.IsOpen())
        return;
    if (!field)
        return DecodeLine(context, arrow, "pByteField\t= <NULL>"_fmt);
    DecodeLine(context, arrow, "%s (id=%u): MaxLen\t= %u, ActLen\t= %u"_fmt, ComParamName(id), id,
               field->ParamMaxLen, field->ParamActLen);
    DumpBuffer(context, arrow, "pDataArray", field->pDataArray, field->ParamActLen, field->ParamActLen);
}

void DecodeLongField(const DecoderContext& context, Arrow arrow, UNUM32 id,
                     const PDU_PARAM_LONGFIELD_DATA* field)
{
    if (!context.IsOpen())
        return;
    const Arrow nested = arrow.Deeper();
    if (!field)
        return DecodeLine(context, nested, "pLongField\t= <NULL>"_fmt);
    DecodeLine(context, nested, "Id = %s (id=%u): MaxLen\t= %u, ActLen\t= %u"_fmt, ComParamName(id), id,
               field->ParamMaxLen, field->ParamActLen);
    const UNUM32 bytes = field->ParamActLen * static_cast<UNUM32>(sizeof(UNUM32));
    DumpBuffer(context, nested, "pDataArray", reinterpret_cast<const UNUM8*>(field->pDataArray), bytes,
               bytes);
}

void DecodeStructField(const DecoderContext& context, Arrow arrow, UNUM32 id,
                       const PDU_PARAM_STRUCTFIELD_DATA* field)
{
    if (!context.IsOpen())
        return;
    const Arrow nested = arrow.Deeper();
    if (!field)
        return DecodeLine(context, nested, "pStructField\t= <NULL>"_fmt);
    DecodeLine(context, nested, "Id = %s (id=%u): ComParamStructType\t= %d"_fmt, ComParamName(id), id,
               field->ComParamStructType);
    DecodeLine(context, nested, "MaxEntries\t= %u"_fmt, field->ParamMaxEntries);
    DecodeLine(context, nested, "ActEntries\t= %u"_fmt, field->ParamActEntries);
    // Only the first element is shown.
    if (field->ComParamStructType == PDU_CPST_SESSION_TIMING)
        DecodeSessionTiming(context, nested,
                            static_cast<const PDU_PARAM_STRUCT_SESSION_TIMING*>(field->pStructArray));
    else if (field->ComParamStructType == PDU_CPST_ACCESS_TIMING)
        DecodeAccessTiming(context, nested,
                           static_cast<const PDU_PARAM_STRUCT_ACCESS_TIMING*>(field->pStructArray));
}

void DecodeSessionTiming(const DecoderContext& context, Arrow arrow,
                         const PDU_PARAM_STRUCT_SESSION_TIMING* timing)
{
    if (!context.IsOpen())
        return;
    const Arrow nested = arrow.Deeper();
    if (!timing)
        return DecodeLine(context, nested, "pSessionTiming\t= <NULL>"_fmt);
    DecodeLine(context, nested, "session\t= %hu"_fmt, timing->session);
    DecodeLine(context, nested, "P2Max_high\t= %hhu"_fmt, timing->P2Max_high);
    DecodeLine(context, nested, "P2Max_low\t= %hhu"_fmt, timing->P2Max_low);
    DecodeLine(context, nested, "P2Star_high\t= %hhu"_fmt, timing->P2Star_high);
    DecodeLine(context, nested, "P2Star_low\t= %hhu"_fmt, timing->P2Star_low);
}

void DecodeAccessTiming(const DecoderContext& context, Arrow arrow,
                        const PDU_PARAM_STRUCT_ACCESS_TIMING* timing)
{
    if (!context.IsOpen())
        return;
    const Arrow nested = arrow.Deeper();
    if (!timing)
        return DecodeLine(context, nested, "pAccessTiming\t= <NULL>"_fmt);
    DecodeLine(context, nested, "P2Min\t= %hhu"_fmt, timing->P2Min);
    DecodeLine(context, nested, "P2Max\t= %hhu"_fmt, timing->P2Max);
    DecodeLine(context, nested, "P3Min\t= %hhu"_fmt, timing->P3Min);
    DecodeLine(context, nested, "P3Max\t= %hhu"_fmt, timing->P3Max);
    DecodeLine(context, nested, "P4Min\t= %hhu"_fmt, timing->P4Min);
    DecodeLine(context, nested, "TimingSet\t= %hhu"_fmt, timing->TimingSet);
    DecodeLine(context, nested.Deeper(), "%s"_fmt,
               NameOf(TimingSetNames, timing->TimingSet, "UNKNOWN \"TimingSet\" SPECIFIED"));
}

} // namespace marvane
