#include "tool/export/transport_frames.h"

#include <algorithm>

#include "tool/words/services.h"

namespace marvane::tool {

namespace {

using words::Dialect;

constexpr std::uint8_t NegativeResponse = 0x7F;
constexpr std::uint8_t AnswerBit = 0x40;

/// Where a frame may begin: after a CAN identifier, after that and an address extension, at once, after an
/// address extension.
constexpr std::size_t Prefixes[] = {4, 5, 0, 1};

constexpr std::size_t LongLengths[] = {12, 16, 20, 24, 32, 48, 64}; // of CAN FD

TransportFrame SingleFrame(read::Bytes frame, std::size_t prefix)
{
    const bool isLong = frame[0] == 0 && frame.size() > ClassicFrameLength; // the length in a byte of its own
    const std::size_t head = isLong ? 2 : 1;
    const std::size_t length = isLong ? frame[1] : frame[0];
    const bool fits = length > 0 && length + head <= frame.size() &&
                      (length + head == frame.size() || IsWholeFrame(frame.size(), prefix));
    if (!fits || !BeginsMessage(frame[head]))
        return {};
    return {FrameKind::Single, prefix + head, prefix, length};
}

TransportFrame FirstFrame(read::Bytes frame, std::size_t prefix)
{
    std::uint64_t total = (frame[0] & 15u) << 8 | frame[1];
    std::size_t head = 2;
    if (total == 0) // four bytes of length
        for (; head < 6 && head < frame.size(); ++head)
            total = total << 8 | frame[head];
    const bool fits = IsWholeFrame(frame.size(), prefix) && total > frame.size() - head;
    if (!fits || !BeginsMessage(frame[head]))
        return {};
    return {FrameKind::First, prefix + head, prefix, total};
}

TransportFrame FrameAt(read::Bytes bytes, std::size_t prefix)
{
    constexpr std::size_t shortest = 2;
    if (bytes.size() < prefix + shortest)
        return {};
    const read::Bytes frame = bytes.subspan(prefix);
    switch (frame[0] >> 4) {
    case 0:
        return SingleFrame(frame, prefix);
    case 1:
        return FirstFrame(frame, prefix);
    default:
        return {};
    }
}

} // namespace

bool IsWholeFrame(std::size_t length, std::size_t prefix)
{
    // An address extension is a byte of the frame.
    const std::size_t whole = length + prefix % CanIdentifierLength;
    return whole == ClassicFrameLength || std::ranges::find(LongLengths, whole) != std::end(LongLengths);
}

bool BeginsMessage(std::uint8_t first)
{
    const auto isService = [](std::uint8_t sid) {
        return words::FindService(Dialect::Uds, sid) || words::FindService(Dialect::Obd, sid);
    };
    return first == NegativeResponse || isService(first) ||
           (first >= AnswerBit && isService(static_cast<std::uint8_t>(first - AnswerBit)));
}

TransportFrame FindFrame(read::Bytes bytes, bool needsIdentifier)
{
    for (const std::size_t prefix : Prefixes) {
        const bool isMeant = !needsIdentifier || prefix >= CanIdentifierLength;
        const TransportFrame frame = isMeant ? FrameAt(bytes, prefix) : TransportFrame();
        if (frame.Kind != FrameKind::None)
            return frame;
    }
    return {};
}

SegmentedMessages::Key SegmentedMessages::KeyOf(Direction way, std::optional<std::uint32_t> address,
                                                read::Bytes prefix)
{
    Key key = (way == Direction::ToTarget ? ">" : "<") + (address ? std::to_string(*address) : "") + ":";
    return key.append(prefix.begin(), prefix.end());
}

SegmentedMessage& SegmentedMessages::Begin(const Key& key, const TransportFrame& first)
{
    if (messages_.size() >= MostMessages)
        messages_.erase(messages_.begin());
    SegmentedMessage& message = messages_[key];
    const SegmentedMessage before = message;
    message = {0, first.Total, UINT64_MAX, first.Prefix};
    constexpr std::size_t nothing = 2; // a key that holds the way alone: whose frame it is can't be told
    if (key.size() == nothing && before.Done < before.Total) {
        message.Total += before.Total - before.Done;
        message.SecretBegin = before.SecretBegin;
    }
    return message;
}

SegmentedMessage* SegmentedMessages::Find(Direction way, std::optional<std::uint32_t> address,
                                          read::Bytes bytes, bool needsIdentifier)
{
    for (const std::size_t prefix : Prefixes) {
        if (needsIdentifier && prefix < CanIdentifierLength)
            continue;
        if (bytes.size() <= prefix + 1 || bytes[prefix] >> 4 != ConsecutiveFrame)
            continue;
        const auto found = messages_.find(KeyOf(way, address, bytes.first(prefix)));
        if (found != messages_.end() && found->second.Prefix == prefix &&
            found->second.Done < found->second.Total)
            return &found->second;
    }
    return nullptr;
}

} // namespace marvane::tool
