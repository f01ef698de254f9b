// --format pcapng: requests and answers as packets, everything else worth knowing as texts, for Wireshark.
#include "pdu/pdu_api.h"
#include "tool/analysis/link_words.h"
#include "tool/console/help.h"
#include "tool/console/row_text.h"
#include "tool/export/capture_output.h"
#include "tool/export/capture_requests.h"
#include "tool/export/inputs.h"
#include "tool/input/log_source.h"
#include "tool/read/exchanges.h"

namespace marvane::tool {

namespace {

using namespace pcapng;

class CaptureWriter : public read::LogSink
{
public:
    CaptureWriter(const Inputs& inputs, Sink& sink) : inputs_(inputs), out_(inputs, sink)
    {
        exchanges_.Links().SetNames(inputs.Names.Names());
    }

    void Finish()
    {
        exchanges_.Finish();
        out_.Queue().Finish();
    }

    void OnFile(std::uint32_t, std::string_view name) override { out_.BeginFile(name); }
    void OnSession(const read::Session& session) override;
    void OnEntry(const read::Call& call, bool isEvent) override { exchanges_.OnEntry(call, isEvent); }
    void OnCall(const read::Call& call) override;
    void OnEvent(const read::Event& event) override;
    void OnItem(const read::Item& item) override;
    void OnComms(const read::Comms& report) override;
    void OnMark(const read::Mark& mark) override;
    void OnProblem(const read::Problem& problem) override;

private:
    void AddText(Level level, const std::string& text, const read::Call& about, read::LogTime time,
                 const read::Position& at);
    void AddText(Level level, const std::string& text, std::uint32_t session, read::LogTime time,
                 const read::Position& at);

    const Inputs& inputs_;
    CaptureOutput out_;
    CaptureRequests requests_{out_};
    read::Exchanges exchanges_{requests_, SuppressesAnswer};
};

/// Of the call's link, or of its module.
void CaptureWriter::AddText(Level level, const std::string& text, const read::Call& about, read::LogTime time,
                            const read::Position& at)
{
    out_.PutText(level, text, *exchanges_.Links().Find(about), time, at);
}

/// Of a session as a whole.
void CaptureWriter::AddText(Level level, const std::string& text, std::uint32_t session, read::LogTime time,
                            const read::Position& at)
{
    const auto link = exchanges_.Links().Find(session, read::UndefinedHandle, read::UndefinedHandle);
    out_.PutText(level, text, *link, time, at);
}

void CaptureWriter::OnSession(const read::Session& session)
{
    inputs_.Names.OnSession(session);
    std::string text = "session " + std::to_string(session.Number);
    if (!session.Marvane.empty())
        text += ", Marvane " + Printable(session.Marvane);
    if (!session.Target.empty())
        text += ", " + Printable(session.Target) + " " + Printable(session.TargetVersion);
    AddText(Level::Note, text, session.Number, session.BeginTime, session.Begin);
}

void CaptureWriter::OnCall(const read::Call& call)
{
    exchanges_.OnCall(call);
    if (!call.HasFailed())
        return;
    const bool hasReturned = call.State == read::CallState::Returned;
    AddText(Level::Error, FailureText(call), call, hasReturned ? call.EndTime : call.BeginTime, call.Begin);
}

void CaptureWriter::OnEvent(const read::Event& event)
{
    if (event.Type == PDU_EVT_DATA_LOST)
        AddText(Level::Error, "the library lost events", event, event.BeginTime, event.Begin);
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
    AddText(Level::Note, text, *item.Fetch, item.Fetch->EndTime, item.At);
}

void CaptureWriter::OnComms(const read::Comms& report)
{
    exchanges_.OnComms(report);
    QueuedPacket packet = ReportPacket(report, out_.LineText(report.At));
    packet.Interface = out_.Interfaces().OfReports();
    packet.Us = out_.MicrosecondsOf(report.Time);
    out_.MarkRedacted(packet, report);
    out_.Put(std::move(packet), report.Time);
}

void CaptureWriter::OnMark(const read::Mark& mark)
{
    AddText(Level::Note, Printable(mark.Text), mark.Session, mark.Time, mark.At);
}

void CaptureWriter::OnProblem(const read::Problem& problem)
{
    ComplainAbout(problem, inputs_.Files, inputs_.Messages);
    if (problem.What == read::ProblemKind::Damaged)
        AddText(Level::Error, "damaged line: " + Printable(problem.Text.substr(0, 1000)), problem.Session,
                problem.Time, problem.At);
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
