// Control data of a ComPrimitive: cycles, flags, expected responses.
#include <cstdlib>

#include "logger/decode/decode.h"
#include "logger/state/settings.h"

namespace marvane {

namespace {

constexpr Arrow Nested = ToTarget.Deeper();

void CyclesLine(const DecoderContext& context, std::string_view label, SNUM32 cycles)
{
    if (cycles == -2)
        DecodeLine(context, ToTarget, "%s<MULTIPLE>"_fmt, label);
    else if (cycles == -1)
        DecodeLine(context, ToTarget, "%s<INFINITE>"_fmt, label);
    else
        DecodeLine(context, ToTarget, "%s%d"_fmt, label, cycles);
}

/// The line with the identifiers of one expected response. Ends the process if it reaches 700 characters.
class UridLine
{
public:
    explicit UridLine(UNUM32 count)
    {
        end_ = FormatText(text_, std::end(text_), "%s URIDs[%03u]: "_fmt, Nested.Deeper().Text(), count);
    }
    void Add(UNUM32 identifier, bool last)
    {
        end_ = FormatText(end_, std::end(text_), "%4s%c"_fmt, UridText(identifier), last ? ' ' : ',');
        EndIfTooLong();
    }
    std::string_view Finish()
    {
        *end_++ = '\n';
        EndIfTooLong();
        return {text_, static_cast<std::size_t>(end_ - text_)};
    }

private:
    // A list that is cut would be a log that is not true, and larger ones are not written: the process ends
    // before anything of it reaches the log.
    void EndIfTooLong() const
    {
        if (end_ == std::end(text_))
            std::abort();
    }

    char text_[700];
    char* end_ = text_;
};

void UridList(const DecoderContext& context, const PDU_EXP_RESP_DATA& response)
{
    context.Text.AddStamp();
    UridLine line(response.NumUniqueRespIds);
    for (UNUM32 i = 0; i < response.NumUniqueRespIds; ++i)
        line.Add(response.pUniqueRespIds[i], i + 1 == response.NumUniqueRespIds);
    context.Text.Add("%s"_fmt, line.Finish());
}

/// False if the remaining responses must not be visited.
bool DecodeExpectedResponse(const DecoderContext& context, const PDU_EXP_RESP_DATA& response)
{
    const UNUM32 length = response.NumMaskPatternBytes;
    DecodeLine(context, Nested, "Type = %u (%s), AcceptanceId = %u, Num match bytes\t= %u"_fmt,
               response.ResponseType, response.ResponseType == 0 ? "POSITIVE" : "NEGATIVE",
               response.AcceptanceId, length);
    if (length != 0) {
        DumpBuffer(context, Nested, "MaskData   ", response.pMaskData, length, length);
        DumpBuffer(context, Nested, "PatternData", response.pPatternData, length, length);
    }
    if (response.NumUniqueRespIds == 0)
        DecodeLine(context, Nested, "Num URIDs      \t= %u"_fmt, response.NumUniqueRespIds);
    else if (!response.pUniqueRespIds) {
        DecodeLine(context, Nested, "WARNING: NumURIDs=%u - but data array is NULL!"_fmt,
                   response.NumUniqueRespIds);
        return false;
    } else
        UridList(context, response);
    return true;
}

void DecodeExpectedResponses(const DecoderContext& context, const PDU_COP_CTRL_DATA& control)
{
    const UNUM32 count = control.NumPossibleExpectedResponses;
    const PDU_EXP_RESP_DATA* const responses = control.pExpectedResponseArray;
    if (count == 0)
        return DecodeLine(context, ToTarget, "NumExpResps     \t= %u"_fmt, count);
    if (!responses) {
        DecodeLine(context, ToTarget, "pCoPCtrlData->pExpectedRspArray\t= <NULL>"_fmt);
        return DecodeLine(context, ToTarget, "**ERROR** expected responses with no array! (%8p, %u)"_fmt,
                          responses, count);
    }
    for (UNUM32 i = 0; i < count && context.Text.HasRoom(); ++i) {
        DecodeLine(context, ToTarget, "Expected response\t= %u of %u"_fmt, i + 1, count);
        if (!DecodeExpectedResponse(context, responses[i]))
            return;
    }
}

} // namespace

void DecodeCopCtrlData(const DecoderContext& context, const PDU_COP_CTRL_DATA* control)
{
    if (!context.IsOpen())
        return;
    if (!control)
        return DecodeLine(context, ToTarget, "pCoPCtrlData    \t= <NULL>"_fmt);
    DecodeLine(context, ToTarget, "Time            \t= %u"_fmt, control->Time);
    CyclesLine(context, "NumSendCycles   \t= ", control->NumSendCycles);
    CyclesLine(context, "NumReceiveCycles\t= ", control->NumReceiveCycles);
    DecodeLine(context, ToTarget, "TempParamUpdate \t= %u"_fmt, control->TempParamUpdate);
    DecodeFlagData(context, ToTarget, "pCoPCtrlData->TxFlag", &control->TxFlag, TxFlagNames);
    DecodeExpectedResponses(context, *control);
}

void DecodeComPrimitive(const DecoderContext& context, const PDU_COP_CTRL_DATA* control, const UNUM8* data,
                        UNUM32 size)
{
    if (Setting(NumericKey::LogEnabled) != 1)
        return;
    DecodeCopCtrlData(context, control);
    if (data)
        DumpBuffer(context, ToTarget, "pCoPData", data, size, Setting(NumericKey::LogMaxPduBuff));
}

} // namespace marvane
