// Versions, and numbers that calls write back.
#include "logger/decode/decode.h"

namespace marvane {

namespace {

void VersionLine(const DecoderContext& context, const char* label, UNUM32 version)
{
    DecodeLine(context, FromTarget, "%-25s\t= %03u.%03u.%03u"_fmt, label, version >> 24, version >> 16 & 0xFF,
               version >> 8 & 0xFF);
}

void DateLine(const DecoderContext& context, const char* label, UNUM32 date)
{
    DecodeLine(context, FromTarget, "%-25s\t= %02u/%02u/%04u (week %u)"_fmt, label, date >> 8 & 0xFF,
               date >> 16 & 0xFF, (date >> 24) + 1970, date & 0xFF);
}

void NumberLine(const DecoderContext& context, const char* label, UNUM32 number)
{
    DecodeLine(context, FromTarget, "%-25s\t= %u"_fmt, label, number);
}

// The string may fill its whole array, without a NUL.
template <std::size_t Size>
void TextLine(const DecoderContext& context, const char* label, const CHAR8 (&text)[Size])
{
    DecodeLine(context, FromTarget, "%-25s\t= \"%s\""_fmt, label, VisibleText(text, Size));
}

} // namespace

void DecodeVersionData(const DecoderContext& context, const PDU_VERSION_DATA& data)
{
    // Don't touch the record unless it is to be shown: it may not be readable.
    if (!context.IsOpen())
        return;
    VersionLine(context, "MVCI_Part1StandardVersion", data.MVCI_Part1StandardVersion);
    VersionLine(context, "MVCI_Part2StandardVersion", data.MVCI_Part2StandardVersion);
    NumberLine(context, "HwSerialNumber", data.HwSerialNumber);
    TextLine(context, "HwName", data.HwName);
    VersionLine(context, "HwVersion", data.HwVersion);
    DateLine(context, "HwDate", data.HwDate);
    NumberLine(context, "HwInterface", data.HwInterface);
    TextLine(context, "FwName", data.FwName);
    VersionLine(context, "FwVersion", data.FwVersion);
    DateLine(context, "FwDate", data.FwDate);
    TextLine(context, "VendorName", data.VendorName);
    TextLine(context, "PDUApiSwName", data.PDUApiSwName);
    VersionLine(context, "PDUApiSwVersion", data.PDUApiSwVersion);
    DateLine(context, "PDUApiSwDate", data.PDUApiSwDate);
}

void DecodeWrittenBack(const DecoderContext& context, const char* label, const char* name,
                       const UNUM32* value)
{
    if (!context.IsOpen())
        return;
    if (value)
        DecodeLine(context, FromTarget, "%s\t= %u"_fmt, label, *value);
    else
        DecodeLine(context, FromTarget, "%s was NULL"_fmt, name);
}

} // namespace marvane
