#include <initializer_list>
#include <utility>

#include "pdu/code_names.h"

namespace marvane {

namespace {

consteval BitNames Bits(std::initializer_list<std::pair<std::size_t, std::string_view>> named)
{
    BitNames names;
    for (const auto& [bit, name] : named)
        names[bit] = name;
    return names;
}

} // namespace

constinit const BitNames TxFlagNames = Bits({
    {5, "ENABLE_EXTRA_INFO"},
    {6, "SUPPRESS_POS_RESP"},
    {16, "CAN_29BIT_ID"},
    {17, "WAIT_P3_MIN_ONLY"},
    {30, "ISO15765_ADDR_TYPE"},
    {31, "ISO15765_FRAME_PAD"},
});

constinit const BitNames CllCreateFlagNames = Bits({
    {6, "ChecksumMode"},
    {7, "RawMode"},
});

constinit const BitNames RxFlagNames = Bits({
    {7, "REMOTE_FRAME"},
    {8, "SW_CAN_HV_RX"},
    {9, "ECU_TIMING_CHANGE"},
    {10, "SPD_CHG_EVENT"},
    {16, "CAN_29BIT_ID"},
    {24, "TX_MSG_TYPE"},
    {25, "START_OF_MESSAGE"},
    {26, "RX_BREAK"},
    {27, "TX_INDICATION"},
    {28, "ISO15765_PADDING_ERROR"},
    {30, "CAN_SEGMENTATION"},
    {31, "ISO15765_ADDR_TYPE"},
});

constinit const BitNames TimestampFlagNames = Bits({
    {6, "StartMsgTimestampIndicator"},
    {7, "TxMsgDoneTimestampIndicator"},
});

} // namespace marvane
