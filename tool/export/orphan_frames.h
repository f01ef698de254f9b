// Consecutive frames of ISO 15765-2 whose first frame is not in the log: it was written before the log or the
// part of it that is read, or was lost. What message they are a piece of can't be told.
#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <string>

#include "tool/export/transport_frames.h"

namespace marvane::tool {

/// Decides which bytes may be such a frame. A message can look like one: 22 F1 90 is a request, or the third
/// frame of a message with two bytes left. Memory is bounded.
class OrphanFrames
{
public:
    /// A payload that the application sent: a report that shows the same bytes shows a message. `hash` is any
    /// number for the payload.
    void LearnRequest(std::uint64_t hash);
    bool IsRequest(std::uint64_t hash) const;

    /// To be told all that reports show, in the order of the log. `title` is that of the report: those with
    /// the same one show either frames or messages.
    void LearnReport(const std::string& title, read::Bytes bytes, FrameKind kind);

    /// The frame that the bytes of a report may be, of kind Consecutive or None. Only for bytes that are no
    /// single and no first frame.
    TransportFrame FindInReport(const std::string& title, read::Bytes bytes) const;
    /// The same for the payload of a raw link, which begins with a CAN identifier.
    static TransportFrame FindInPayload(read::Bytes bytes);

private:
    enum class Form : std::uint8_t
    {
        Unknown,
        Messages,
        Frames
    };
    static constexpr std::size_t MostRequests = 256;
    static constexpr std::size_t MostTitles = 1024;

    std::deque<std::uint64_t> requests_;
    std::map<std::string, Form> forms_; ///< by title
};

} // namespace marvane::tool
