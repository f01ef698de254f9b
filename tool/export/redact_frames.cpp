// Secrets in messages that are split over frames.
#include <algorithm>

#include "tool/export/redactor.h"

namespace marvane::tool {

using words::Dialect;
using words::Secret;
using words::SecretPart;

/// Redacts a frame of a message that is split over several. False if the listing is none.
/// What such a message holds besides its first bytes can't be told from a frame, so all of it goes unless it
/// is a secret of a kind that is not wanted. No piece of it is learned: it may be the beginning of many
/// things.
bool Redactor::RedactSegment(const Listing& listing, std::uint8_t* out)
{
    const bool isPlain = listing.Label == "pCoPData" || listing.Label == "pDataBytes";
    const read::Bytes bytes = listing.Bytes;
    if (listing.IsTail || bytes.empty() || !(isPlain || listing.IsOfReport) ||
        (isPlain && BeginsMessage(bytes[0])))
        return false;
    const std::optional<std::uint32_t> address = listing.IsOfReport ? listing.Address : std::nullopt;
    // First of all what is expected: the bytes of a consecutive frame may look like another frame.
    SegmentedMessage* message = segments_.Find(listing.Way, address, bytes, isPlain);
    TransportFrame frame;
    if (message)
        frame.Begin = message->Prefix + 1;
    else
        frame = FindFrame(bytes, isPlain);
    if (!isPlain)
        orphans_.LearnReport(listing.Title, bytes, message ? FrameKind::Consecutive : frame.Kind);
    if (frame.Kind == FrameKind::First) {
        message = &segments_.Begin(SegmentedMessages::KeyOf(listing.Way, address, bytes.first(frame.Prefix)),
                                   frame);
        message->SecretBegin = std::min(message->SecretBegin,
                                        SecretBeginOf(listing.Way, bytes.subspan(frame.Begin), frame.Total));
    }
    if (!message)
        return frame.Kind == FrameKind::None && RedactOrphan(listing, isPlain, out);
    const std::uint64_t count =
        std::min<std::uint64_t>(bytes.size() - frame.Begin, message->Total - message->Done);
    const std::uint64_t kept =
        std::min(count, message->SecretBegin - std::min(message->SecretBegin, message->Done));
    const auto begin = frame.Begin + static_cast<std::size_t>(kept);
    Replace(bytes.subspan(begin, static_cast<std::size_t>(count - kept)), out + begin);
    message->Done += count;
    return true;
}

/// Whether bytes are a request that the application sent, perhaps after a CAN identifier.
bool Redactor::IsRequest(read::Bytes bytes) const
{
    return orphans_.IsRequest(values_.Hash(bytes)) ||
           (bytes.size() > CanIdentifierLength &&
            orphans_.IsRequest(values_.Hash(bytes.subspan(CanIdentifierLength))));
}

/// Redacts what may be a frame of a message whose first one is not in the log: nobody can tell that it is
/// harmless. False if it is none.
bool Redactor::RedactOrphan(const Listing& listing, bool isPlain, std::uint8_t* out)
{
    const read::Bytes bytes = listing.Bytes;
    if (!isPlain && listing.Way == Direction::ToTarget && IsRequest(bytes))
        return false;
    const TransportFrame frame =
        isPlain ? OrphanFrames::FindInPayload(bytes) : orphans_.FindInReport(listing.Title, bytes);
    if (frame.Kind == FrameKind::None)
        return false;
    Replace(bytes.subspan(frame.Begin), out + frame.Begin);
    return true;
}

/// Where the secret of a message begins of which the first bytes are known; UINT64_MAX if nothing of it goes.
std::uint64_t Redactor::SecretBeginOf(Direction way, read::Bytes head, std::uint64_t total) const
{
    constexpr std::uint64_t identifier = 3; // with the service before it
    constexpr std::uint64_t longest = 64;   // no secret begins later
    std::vector<std::uint8_t> message(head.begin(), head.end());
    message.resize(static_cast<std::size_t>(std::max<std::uint64_t>(head.size(), std::min(total, longest))));
    const SecretPart part =
        way == Direction::ToTarget ? words::SecretOfRequest(Dialect::Uds, message) : SecretOfAnswer(message);
    if (part.What == Secret::None)
        return identifier;
    return Takes(part.What) ? part.Begin : UINT64_MAX;
}

} // namespace marvane::tool
