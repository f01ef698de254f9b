// --format trace: calls on the rows of their threads, requests on the rows of their links, for Perfetto,
// speedscope and Chromium's own viewer.
#include <deque>
#include <map>

#include "tool/analysis/link_words.h"
#include "tool/console/help.h"
#include "tool/console/row_text.h"
#include "tool/export/inputs.h"
#include "tool/export/trace_links.h"
#include "tool/export/trace_threads.h"
#include "tool/input/log_source.h"
#include "tool/read/exchanges.h"

namespace marvane::tool {

namespace {

using namespace trace;

/// A moment on the row of a thread.
struct Place
{
    Row On;
    std::int64_t Us = 0;
};

class TraceWriter : public read::LogSink, private read::ExchangeSink
{
public:
    TraceWriter(const Inputs& inputs, Sink& out)
        : inputs_(inputs), out_(out), threads_(out_, inputs.Redaction), links_(out_, inputs.Redaction)
    {
        exchanges_.Links().SetNames(inputs.Names.Names());
    }

    void Finish()
    {
        isFinishing_ = true;
        exchanges_.Finish();
        links_.Finish();
        out_.Finish({{"program", VersionLine()},
                     {"times", "local time of the log since 1970; its clock counts milliseconds, the "
                               "microseconds only keep the order of its lines"}});
    }

    void OnSession(const read::Session& session) override;
    void OnEntry(const read::Call& call, bool isEvent) override;
    void OnCall(const read::Call& call) override;
    void OnEvent(const read::Event& event) override { Leave(event, true); }
    void OnItem(const read::Item& item) override;
    void OnComms(const read::Comms& report) override;
    void OnMark(const read::Mark& mark) override;
    void OnProblem(const read::Problem& problem) override
    {
        ComplainAbout(problem, inputs_.Files, inputs_.Messages);
    }

private:
    void OnRequest(const read::Exchange& request) override;
    void OnAnswer(const read::Exchange& request, const read::Answer& answer) override;
    void OnExchange(const read::Exchange& exchange) override;

    Row RowOf(std::uint32_t session, std::uint32_t thread) const;
    void Leave(const read::Call& call, bool isEvent);
    void WriteFlow(const Place& from, const Place& to, std::uint64_t id);

    const Inputs& inputs_;
    EventWriter out_;
    ThreadRows threads_;
    LinkRows links_;
    read::Exchanges exchanges_{static_cast<read::ExchangeSink&>(*this), SuppressesAnswer};
    std::map<std::uint32_t, std::uint32_t> processes_;     ///< by session
    std::map<std::uint64_t, Place> starts_;                ///< calls that sent a request, by Seq
    std::map<std::uint64_t, Place> unanswered_;            ///< those without an answer yet
    std::deque<std::pair<read::Position, Place>> fetches_; ///< the last calls that fetched an item
    Place left_;                                           ///< the call that was left last
    bool isFinishing_ = false;
};

Row TraceWriter::RowOf(std::uint32_t session, std::uint32_t thread) const
{
    const auto process = processes_.find(session);
    return {process == processes_.end() ? 0 : process->second, thread};
}

void TraceWriter::OnSession(const read::Session& session)
{
    constexpr std::size_t mostSessions = 1000; // the reader knows no more at a time
    inputs_.Names.OnSession(session);
    if (processes_.size() >= mostSessions)
        processes_.erase(processes_.begin());
    processes_[session.Number] = session.Process;
    std::string name = "process " + std::to_string(session.Process);
    if (!session.Target.empty())
        name += ": " + Printable(session.Target) + " " + Printable(session.TargetVersion);
    out_.WriteName("process_name", {session.Process, 0}, name);
}

void TraceWriter::OnEntry(const read::Call& call, bool isEvent)
{
    exchanges_.OnEntry(call, isEvent);
    const Row row = RowOf(call.Session, call.Thread);
    const bool isShown = inputs_.Range.Holds(call.BeginTime);
    const std::int64_t us = threads_.Enter(row, call, isEvent, isShown);
    if (isShown && !isEvent && call.Which == read::Function::StartComPrimitive)
        starts_[call.Seq] = {row, us};
}

void TraceWriter::Leave(const read::Call& call, bool isEvent)
{
    const Row row = RowOf(call.Session, call.Thread);
    const auto begin = threads_.Leave(row, call, isEvent, inputs_.Range.Holds(call.BeginTime));
    left_ = begin ? Place{row, *begin} : Place{};
}

void TraceWriter::OnCall(const read::Call& call)
{
    Leave(call, false);
    exchanges_.OnCall(call);
    starts_.erase(call.Seq); // a request has taken it over by now
}

void TraceWriter::OnItem(const read::Item& item)
{
    constexpr std::size_t mostFetches = 512; // more than items can be kept waiting for their request
    if (left_.Us != 0)
        fetches_.emplace_back(item.At, left_);
    if (fetches_.size() > mostFetches)
        fetches_.pop_front();
    exchanges_.OnItem(item);
}

void TraceWriter::OnRequest(const read::Exchange& request)
{
    const auto start = starts_.find(request.Seq);
    if (start == starts_.end())
        return;
    links_.Begin(request, start->second.Us);
    unanswered_[request.Seq] = start->second;
}

void TraceWriter::WriteFlow(const Place& from, const Place& to, std::uint64_t id)
{
    out_.Write({.Phase = 's', .On = from.On, .Us = from.Us, .Name = "answer", .Category = "flow", .Id = id});
    out_.Write({.Phase = 'f', .On = to.On, .Us = to.Us, .Name = "answer", .Category = "flow", .Id = id});
}

void TraceWriter::OnAnswer(const read::Exchange& request, const read::Answer& answer)
{
    const auto isIt = [&](const auto& fetch) { return fetch.first == answer.At; };
    const auto fetch = std::find_if(fetches_.rbegin(), fetches_.rend(), isIt);
    const auto start = unanswered_.find(request.Seq);
    const bool isFetched = fetch != fetches_.rend();
    links_.Answer(request, answer,
                  isFetched ? fetch->second.Us
                            : threads_.TimeOf(RowOf(request.Session, 0).Process, answer.Time));
    if (answer.Kind == read::AnswerKind::Pending || start == unanswered_.end() || !isFetched)
        return;
    WriteFlow(start->second, fetch->second, request.Seq);
    unanswered_.erase(start);
}

void TraceWriter::OnExchange(const read::Exchange& exchange)
{
    unanswered_.erase(exchange.Seq);
    if (!isFinishing_)
        links_.End(exchange, threads_.TimeOf(RowOf(exchange.Session, 0).Process, exchange.EndTime));
}

void TraceWriter::OnComms(const read::Comms& report)
{
    exchanges_.OnComms(report);
    if (!inputs_.Range.Holds(report.Time))
        return;
    const std::string_view way = report.Way == Direction::ToTarget ? "sent: " : "received: ";
    threads_.Instant(RowOf(report.Session, report.Thread), report.Time,
                     std::string(way) + Printable(report.Title), "report", PositionText(report.At));
}

void TraceWriter::OnMark(const read::Mark& mark)
{
    if (inputs_.Range.Holds(mark.Time))
        threads_.Instant(RowOf(mark.Session, mark.Thread), mark.Time, Printable(mark.Text), "mark",
                         PositionText(mark.At));
}

} // namespace

void WriteTrace(const Inputs& inputs, Sink& sink)
{
    TraceWriter writer(inputs, sink);
    using read::Wants;
    inputs.Read(writer, Wants::Calls | Wants::Comms | Wants::Items);
    writer.Finish();
}

} // namespace marvane::tool
