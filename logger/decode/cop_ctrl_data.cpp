#include <cstdlib>

#include "logger/decode/decode.h"

namespace marvane {

namespace {

constexpr std::size_t Indent = IndentIndex(DirectionIn, 0);
constexpr std::size_t Nested = IndentIndex(DirectionIn, 1);

void CyclesLine(const DecoderFrame& frame, std::string_view label, SNUM32 cycles)
{
    if (cycles == -2)
        DecodeLine(frame, Indent, "%s<MULTIPLE>"_fmt, label);
    else if (cycles == -1)
        DecodeLine(frame, Indent, "%s<INFINITE>"_fmt, label);
    else
        DecodeLine(frame, Indent, "%s%d"_fmt, label, cycles);
}

/// The list of identifiers of one expected response, in one line. A list of 700 characters ends the process.
class UridLine
{
public:
    explicit UridLine(UNUM32 count)
    {
        end_ = FormatText(text_, std::end(text_), "%s URIDs[%03u]: "_fmt, IndentTable[2], count);
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
    // Nothing of such a list may reach the log, and there is no log of it that would be true.
    void EndIfTooLong() const
    {
        if (end_ == std::end(text_))
            std::abort();
    }

    char text_[700];
    char* end_ = text_;
};

void UridList(const DecoderFrame& frame, const PDU_EXP_RESP_DATA& response)
{
    LogStamp(frame.Text, frame.Time);
    UridLine line(response.NumUniqueRespIds);
    for (UNUM32 i = 0; i < response.NumUniqueRespIds; ++i)
        line.Add(response.pUniqueRespIds[i], i + 1 == response.NumUniqueRespIds);
    LogAppend(frame.Text, "%s"_fmt, line.Finish());
}

/// False if the walk over the responses ends here.
bool DecodeExpectedResponse(const DecoderFrame& frame, const PDU_EXP_RESP_DATA& response)
{
    const UNUM32 length = response.NumMaskPatternBytes;
    DecodeLine(frame, Nested, "Type = %u (%s), AcceptanceId = %u, Num match bytes\t= %u"_fmt,
               response.ResponseType, response.ResponseType == 0 ? "POSITIVE" : "NEGATIVE",
               response.AcceptanceId, length);
    if (length != 0) {
        DumpBuffer(frame, DirectionIn, 1, "MaskData   ", response.pMaskData, length, length);
        DumpBuffer(frame, DirectionIn, 1, "PatternData", response.pPatternData, length, length);
    }
    if (response.NumUniqueRespIds == 0)
        DecodeLine(frame, Nested, "Num URIDs      \t= %u"_fmt, response.NumUniqueRespIds);
    else if (!response.pUniqueRespIds) {
        DecodeLine(frame, Nested, "WARNING: NumURIDs=%u - but data array is NULL!"_fmt,
                   response.NumUniqueRespIds);
        return false;
    } else
        UridList(frame, response);
    return true;
}

void DecodeExpectedResponses(const DecoderFrame& frame, const PDU_COP_CTRL_DATA& control)
{
    const UNUM32 count = control.NumPossibleExpectedResponses;
    const PDU_EXP_RESP_DATA* const responses = control.pExpectedResponseArray;
    if (count == 0)
        return DecodeLine(frame, Indent, "NumExpResps     \t= %u"_fmt, count);
    if (!responses) {
        DecodeLine(frame, Indent, "pCoPCtrlData->pExpectedRspArray\t= <NULL>"_fmt);
        return DecodeLine(frame, Indent, "**ERROR** expected responses with no array! (%8p, %u)"_fmt,
                          responses, count);
    }
    for (UNUM32 i = 0; i < count && frame.Text.HasRoom(); ++i) {
        DecodeLine(frame, Indent, "Expected response\t= %u of %u"_fmt, i + 1, count);
        if (!DecodeExpectedResponse(frame, responses[i]))
            return;
    }
}

} // namespace

void DecodeCopCtrlData(const DecoderFrame& frame, const PDU_COP_CTRL_DATA* control)
{
    if (!frame.IsOpen())
        return;
    if (!control)
        return DecodeLine(frame, Indent, "pCoPCtrlData    \t= <NULL>"_fmt);
    DecodeLine(frame, Indent, "Time            \t= %u"_fmt, control->Time);
    CyclesLine(frame, "NumSendCycles   \t= ", control->NumSendCycles);
    CyclesLine(frame, "NumReceiveCycles\t= ", control->NumReceiveCycles);
    DecodeLine(frame, Indent, "TempParamUpdate \t= %u"_fmt, control->TempParamUpdate);
    DecodeFlagData(frame, &control->TxFlag, "pCoPCtrlData->TxFlag", DirectionIn, 0, TxFlagNames);
    DecodeExpectedResponses(frame, *control);
}

} // namespace marvane
