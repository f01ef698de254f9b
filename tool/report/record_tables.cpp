#include "tool/report/record_tables.h"

#include "pdu/pdu_api.h"

namespace marvane::tool::report {

namespace {

std::uint32_t FlagsOf(const read::Call& call)
{
    std::uint32_t flags = 0;
    if (call.HasFailed())
        flags |= RecordFailed;
    if (call.IsCutIn || call.IsCutOut || call.State == read::CallState::Cut)
        flags |= RecordCut;
    if (call.State == read::CallState::InFlight)
        flags |= RecordInFlight;
    if (call.State == read::CallState::NotLoaded)
        flags |= RecordNotLoaded;
    if (call.Status == std::uint32_t(PDU_ERR_EVENT_QUEUE_EMPTY))
        flags |= RecordQueueEmpty;
    return flags;
}

} // namespace

std::size_t RecordTables::ThreadNumber(std::uint32_t session, std::uint32_t thread)
{
    const auto [place, isNew] = threads_.try_emplace({session, thread}, model_.Threads.size());
    if (isNew)
        model_.Threads.push_back({thread, session});
    return place->second;
}

std::int64_t RecordTables::StatusNumber(const read::Call& call)
{
    if (!call.Status)
        return None;
    const auto [place, isNew] = statuses_.try_emplace({*call.Status, std::string(call.StatusName)},
                                                      static_cast<std::int64_t>(statuses_.size()));
    if (isNew)
        model_.Statuses.push_back({std::string(call.StatusName), *call.Status});
    return place->second;
}

std::int64_t RecordTables::LinkNumber(const read::Link& link)
{
    if (link.Module == read::UndefinedHandle && link.Handle == read::UndefinedHandle)
        return None;
    const auto [place, isNew] =
        links_.try_emplace({link.Session, link.Module, link.Handle, link.CreatedAt.File, link.CreatedAt.Line},
                           static_cast<std::int64_t>(links_.size()));
    if (isNew)
        model_.Links.push_back({link});
    return place->second;
}

Record RecordTables::Begin(RecordKind kind, std::uint64_t line, read::LogTime time, std::uint32_t session,
                           std::uint32_t thread, std::string_view name)
{
    Record record;
    record.Kind = kind;
    record.Line = record.LastLine = line;
    record.Thread = ThreadNumber(session, thread);
    record.Name = model_.Strings.Number(name);
    record.Time = time;
    return record;
}

Record RecordTables::Begin(RecordKind kind, const read::Call& call, const read::Link* link)
{
    Record record =
        Begin(kind, *lines_.IndexOf(call.Begin), call.BeginTime, call.Session, call.Thread, call.Name);
    record.LastLine = lines_.LastIndexOf(call.Begin, call.End);
    record.Duration = call.State == read::CallState::InFlight ? None : call.Duration();
    record.Status = StatusNumber(call);
    record.Flags = FlagsOf(call) | RedactedFlag(call);
    if (!lines_.IndexOf(call.End))
        record.Flags |= RecordEndsOutside;
    record.Depth = call.Depth;
    record.Link = link ? LinkNumber(*link) : None;
    record.Seq = call.Seq;
    return record;
}

void RecordTables::Add(const read::Call& call, const read::Link* link)
{
    if (lines_.IndexOf(call.Begin))
        model_.Records.push_back(Begin(RecordKind::Call, call, link));
}

void RecordTables::Add(const read::Event& event, const read::Link* link)
{
    if (lines_.IndexOf(event.Begin))
        model_.Records.push_back(Begin(RecordKind::Callback, event, link));
}

void RecordTables::Add(const read::Comms& report)
{
    const std::optional<std::uint64_t> line = lines_.IndexOf(report.At);
    if (!line)
        return;
    const std::string name =
        (report.Protocol.empty() ? "" : std::string(report.Protocol) + " ") + std::string(report.Title);
    Record record = Begin(RecordKind::Comms, *line, report.Time, report.Session, report.Thread, name);
    if (!report.Lines.empty())
        record.LastLine = lines_.LastIndexOf(report.At, {report.At.File, report.Lines.back().Number, 0});
    record.Flags = (report.Way == Direction::ToTarget ? RecordSent : RecordReceived) | RedactedFlag(report);
    model_.Records.push_back(record);
}

void RecordTables::Add(const read::Mark& mark)
{
    if (const std::optional<std::uint64_t> line = lines_.IndexOf(mark.At))
        model_.Records.push_back(
            Begin(RecordKind::Mark, *line, mark.Time, mark.Session, mark.Thread, mark.Text));
}

} // namespace marvane::tool::report
