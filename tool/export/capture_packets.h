// What the packets of a capture hold: bytes for a dissector, or a text of syslog, and the comment. Their
// time, interface and order are the business of others.
#pragma once

#include <string>
#include <string_view>

#include "tool/export/packet_queue.h"
#include "tool/read/exchange.h"

namespace marvane::tool::pcapng {

enum class Level : std::uint8_t
{
    Error,
    Note
};

/// Makes the text the payload of a packet.
void SetText(QueuedPacket& packet, Level level, std::string_view text);

/// A request, or a text if its bytes are not in the log. `line` says where its call is.
QueuedPacket RequestPacket(const read::Exchange& request, const std::string& line);

/// An answer, or a text if its bytes are not in the log. `about` begins its comment.
QueuedPacket AnswerPacket(const read::Link& link, const read::Answer& answer, const std::string& about,
                          const std::string& line);

/// A report of the library about its traffic.
QueuedPacket ReportPacket(const read::Comms& report, const std::string& line);

/// " after 1.9 ms", " after 2 ms by the log's clock"
std::string AfterText(const read::Latency& latency);

/// "PDU_ERR_TX_QUEUE_FULL (0x0070)"
std::string CodeText(std::string_view name, std::uint32_t code);

/// What went wrong with a call that failed: "PDUConnect: entered, never returned". A request is added.
std::string FailureText(const read::Call& call);

} // namespace marvane::tool::pcapng
