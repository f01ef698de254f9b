#include <algorithm>

#include "logger/decode/decode.h"
#include "logger/state/settings.h"

namespace marvane {

namespace {

constexpr std::size_t Indent = IndentIndex(DirectionOut, 1);

void DecodeFlagBits(const DecoderFrame& frame, const PDU_FLAG_DATA& flags, std::size_t indent,
                    const BitNames& names)
{
    constexpr UNUM32 namedBytes = static_cast<UNUM32>(std::tuple_size_v<BitNames>) / 8;
    for (UNUM32 byte = 0; byte < std::min(flags.NumFlagBytes, namedBytes); ++byte)
        for (UNUM32 bit = 0; bit < 8; ++bit) {
            const std::string_view name = names[byte * 8 + bit];
            const UNUM32 mask = 1u << bit;
            if ((flags.pFlagData[byte] & mask) != 0 && !name.empty())
                DecodeLine(frame, indent, "[%02x] 0x%02X = %s"_fmt, byte, mask, name);
        }
}

void DecodeExtraInfo(const DecoderFrame& frame, const PDU_EXTRA_INFO& info)
{
    DecodeLine(frame, Indent, "pExtraInfo            \t= %8p"_fmt, &info);
    if (info.NumHeaderBytes == 0)
        DecodeLine(frame, Indent, "Num Header bytes\t= %u"_fmt, info.NumHeaderBytes);
    else if (!info.pHeaderBytes)
        DecodeLine(frame, Indent, "pResult->pExtraInfo->pHeaderBytes\t= <NULL> (size=%u)"_fmt,
                   info.NumHeaderBytes);
    else
        DumpBuffer(frame, DirectionOut, 1, "pHeaderBytes", info.pHeaderBytes, info.NumHeaderBytes,
                   info.NumHeaderBytes);
    if (info.NumFooterBytes == 0)
        DecodeLine(frame, Indent, "Footer bytes    \t= %u"_fmt, info.NumFooterBytes);
    else
        DumpBuffer(frame, DirectionOut, 1, "pFooterBytes", info.pFooterBytes, info.NumFooterBytes,
                   info.NumFooterBytes);
}

void DecodeResult(const DecoderFrame& frame, const PDU_RESULT_DATA& result)
{
    DecodeFlagData(frame, &result.RxFlag, "pResult->RxFlag", DirectionOut, 1, RxFlagNames);
    DecodeLine(frame, Indent, "UniqueRespIdentifier\t= %s"_fmt, UridText(result.UniqueRespIdentifier));
    DecodeLine(frame, Indent, "AcceptanceId        \t= %u"_fmt, result.AcceptanceId);
    DecodeFlagData(frame, &result.TimestampFlags, "pResult->TimestampFlags", DirectionOut, 1,
                   TimestampFlagNames);
    DecodeLine(frame, Indent, "TxMsgDoneTimestamp  \t= %u"_fmt, result.TxMsgDoneTimestamp);
    DecodeLine(frame, Indent, "StartMsgTimestamp   \t= %u"_fmt, result.StartMsgTimestamp);
    if (result.pExtraInfo)
        DecodeExtraInfo(frame, *result.pExtraInfo);
    DecodeLine(frame, Indent, "DataSize\t\t= %u"_fmt, result.NumDataBytes);
    DumpBuffer(frame, DirectionOut, 1, "pDataBytes", result.pDataBytes, result.NumDataBytes,
               Setting(NumericKey::LogMaxPduBuff));
}

} // namespace

void DecodeFlagData(const DecoderFrame& frame, const PDU_FLAG_DATA* flags, const char* label, int direction,
                    int level, const BitNames& names)
{
    if (!frame.IsOpen())
        return;
    const char* const name = TextOrNull(label);
    const std::size_t indent = IndentIndex(direction, level);
    if (!flags)
        return DecodeLine(frame, indent, "%s\t= <NULL>"_fmt, name);
    if (flags->NumFlagBytes == 0)
        return DecodeLine(frame, indent, "%s->NumFlagBytes\t= %u"_fmt, name, flags->NumFlagBytes);
    if (!flags->pFlagData) {
        DecodeLine(frame, indent, "%s->pFlagData\t= <NULL>"_fmt, name);
        return DecodeLine(frame, indent, "%s *** WARNING: NumFlagBytes != 0 BUT pFlagData= <NULL> ***"_fmt,
                          name);
    }
    DumpBuffer(frame, direction, level + 1, name, flags->pFlagData, flags->NumFlagBytes, flags->NumFlagBytes);
    DecodeFlagBits(frame, *flags, IndentIndex(direction, level + 2), names);
}

void DecodeEventItem(const DecoderFrame& frame, T_PDU_IT itemType, const void* data)
{
    if (!frame.IsOpen())
        return;
    if (!data)
        return DecodeLine(frame, Indent, "Data = <NULL>"_fmt);
    switch (itemType) {
    case PDU_IT_RESULT:
        return DecodeResult(frame, *static_cast<const PDU_RESULT_DATA*>(data));
    case PDU_IT_STATUS: {
        const T_PDU_STATUS status = *static_cast<const T_PDU_STATUS*>(data);
        return DecodeLine(frame, Indent, "Status        \t= %s (0x%04X)"_fmt,
                          NameOf(StatusCodeNames, status, "<NULL>"), status);
    }
    case PDU_IT_ERROR: {
        const auto& error = *static_cast<const PDU_ERROR_DATA*>(data);
        return DecodeLine(frame, Indent, "ErrorCode = %s (0x%04X), ExtraErrorData = %u"_fmt,
                          NameOf(EventErrorNames, error.ErrorCodeId, "<UNKNOWN ERROR>"), error.ErrorCodeId,
                          error.ExtraErrorInfoId);
    }
    case PDU_IT_INFO: {
        const auto& info = *static_cast<const PDU_INFO_DATA*>(data);
        return DecodeLine(frame, Indent, "Code = %s (%u), ExtraInfoData = %u"_fmt,
                          NameOf(InfoCodeNames, info.InfoCode, "<UNKNOWN CODE>"), info.InfoCode,
                          info.ExtraInfoData);
    }
    default:
        return DecodeLine(frame, Indent, "Unknown ItemType = %u"_fmt, itemType);
    }
}

} // namespace marvane
