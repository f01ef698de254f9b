#include "tool/export/orphan_frames.h"

#include <algorithm>

namespace marvane::tool {

namespace {

constexpr std::uint8_t FirstAnswer = 0x40; // answers begin with this byte or a higher one
constexpr std::uint32_t HighestIdentifier = 0x1FFFFFFF;

// High halves of a frame's first byte.
constexpr std::uint8_t SingleFrame = 0;
constexpr std::uint8_t FlowControl = 3;

/// A consecutive frame at a place where one can be by its first byte and its length.
bool IsFrameAt(read::Bytes bytes, std::size_t prefix)
{
    constexpr std::size_t shortest = 2;
    return bytes.size() >= prefix + shortest && bytes[prefix] >> 4 == ConsecutiveFrame &&
           (bytes.size() - prefix + prefix % CanIdentifierLength <= ClassicFrameLength ||
            IsWholeFrame(bytes.size() - prefix, prefix));
}

bool BeginsWithIdentifier(read::Bytes bytes)
{
    std::uint32_t identifier = 0;
    for (const std::uint8_t byte : bytes.first(CanIdentifierLength))
        identifier = identifier << 8 | byte;
    return identifier <= HighestIdentifier;
}

/// A single frame or a flow control without an address extension.
bool IsOtherFrame(read::Bytes bytes)
{
    const auto kind = static_cast<std::uint8_t>(bytes[0] >> 4);
    const std::size_t length = bytes[0] & 15u;
    return kind == FlowControl || (kind == SingleFrame && length > 0 && length < bytes.size());
}

/// An answer at a place where no frame can begin, with an address extension or without.
bool IsAnswerAt(read::Bytes bytes, std::size_t prefix)
{
    return bytes.size() > prefix + 1 && bytes[prefix] >= FirstAnswer && BeginsMessage(bytes[prefix]) &&
           bytes[prefix + 1] >> 4 > FlowControl;
}

TransportFrame Consecutive(std::size_t prefix)
{
    return {FrameKind::Consecutive, prefix + 1, prefix, 0};
}

} // namespace

void OrphanFrames::LearnRequest(std::uint64_t hash)
{
    requests_.push_back(hash);
    if (requests_.size() > MostRequests)
        requests_.pop_front();
}

bool OrphanFrames::IsRequest(std::uint64_t hash) const
{
    return std::ranges::find(requests_, hash) != requests_.end();
}

void OrphanFrames::LearnReport(const std::string& title, read::Bytes bytes, FrameKind kind)
{
    if (forms_.size() >= MostTitles && !forms_.contains(title))
        forms_.clear();
    Form& form = forms_[title];
    const bool isAnswer =
        IsAnswerAt(bytes, 0) || (IsAnswerAt(bytes, CanIdentifierLength) && BeginsWithIdentifier(bytes));
    if (kind != FrameKind::None)
        form = Form::Frames;
    else if (form == Form::Unknown && isAnswer)
        form = Form::Messages;
}

TransportFrame OrphanFrames::FindInReport(const std::string& title, read::Bytes bytes) const
{
    const auto known = forms_.find(title);
    const Form form = known == forms_.end() ? Form::Unknown : known->second;
    if (form == Form::Messages)
        return {};
    if (IsFrameAt(bytes, 0))
        return Consecutive(0);
    // An identifier of a message, as in 62 2E 01, looks like an extended frame; a shorter one is taken for
    // it.
    const bool mayBeMessage =
        form == Form::Unknown && BeginsMessage(bytes[0]) && bytes.size() < ClassicFrameLength;
    if (IsFrameAt(bytes, 1) && !IsOtherFrame(bytes) && !mayBeMessage)
        return Consecutive(1);
    return FindInPayload(bytes);
}

TransportFrame OrphanFrames::FindInPayload(read::Bytes bytes)
{
    for (const std::size_t prefix : {CanIdentifierLength, CanIdentifierLength + 1})
        if (IsFrameAt(bytes, prefix) && BeginsWithIdentifier(bytes))
            return Consecutive(prefix);
    return {};
}

} // namespace marvane::tool
