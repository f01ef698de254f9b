// Secrets in the bytes of a listing.
#include <algorithm>

#include "tool/export/redactor.h"

namespace marvane::tool {

namespace {

using words::Dialect;
using words::Secret;
using words::SecretPart;

constexpr std::size_t MostReads = 64;

constexpr std::uint8_t ReadIdentifier = 0x22;

/// The diagnostic message in what a report shows: there may be a header before it, and padding after it.
read::Bytes MessageIn(read::Bytes bytes)
{
    constexpr std::size_t doipHeader = 12; // with both addresses
    if (bytes.size() > doipHeader && (bytes[0] ^ bytes[1]) == 0xFF)
        return bytes.subspan(doipHeader);
    if (const TransportFrame frame = FindFrame(bytes, false); frame.Kind == FrameKind::Single)
        return bytes.subspan(frame.Begin, static_cast<std::size_t>(frame.Total));
    return bytes.size() <= CanIdentifierLength || BeginsMessage(bytes[0])
               ? bytes
               : bytes.subspan(CanIdentifierLength);
}

} // namespace

/// The bytes of a listing without its secrets. `endsSecret`: the last byte is part of one.
std::vector<std::uint8_t> Redactor::Redacted(const Listing& listing, bool& endsSecret)
{
    std::vector<std::uint8_t> bytes = listing.Bytes;
    RedactKnown(listing.Bytes, bytes.data());
    if (RedactSegment(listing, bytes.data()))
        return bytes;
    const bool isPlain = listing.Label == "pCoPData" || listing.Label == "pDataBytes";
    const read::Bytes all = listing.Bytes;
    const read::Bytes message = listing.IsSecretTail || isPlain ? all : MessageIn(all);
    const SecretPart part =
        listing.IsSecretTail ? SecretPart{Secret::Transfer, 0} : SecretOf(listing, message);
    endsSecret = Takes(part.What) && part.Begin < message.size();
    if (endsSecret)
        RedactPart(part.What, message.subspan(part.Begin),
                   bytes.data() + (message.data() - all.data()) + part.Begin);
    if (listing.Label == "pCoPData" && !listing.IsTail)
        orphans_.LearnRequest(values_.Hash(all));
    const bool isRead = listing.Label == "pCoPData" && bytes.size() > 3 && bytes[0] == ReadIdentifier;
    if (isRead && reads_.size() == MostReads)
        reads_.pop_front();
    if (isRead)
        reads_.push_back(bytes);
    return bytes;
}

/// What is secret in the message of a listing. The protocol of its link does not matter: rather too much is
/// taken out than too little.
SecretPart Redactor::SecretOf(const Listing& listing, read::Bytes message) const
{
    const bool isMessage = listing.Label == "pCoPData" || listing.Label == "pDataBytes" || listing.IsOfReport;
    if (listing.IsTail || !isMessage)
        return {};
    return listing.Way == Direction::ToTarget ? words::SecretOfRequest(Dialect::Uds, message)
                                              : SecretOfAnswer(message);
}

SecretPart Redactor::SecretOfAnswer(read::Bytes answer) const
{
    constexpr std::size_t identifier = 3; // with the service before it
    for (auto request = reads_.rbegin(); request != reads_.rend(); ++request) {
        const bool isSame =
            answer.size() > identifier && (*request)[1] == answer[1] && (*request)[2] == answer[2];
        const SecretPart part = isSame ? words::SecretOfAnswer(Dialect::Uds, *request, answer) : SecretPart();
        if (part.What != Secret::None)
            return part;
    }
    const SecretPart part = words::SecretOfAnswer(Dialect::Uds, {}, answer);
    return part.What == Secret::None ? words::SecretOfAnswer(Dialect::Obd, {}, answer) : part;
}

void Redactor::Replace(read::Bytes secret, std::uint8_t* out)
{
    const std::vector<std::uint8_t> other = values_.Replacement(secret);
    std::ranges::copy(other, out);
}

/// Replaces a part that is secret as a whole. A vehicle identification number or a serial number in it is
/// replaced as it is elsewhere, so that equal stays equal.
void Redactor::RedactPart(Secret what, read::Bytes part, std::uint8_t* out)
{
    std::size_t begin = 0;
    std::size_t length = part.size();
    for (std::size_t at = 0; what == Secret::Vin && at < part.size(); ++at)
        if (const std::size_t vin = VinLength(part.subspan(at)); vin > 0) {
            begin = at;
            length = vin;
            break;
        }
    const auto isOfName = [](std::uint8_t letter) { return IsWordLetter(letter) || letter == '-'; };
    const auto name = std::ranges::find_if_not(part, isOfName) - part.begin();
    if (what == Secret::Serial && name >= 4)
        length = static_cast<std::size_t>(name); // what follows may be another identifier
    const std::size_t end = begin + length;
    const read::Bytes secret = part.subspan(begin, length);
    if (what != Secret::Transfer)
        values_.Learn(secret);
    Replace(part.first(begin), out);
    Replace(secret, out + begin);
    Replace(part.subspan(end), out + end);
}

/// Replaces secrets that are known, and vehicle identification numbers, wherever they stand.
void Redactor::RedactKnown(read::Bytes bytes, std::uint8_t* out)
{
    for (std::size_t at = 0; at < bytes.size();) {
        const read::Bytes rest = bytes.subspan(at);
        read::Bytes found = values_.IsEmpty() ? read::Bytes() : values_.FindAt(rest);
        const bool mayBeVin =
            found.empty() && Takes(Secret::Vin) && (at == 0 || !IsWordLetter(bytes[at - 1]));
        if (mayBeVin)
            found = rest.first(VinLength(rest));
        if (mayBeVin && !found.empty())
            values_.Learn(found);
        if (!found.empty())
            Replace(found, out + at);
        at += std::max<std::size_t>(found.size(), 1);
    }
}

} // namespace marvane::tool
