// Frames of ISO 15765-2 among the bytes that a log shows: messages that are longer than a frame are split
// over several, each of which is a listing of its own.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "line/arrows.h"
#include "tool/read/records.h"

namespace marvane::tool {

enum class FrameKind : std::uint8_t
{
    None, ///< no frame, or a flow control
    Single,
    First,
    Consecutive
};

struct TransportFrame
{
    FrameKind Kind = FrameKind::None;
    std::size_t Begin = 0;   ///< of the bytes of the message
    std::size_t Prefix = 0;  ///< bytes before the frame: CAN identifier, address extension
    std::uint64_t Total = 0; ///< of a first frame: length of the whole message
};

/// The single or first frame that bytes are, with or without a CAN identifier before it. `needsIdentifier`:
/// not without one.
TransportFrame FindFrame(read::Bytes bytes, bool needsIdentifier);

constexpr std::size_t ClassicFrameLength = 8;
constexpr std::size_t CanIdentifierLength = 4; ///< of the identifier that the log shows before a frame
constexpr std::uint8_t ConsecutiveFrame = 2;   ///< high half of its first byte

/// Whether a frame of `length` bytes after `prefix` others has one of the lengths that frames have.
bool IsWholeFrame(std::size_t length, std::size_t prefix);

/// Whether a byte can begin a diagnostic message.
bool BeginsMessage(std::uint8_t first);

/// A message that was begun by a first frame and is not complete.
struct SegmentedMessage
{
    std::uint64_t Done = 0;                 ///< bytes that were there
    std::uint64_t Total = 0;                ///< of the whole message
    std::uint64_t SecretBegin = UINT64_MAX; ///< in the message
    std::size_t Prefix = 0;
};

/// Messages that are not complete, by sender. Of very many the first ones are forgotten.
class SegmentedMessages
{
public:
    using Key = std::string;

    /// `address` is what the report says beside the bytes.
    static Key KeyOf(Direction way, std::optional<std::uint32_t> address, read::Bytes prefix);

    /// Begins a message in place of the one of that key; beside it where senders can't be told apart.
    SegmentedMessage& Begin(const Key& key, const TransportFrame& first);

    /// The message that bytes go on with as a consecutive frame; null if there is none.
    SegmentedMessage* Find(Direction way, std::optional<std::uint32_t> address, read::Bytes bytes,
                           bool needsIdentifier);

private:
    static constexpr std::size_t MostMessages = 4096;
    std::map<Key, SegmentedMessage> messages_;
};

} // namespace marvane::tool
