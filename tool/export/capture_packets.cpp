#include "tool/export/capture_packets.h"

#include <algorithm>
#include <cstdio>

#include "tool/analysis/link_words.h"
#include "tool/analysis/talk_rows.h"
#include "tool/console/row_text.h"
#include "tool/export/uds_form.h"
#include "tool/read/call_text.h"

namespace marvane::tool::pcapng {

namespace {

/// The name of the protocol column for bytes that no dissector takes apart.
std::string ProtocolText(const read::Link& link)
{
    switch (DialectOf(link)) {
    case words::Dialect::Uds:
        return "UDS";
    case words::Dialect::Obd:
        return "OBD";
    case words::Dialect::Kwp:
        return "KWP2000";
    default:
        return link.Name().empty() ? "bytes" : Printable(link.Name());
    }
}

/// A whole diagnostic message of DoIP whose lengths fit.
bool IsDoIp(read::Bytes bytes)
{
    constexpr std::size_t header = 8;
    if (bytes.size() < header + 5 || (bytes[0] ^ bytes[1]) != 0xFF || bytes[2] != 0x80 || bytes[3] != 0x01)
        return false;
    std::uint64_t length = 0;
    for (const std::uint8_t byte : bytes.subspan(4, 4))
        length = length << 8 | byte;
    const read::Bytes message = bytes.subspan(header + 4);
    return length == bytes.size() - header && IsWholeUds(message, message.size());
}

/// ": 22 F1 90" of a start whose request is in the log.
std::string RequestBytesText(const read::Call& call)
{
    std::vector<std::uint8_t> storage;
    const read::Payload request = read::RequestOf(call, storage);
    return request.Shown.empty() ? "" : ": " + BytesText(request.Shown, request.Size, 20, 16);
}

/// Makes the bytes of a request or answer the payload, for the dissector that can take them apart.
void SetMessage(QueuedPacket& packet, const read::Link& link, const std::vector<std::uint8_t>& bytes,
                std::uint64_t size)
{
    packet.Payload = bytes;
    packet.Size = std::max<std::uint64_t>(size, bytes.size());
    const bool isUds = DialectOf(link) == words::Dialect::Uds && IsWholeUds(bytes, packet.Size);
    packet.Dissector = isUds ? "uds" : "data";
    if (!isUds)
        packet.Protocol = ProtocolText(link);
}

/// What is known of a request whose bytes are not.
std::string UnseenRequestText(const read::Exchange& request, const std::string& words)
{
    std::string text = Printable(request.TypeName.empty() ? "ComPrimitive" : request.TypeName);
    if (!words.empty())
        text += ": " + words;
    if (request.RequestSize > 0)
        text += ": " + Counted(request.RequestSize, "byte") + ", not in the log";
    else if (!request.IsRequestKnown)
        text += ": its bytes are not in the log";
    return text;
}

/// "report, address 0x7E8, "
std::string ReportComment(const read::Comms& report)
{
    std::string comment = (report.Title.empty() ? "report" : Printable(report.Title)) + ", ";
    if (report.Address) {
        char address[24];
        std::snprintf(address, sizeof address, "address 0x%X, ", *report.Address);
        comment += address;
    }
    return comment;
}

} // namespace

void SetText(QueuedPacket& packet, Level level, std::string_view text)
{
    // Severities of the local use 0, as syslog has it.
    const std::string whole = std::string(level == Level::Error ? "<131>" : "<134>").append(text);
    packet.Dissector = "syslog";
    packet.Payload.assign(whole.begin(), whole.end());
    packet.Size = packet.Payload.size();
}

QueuedPacket RequestPacket(const read::Exchange& request, const std::string& line)
{
    const RequestText text = RequestTextOf(request);
    QueuedPacket packet;
    packet.Request = request.Seq;
    packet.Comment = text.Words.empty() ? "" : text.Words + ", ";
    if (request.SendCycles && *request.SendCycles != 1)
        packet.Comment += *request.SendCycles < 0 ? "sent until it is cancelled, "
                                                  : std::to_string(*request.SendCycles) + " cycles, ";
    if (request.Primitive)
        packet.Comment += "hCoP " + std::to_string(*request.Primitive) + ", ";
    packet.Comment += line;
    if (request.Request.empty()) {
        SetText(packet, Level::Note, UnseenRequestText(request, text.Words));
    } else {
        SetMessage(packet, *request.On, request.Request, request.RequestSize);
        packet.Direction = Way::Sent;
    }
    return packet;
}

QueuedPacket AnswerPacket(const read::Link& link, const read::Answer& answer, const std::string& about,
                          const std::string& line)
{
    QueuedPacket packet;
    packet.Comment = about;
    if (answer.Nrc)
        packet.Comment += ", " + NrcText(DialectOf(link), *answer.Nrc);
    if (answer.From)
        packet.Comment += ", response identifier " + std::to_string(*answer.From);
    packet.Comment += ", " + line;
    packet.Direction = Way::Received;
    if (answer.Data.empty())
        SetText(packet, Level::Note, "answer without bytes: " + AnswerText(answer, DialectOf(link)));
    else
        SetMessage(packet, link, answer.Data, answer.Size);
    return packet;
}

QueuedPacket ReportPacket(const read::Comms& report, const std::string& line)
{
    QueuedPacket packet;
    packet.Direction = report.Way == Direction::ToTarget ? Way::Sent : Way::Received;
    packet.Comment = ReportComment(report) + line;
    packet.Payload.assign(report.Data.Shown.begin(), report.Data.Shown.end());
    packet.Size = std::max<std::uint64_t>(report.Data.Size, packet.Payload.size());
    const std::string title = Printable(report.Title);
    const bool isWhole = packet.Size == packet.Payload.size();
    if (packet.Payload.empty()) {
        SetText(packet, Level::Note, title);
    } else if (isWhole && IsDoIp(packet.Payload)) {
        packet.Dissector = "doip";
    } else {
        packet.Dissector = "data";
        packet.Protocol = report.Protocol.empty() ? title : Printable(report.Protocol);
        if (packet.Protocol.empty())
            packet.Protocol = "report";
    }
    return packet;
}

std::string AfterText(const read::Latency& latency)
{
    std::string text = " after " + MillisecondsText({latency.Us, false}) + " ms";
    return latency.IsByLog ? text + " by the log's clock" : text;
}

std::string CodeText(std::string_view name, std::uint32_t code)
{
    char number[16];
    std::snprintf(number, sizeof number, "0x%04X", code);
    return (name.empty() ? "" : Printable(name) + " ") + "(" + number + ")";
}

std::string FailureText(const read::Call& call)
{
    const bool isKnown = call.Which != read::Function::Unknown;
    const std::string name = isKnown ? std::string(read::FunctionName(call.Which)) : Printable(call.Name);
    switch (call.State) {
    case read::CallState::InFlight:
        return name + ": entered, never returned" + RequestBytesText(call);
    case read::CallState::NotLoaded:
        return name + ": the library is not loaded";
    case read::CallState::Cut:
        return name + ": the log lost its status";
    default:
        return name + ": " + CodeText(call.StatusName, call.Status.value_or(0)) + RequestBytesText(call);
    }
}

} // namespace marvane::tool::pcapng
