// --format pcapng: requests and answers as packets, everything else worth knowing as texts, for Wireshark.
#include <algorithm>
#include <map>

#include "pdu/pdu_api.h"
#include "tool/commands/help.h"
#include "tool/commands/link_words.h"
#include "tool/commands/log_source.h"
#include "tool/commands/row_text.h"
#include "tool/commands/talk_rows.h"
#include "tool/export/capture_links.h"
#include "tool/export/inputs.h"
#include "tool/export/packet_queue.h"
#include "tool/export/uds_form.h"
#include "tool/export/zone_time.h"
#include "tool/read/call_text.h"
#include "tool/read/exchanges.h"
#include "tool/words/describe.h"

namespace marvane::tool {

namespace {

using namespace pcapng;

constexpr std::string_view SeverityError = "<131>"; // of the local use 0, as syslog has it
constexpr std::string_view SeverityNote = "<134>";

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

/// ": 22 F1 90" of a start whose request is in the log.
std::string RequestBytesText(const read::Call& call)
{
    std::vector<std::uint8_t> storage;
    const read::Payload request = read::RequestOf(call, storage);
    return request.Shown.empty() ? "" : ": " + BytesText(request.Shown, request.Size, 20, 16);
}

std::vector<std::uint8_t> BytesOf(std::string_view text)
{
    return {text.begin(), text.end()};
}

class CaptureWriter : public read::LogSink, private read::ExchangeSink
{
public:
    CaptureWriter(const Inputs& inputs, Sink& out)
        : inputs_(inputs), zone_(inputs.Zone), interfaces_(out), queue_(out)
    {
        exchanges_.Links().SetNames(inputs.Names.Names());
    }

    void Finish()
    {
        exchanges_.Finish();
        queue_.Finish();
    }

    void OnFile(std::uint32_t, std::string_view name) override { files_.emplace_back(Printable(name)); }
    void OnSession(const read::Session& session) override;
    void OnEntry(const read::Call& call, bool isEvent) override { exchanges_.OnEntry(call, isEvent); }
    void OnCall(const read::Call& call) override;
    void OnEvent(const read::Event& event) override;
    void OnItem(const read::Item& item) override;
    void OnComms(const read::Comms& report) override;
    void OnMark(const read::Mark& mark) override;
    void OnProblem(const read::Problem& problem) override;

private:
    void OnRequest(const read::Exchange& request) override;
    void OnAnswer(const read::Exchange& request, const read::Answer& answer) override;
    void OnError(const read::Exchange& request, const read::RequestError& error) override;
    void OnExchange(const read::Exchange& exchange) override;
    void OnLateAnswer(const read::LateAnswer& late) override;
    void OnStrayAnswer(const read::Link& link, const read::Answer& answer) override;
    void OnStrayError(const read::Link& link, const read::RequestError& error) override;

    std::int64_t MicrosecondsOf(read::LogTime time);
    std::int64_t TimeOf(const read::Exchange& request, std::optional<std::uint32_t> sinceExecuting,
                        const read::Latency& after, read::LogTime fetched);
    std::string LineText(const read::Position& at) const;
    void SetMessage(QueuedPacket& packet, const read::Link& link, const std::vector<std::uint8_t>& bytes,
                    std::uint64_t size);
    void AddAnswer(const read::Link& link, const read::Answer& answer, std::uint64_t request, std::int64_t us,
                   const std::string& comment);
    void AddText(std::uint32_t session, std::optional<std::uint32_t> module,
                 std::optional<std::uint32_t> link, read::LogTime time, std::string_view severity,
                 const std::string& text, const read::Position& at);
    void Put(QueuedPacket packet, read::LogTime time);

    const Inputs& inputs_;
    ZoneTime zone_;
    CaptureLinks interfaces_;
    PacketQueue queue_;
    read::Exchanges exchanges_{static_cast<read::ExchangeSink&>(*this), SuppressesAnswer};
    std::vector<std::string> files_;
    std::int64_t latest_ = INT64_MIN;
};

std::int64_t CaptureWriter::MicrosecondsOf(read::LogTime time)
{
    return (time.Ms - static_cast<std::int64_t>(zone_.OffsetAt(time)) * 60'000) * 1000;
}

/// When an answer or error came: by the library's clock if that can be joined to the log's, else when it was
/// fetched. Never before its request.
std::int64_t CaptureWriter::TimeOf(const read::Exchange& request, std::optional<std::uint32_t> sinceExecuting,
                                   const read::Latency& after, read::LogTime fetched)
{
    constexpr std::int64_t round = 1LL << 32; // the library's clock wraps around
    const std::int64_t sent = queue_.TimeOf(request.Seq);
    const std::int64_t begun = MicrosecondsOf(request.Time);
    const std::int64_t seen = MicrosecondsOf(fetched);
    std::int64_t us = seen;
    if (sinceExecuting)
        us = begun + *sinceExecuting + (seen - begun - *sinceExecuting + round / 2) / round * round;
    else if (!after.IsByLog && request.AnswerCount <= 1)
        us = begun + static_cast<std::int64_t>(after.Us);
    return std::max(us, sent);
}

std::string CaptureWriter::LineText(const read::Position& at) const
{
    std::string text = "line " + std::to_string(at.Line);
    return at.File == 0 || at.File >= files_.size() ? text : text + " of " + files_[at.File];
}

void CaptureWriter::Put(QueuedPacket packet, read::LogTime time)
{
    latest_ = std::max(latest_, MicrosecondsOf(time));
    if (inputs_.Range.Holds(time))
        queue_.Add(std::move(packet));
    queue_.Advance(latest_);
}

/// The bytes of a request or answer, for the dissector that can take them apart. The comment says if they
/// were replaced.
void CaptureWriter::SetMessage(QueuedPacket& packet, const read::Link& link,
                               const std::vector<std::uint8_t>& bytes, std::uint64_t size)
{
    packet.Interface = interfaces_.Of(link);
    packet.Payload = bytes;
    packet.Size = std::max<std::uint64_t>(size, bytes.size());
    const bool isUds = DialectOf(link) == words::Dialect::Uds && IsWholeUds(bytes, packet.Size);
    packet.Dissector = isUds ? "uds" : "data";
    if (!isUds)
        packet.Protocol = ProtocolText(link);
    if (inputs_.Redaction && inputs_.Redaction->IsChanged(read::Bytes(bytes)))
        packet.Comment += ", redacted";
}

void CaptureWriter::AddText(std::uint32_t session, std::optional<std::uint32_t> module,
                            std::optional<std::uint32_t> link, read::LogTime time, std::string_view severity,
                            const std::string& text, const read::Position& at)
{
    QueuedPacket packet;
    packet.Interface = interfaces_.Of(*exchanges_.Links().Find(
        session, module.value_or(read::UndefinedHandle), link.value_or(read::UndefinedHandle)));
    packet.Us = MicrosecondsOf(time);
    packet.Dissector = "syslog";
    packet.Payload = BytesOf(std::string(severity) + text);
    packet.Size = packet.Payload.size();
    packet.Comment = LineText(at);
    if (inputs_.Redaction && inputs_.Redaction->IsChanged(at.File, at.Line, at.Line))
        packet.Comment += ", redacted";
    Put(std::move(packet), time);
}

void CaptureWriter::OnRequest(const read::Exchange& request)
{
    const RequestText text = RequestTextOf(request);
    QueuedPacket packet;
    packet.Us = MicrosecondsOf(request.Time);
    packet.Request = request.Seq;
    packet.Comment = text.Words.empty() ? "" : text.Words + ", ";
    if (request.SendCycles && *request.SendCycles != 1)
        packet.Comment += *request.SendCycles < 0 ? "sent until it is cancelled, "
                                                  : std::to_string(*request.SendCycles) + " cycles, ";
    if (request.Primitive)
        packet.Comment += "hCoP " + std::to_string(*request.Primitive) + ", ";
    packet.Comment += LineText(request.At);
    if (!request.Request.empty()) {
        SetMessage(packet, *request.On, request.Request, request.RequestSize);
        packet.Direction = Way::Sent;
    } else {
        std::string note = Printable(request.TypeName.empty() ? "ComPrimitive" : request.TypeName);
        if (!text.Words.empty())
            note += ": " + text.Words;
        if (request.RequestSize > 0)
            note += ": " + Counted(request.RequestSize, "byte") + ", not in the log";
        else if (!request.IsRequestKnown)
            note += ": its bytes are not in the log";
        packet.Interface = interfaces_.Of(*request.On);
        packet.Dissector = "syslog";
        packet.Payload = BytesOf(std::string(SeverityNote) + note);
        packet.Size = packet.Payload.size();
    }
    Put(std::move(packet), request.Time);
}

void CaptureWriter::AddAnswer(const read::Link& link, const read::Answer& answer, std::uint64_t request,
                              std::int64_t us, const std::string& comment)
{
    QueuedPacket packet;
    packet.Us = us;
    packet.About = request;
    packet.Comment = comment;
    if (answer.Nrc)
        packet.Comment += ", " + NrcText(DialectOf(link), *answer.Nrc);
    if (answer.From)
        packet.Comment += ", response identifier " + std::to_string(*answer.From);
    packet.Comment += ", " + LineText(answer.At);
    packet.Direction = Way::Received;
    if (!answer.Data.empty()) {
        SetMessage(packet, link, answer.Data, answer.Size);
    } else {
        packet.Interface = interfaces_.Of(link);
        packet.Dissector = "syslog";
        packet.Payload = BytesOf(std::string(SeverityNote) +
                                 "answer without bytes: " + AnswerText(answer, DialectOf(link)));
        packet.Size = packet.Payload.size();
    }
    Put(std::move(packet), answer.Time);
}

void CaptureWriter::OnAnswer(const read::Exchange& request, const read::Answer& answer)
{
    if (request.AnswerCount == 1 && request.SentSinceExecuting)
        queue_.Move(request.Seq, MicrosecondsOf(request.Time) + *request.SentSinceExecuting);
    const std::string number =
        request.AnswerCount > 1 ? "answer " + std::to_string(request.AnswerCount) : "answer";
    AddAnswer(*request.On, answer, request.Seq,
              TimeOf(request, answer.SinceExecuting, answer.After, answer.Time),
              number + " to %" + AfterText(answer.After));
}

void CaptureWriter::OnLateAnswer(const read::LateAnswer& late)
{
    AddAnswer(*late.On, late.What, late.Seq,
              std::max(MicrosecondsOf(late.What.Time), queue_.TimeOf(late.Seq)),
              "late answer to %, " + std::to_string(late.AfterEndMs) + " ms after its end");
}

void CaptureWriter::OnStrayAnswer(const read::Link& link, const read::Answer& answer)
{
    AddAnswer(link, answer, 0, MicrosecondsOf(answer.Time), "answer to no request that is in the log");
}

void CaptureWriter::OnError(const read::Exchange& request, const read::RequestError& error)
{
    QueuedPacket packet;
    packet.Interface = interfaces_.Of(*request.On);
    packet.Us = TimeOf(request, error.SinceExecuting, error.After, error.Time);
    packet.Dissector = "syslog";
    packet.Payload = BytesOf(std::string(SeverityError) + CodeText(error.Name, error.Code));
    packet.Size = packet.Payload.size();
    packet.About = request.Seq;
    packet.Comment = "error of %" + AfterText(error.After) + ", " + LineText(error.At);
    Put(std::move(packet), error.Time);
}

void CaptureWriter::OnStrayError(const read::Link& link, const read::RequestError& error)
{
    AddText(link.Session, link.Module, link.Handle, error.Time, SeverityError,
            CodeText(error.Name, error.Code), error.At);
}

void CaptureWriter::OnExchange(const read::Exchange& exchange)
{
    queue_.Forget(exchange.Seq);
    const bool isSilent = exchange.Result == read::Outcome::Silent && exchange.ErrorCode == 0;
    if (exchange.Result != read::Outcome::Cancelled && !isSilent)
        return;
    QueuedPacket packet;
    packet.Interface = interfaces_.Of(*exchange.On);
    const bool isByLibrary = exchange.Whole && !exchange.Whole->IsByLog;
    packet.Us =
        std::max(isByLibrary ? MicrosecondsOf(exchange.Time) + static_cast<std::int64_t>(exchange.Whole->Us)
                             : MicrosecondsOf(exchange.EndTime),
                 queue_.TimeOf(exchange.Seq));
    packet.Dissector = "syslog";
    const std::string bytes = RequestTextOf(exchange).Bytes;
    packet.Payload = BytesOf(std::string(isSilent ? SeverityError : SeverityNote) +
                             (isSilent ? "no answer" : "cancelled") + (bytes.empty() ? "" : ": " + bytes));
    packet.Size = packet.Payload.size();
    packet.About = exchange.Seq;
    packet.Comment = "end of %" + (exchange.Whole ? AfterText(*exchange.Whole) : std::string());
    Put(std::move(packet), exchange.EndTime);
}

void CaptureWriter::OnSession(const read::Session& session)
{
    inputs_.Names.OnSession(session);
    std::string text = "session " + std::to_string(session.Number);
    if (!session.Marvane.empty())
        text += ", Marvane " + Printable(session.Marvane);
    if (!session.Target.empty())
        text += ", " + Printable(session.Target) + " " + Printable(session.TargetVersion);
    AddText(session.Number, {}, {}, session.BeginTime, SeverityNote, text, session.Begin);
}

void CaptureWriter::OnCall(const read::Call& call)
{
    exchanges_.OnCall(call);
    if (!call.HasFailed())
        return;
    std::string text(read::FunctionName(call.Which));
    if (call.Which == read::Function::Unknown)
        text = Printable(call.Name);
    read::LogTime time = call.BeginTime;
    if (call.State == read::CallState::InFlight) {
        text += ": entered, never returned" + RequestBytesText(call);
    } else if (call.State == read::CallState::NotLoaded) {
        text += ": the library is not loaded";
    } else if (call.State == read::CallState::Cut) {
        text += ": the log lost its status";
    } else {
        text += ": " + CodeText(call.StatusName, call.Status.value_or(0)) + RequestBytesText(call);
        time = call.EndTime;
    }
    AddText(call.Session, call.Module, call.Link, time, SeverityError, text, call.Begin);
}

void CaptureWriter::OnEvent(const read::Event& event)
{
    if (event.Type == PDU_EVT_DATA_LOST)
        AddText(event.Session, event.Module, event.Link, event.BeginTime, SeverityError,
                "the library lost events", event.Begin);
}

void CaptureWriter::OnItem(const read::Item& item)
{
    exchanges_.OnItem(item);
    if (!item.Fetch || item.Kind == read::ItemKind::Result || item.Kind == read::ItemKind::Error)
        return;
    if (item.Kind == read::ItemKind::Status && item.Primitive)
        return; // its request shows it
    const std::string text = item.Kind == read::ItemKind::Unknown
                                 ? "item of type " + CodeText({}, item.TypeCode)
                                 : CodeText(item.CodeName, item.Code);
    AddText(item.Fetch->Session, item.Fetch->Module, item.Fetch->Link, item.Fetch->EndTime, SeverityNote,
            text, item.At);
}

void CaptureWriter::OnComms(const read::Comms& report)
{
    exchanges_.OnComms(report);
    QueuedPacket packet;
    packet.Interface = interfaces_.OfReports();
    packet.Us = MicrosecondsOf(report.Time);
    packet.Direction = report.Way == Direction::ToTarget ? Way::Sent : Way::Received;
    const std::string title = Printable(report.Title);
    packet.Comment = (title.empty() ? "report" : title) + ", ";
    if (report.Address) {
        char address[24];
        std::snprintf(address, sizeof address, "address 0x%X, ", *report.Address);
        packet.Comment += address;
    }
    packet.Comment += LineText(report.At);
    if (inputs_.Redaction && inputs_.Redaction->IsChanged(report))
        packet.Comment += ", redacted";
    packet.Payload.assign(report.Data.Shown.begin(), report.Data.Shown.end());
    packet.Size = std::max<std::uint64_t>(report.Data.Size, packet.Payload.size());
    const bool isWhole = packet.Size == packet.Payload.size();
    if (packet.Payload.empty()) {
        packet.Dissector = "syslog";
        packet.Payload = BytesOf(std::string(SeverityNote) + title);
        packet.Size = packet.Payload.size();
    } else if (isWhole && IsDoIp(packet.Payload)) {
        packet.Dissector = "doip";
    } else {
        packet.Dissector = "data";
        packet.Protocol = report.Protocol.empty() ? title : Printable(report.Protocol);
        if (packet.Protocol.empty())
            packet.Protocol = "report";
    }
    Put(std::move(packet), report.Time);
}

void CaptureWriter::OnMark(const read::Mark& mark)
{
    AddText(mark.Session, {}, {}, mark.Time, SeverityNote, Printable(mark.Text), mark.At);
}

void CaptureWriter::OnProblem(const read::Problem& problem)
{
    ComplainAbout(problem, inputs_.Files, inputs_.Messages);
    if (problem.What == read::ProblemKind::Damaged)
        AddText(problem.Session, {}, {}, problem.Time, SeverityError,
                "damaged line: " + Printable(problem.Text.substr(0, 1000)), problem.At);
}

} // namespace

void WritePcapng(const Inputs& inputs, Sink& sink)
{
    sink.Write(SectionHeader(VersionLine()));
    CaptureWriter writer(inputs, sink);
    using read::Wants;
    inputs.Read(writer, Wants::Calls | Wants::Comms | Wants::Items);
    writer.Finish();
}

} // namespace marvane::tool
