// Event items: results, status changes, errors, information.
#include <algorithm>

#include "logger/decode/decode.h"
#include "logger/state/settings.h"

namespace marvane {

namespace {

constexpr Arrow Nested = FromTarget.Deeper();

void DecodeFlagBits(const DecoderContext& context, Arrow arrow, const PDU_FLAG_DATA& flags,
                    const BitNames& names)
{
    constexpr UNUM32 namedBytes = static_cast<UNUM32>(std::tuple_size_v<BitNames>) / 8;
    for (UNUM32 byte = 0; byte < std::min(flags.NumFlagBytes, namedBytes); ++byte)
        for (UNUM32 bit = 0; bit < 8; ++bit) {
            const std::string_view name = names[byte * 8 + bit];
            const UNUM32 mask = 1u << bit;
            if ((flags.pFlagData[byte] & mask) != 0 && !name.empty())
                DecodeLine(context, arrow, "[%02x] 0x%02X = %s"_fmt, byte, mask, name);
        }
}

void DecodeExtraInfo(const DecoderContext& context, const PDU_EXTRA_INFO& info)
{
    DecodeLine(context, Nested, "pExtraInfo            \t= %8p"_fmt, &info);
    if (info.NumHeaderBytes == 0)
        DecodeLine(context, Nested, "Num Header bytes\t= %u"_fmt, info.NumHeaderBytes);
    else if (!info.pHeaderBytes)
        DecodeLine(context, Nested, "pResult->pExtraInfo->pHeaderBytes\t= <NULL> (size=%u)"_fmt,
                   info.NumHeaderBytes);
    else
        DumpBuffer(context, Nested, "pHeaderBytes", info.pHeaderBytes, info.NumHeaderBytes,
                   info.NumHeaderBytes);
    if (info.NumFooterBytes == 0)
        DecodeLine(context, Nested, "Footer bytes    \t= %u"_fmt, info.NumFooterBytes);
    else
        DumpBuffer(context, Nested, "pFooterBytes", info.pFooterBytes, info.NumFooterBytes,
                   info.NumFooterBytes);
}

void DecodeResult(const DecoderContext& context, const PDU_RESULT_DATA& result)
{
    DecodeFlagData(context, Nested, "pResult->RxFlag", &result.RxFlag, RxFlagNames);
    DecodeLine(context, Nested, "UniqueRespIdentifier\t= %s"_fmt, UridText(result.UniqueRespIdentifier));
    DecodeLine(context, Nested, "AcceptanceId        \t= %u"_fmt, result.AcceptanceId);
    DecodeFlagData(context, Nested, "pResult->TimestampFlags", &result.TimestampFlags, TimestampFlagNames);
    DecodeLine(context, Nested, "TxMsgDoneTimestamp  \t= %u"_fmt, result.TxMsgDoneTimestamp);
    DecodeLine(context, Nested, "StartMsgTimestamp   \t= %u"_fmt, result.StartMsgTimestamp);
    if (result.pExtraInfo)
        DecodeExtraInfo(context, *result.pExtraInfo);
    DecodeLine(context, Nested, "DataSize\t\t= %u"_fmt, result.NumDataBytes);
    DumpBuffer(context, Nested, "pDataBytes", result.pDataBytes, result.NumDataBytes,
               Setting(NumericKey::LogMaxPduBuff));
}

} // namespace

void DecodeFlagData(const DecoderContext& context, Arrow arrow, const char* label, const PDU_FLAG_DATA* flags,
                    const BitNames& names)
{
    if (!context.IsOpen())
        return;
    const char* const name = TextOrNull(label);
    if (!flags)
        return DecodeLine(context, arrow, "%s\t= <NULL>"_fmt, name);
    if (flags->NumFlagBytes == 0)
        return DecodeLine(context, arrow, "%s->NumFlagBytes\t= %u"_fmt, name, flags->NumFlagBytes);
    if (!flags->pFlagData) {
        DecodeLine(context, arrow, "%s->pFlagData\t= <NULL>"_fmt, name);
        return DecodeLine(context, arrow, "%s *** WARNING: NumFlagBytes != 0 BUT pFlagData= <NULL> ***"_fmt,
                          name);
    }
    DumpBuffer(context, arrow.Deeper(), name, flags->pFlagData, flags->NumFlagBytes, flags->NumFlagBytes);
    DecodeFlagBits(context, arrow.Deeper(2), *flags, names);
}

void DecodeEventItem(const DecoderContext& context, T_PDU_IT itemType, const void* data)
{
    if (!context.IsOpen())
        return;
    if (!data)
        return DecodeLine(context, Nested, "Data = <NULL>"_fmt);
    switch (itemType) {
    case PDU_IT_RESULT:
        return DecodeResult(context, *static_cast<const PDU_RESULT_DATA*>(data));
    case PDU_IT_STATUS: {
        const T_PDU_STATUS status = *static_cast<const T_PDU_STATUS*>(data);
        return DecodeLine(context, Nested, "Status        \t= %s (0x%04X)"_fmt,
                          NameOf(StatusCodeNames, status, "<NULL>"), status);
    }
    case PDU_IT_ERROR: {
        const auto& error = *static_cast<const PDU_ERROR_DATA*>(data);
        return DecodeLine(context, Nested, "ErrorCode = %s (0x%04X), ExtraErrorData = %u"_fmt,
                          NameOf(EventErrorNames, error.ErrorCodeId, "<UNKNOWN ERROR>"), error.ErrorCodeId,
                          error.ExtraErrorInfoId);
    }
    case PDU_IT_INFO: {
        const auto& info = *static_cast<const PDU_INFO_DATA*>(data);
        return DecodeLine(context, Nested, "Code = %s (%u), ExtraInfoData = %u"_fmt,
                          NameOf(InfoCodeNames, info.InfoCode, "<UNKNOWN CODE>"), info.InfoCode,
                          info.ExtraInfoData);
    }
    default:
        return DecodeLine(context, Nested, "Unknown ItemType = %u"_fmt, itemType);
    }
}

void DecodeFetchedEvent(const DecoderContext& context, const PDU_EVENT_ITEM* item)
{
    if (!context.IsOpen())
        return;
    if (!item)
        return DecodeLine(context, FromTarget, "*ppEventItem\t= <NULL>"_fmt);
    DecodeLine(context, FromTarget,
               "*ppEventItem (%8p) type= %s (0x%04X), hCoP=%s, Timestamp = %u, pCoPTag = %8p"_fmt, item,
               NameOf(ItemTypeNames, item->ItemType, "<NULL>"), item->ItemType, HandleText(item->hCop),
               item->Timestamp, item->pCoPTag);
    DecodeEventItem(context, item->ItemType, item->pData);
}

} // namespace marvane
