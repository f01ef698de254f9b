// Where the packets of a capture go: each to an interface, at a time, in the order of time.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tool/export/capture_links.h"
#include "tool/export/capture_packets.h"
#include "tool/export/inputs.h"
#include "tool/export/packet_queue.h"
#include "tool/export/zone_time.h"

namespace marvane::tool::pcapng {

class CaptureOutput
{
public:
    /// Both outlive it.
    CaptureOutput(const Inputs& inputs, Sink& out)
        : inputs_(inputs), zone_(inputs.Zone), interfaces_(out), queue_(out)
    {
    }

    void BeginFile(std::string_view name);
    /// "line 44", "line 44 of NAME" for another file than the first.
    std::string LineText(const read::Position& at) const;

    /// Since 1970, UTC.
    std::int64_t MicrosecondsOf(read::LogTime time);

    CaptureLinks& Interfaces() { return interfaces_; }
    PacketQueue& Queue() { return queue_; }

    /// Adds to its comment that what it shows was replaced, if the redactor changed that: bytes, a record,
    /// lines.
    template <class... What> void MarkRedacted(QueuedPacket& packet, const What&... what) const
    {
        if (inputs_.Redaction && inputs_.Redaction->IsChanged(what...))
            packet.Comment += ", redacted";
    }

    /// Adds a packet about what the log has at `time`, if that is in the part that is wanted.
    void Put(QueuedPacket packet, read::LogTime time);

    /// Adds a text about a line of the log.
    void PutText(Level level, std::string_view text, const read::Link& link, read::LogTime time,
                 const read::Position& at);

private:
    const Inputs& inputs_;
    ZoneTime zone_;
    CaptureLinks interfaces_;
    PacketQueue queue_;
    std::vector<std::string> files_;
    std::int64_t latest_ = INT64_MIN;
};

} // namespace marvane::tool::pcapng
