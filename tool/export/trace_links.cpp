#include "tool/export/trace_links.h"

#include <algorithm>

#include "tool/analysis/link_words.h"
#include "tool/analysis/talk_rows.h"
#include "tool/console/row_text.h"
#include "tool/export/link_titles.h"

namespace marvane::tool::trace {

namespace {

// Rows of links are processes of their own to the viewers; no log has so many processes.
constexpr std::uint32_t FirstLink = 1'000'000;
constexpr std::size_t MostBytes = 64;

std::string BytesOf(const std::vector<std::uint8_t>& bytes, std::uint64_t size)
{
    return size == 0 && bytes.empty()
               ? std::string()
               : BytesText(bytes, std::max<std::uint64_t>(size, bytes.size()), MostBytes, MostBytes);
}

std::string NameOf(const read::Exchange& request)
{
    const RequestText text = RequestTextOf(request);
    if (!text.Words.empty() && !text.Bytes.empty())
        return text.Words + "  " + text.Bytes;
    return text.Words.empty() ? text.Bytes : text.Words;
}

} // namespace

LinkRows::LinkRow& LinkRows::RowOf(const read::Link& link)
{
    std::string title = "link " + LinkTitle(link);
    std::string name = LinkDescription(link);
    std::string key = title + "\n" + name;
    if (rows_.size() >= MostLinks && !rows_.contains(key))
        key = title = name = "further links";
    LinkRow& row = rows_[key];
    if (row.On.Process == 0) {
        row.On.Process = FirstLink + static_cast<std::uint32_t>(rows_.size());
        row.Name = std::move(name);
        out_.WriteName("process_name", row.On, title);
    }
    return row;
}

/// "yes" if the bytes were replaced, else nothing.
std::string LinkRows::RedactedText(const std::vector<std::uint8_t>& bytes) const
{
    return redactor_ && redactor_->IsChanged(read::Bytes(bytes)) ? "yes" : "";
}

/// A lane in which nothing is open at that time.
std::size_t LinkRows::LaneOf(LinkRow& row, std::int64_t us)
{
    const auto isFree = [&](const Lane& lane) { return lane.IsFree && lane.End <= us; };
    const auto found = std::ranges::find_if(row.Lanes, isFree);
    const auto at = static_cast<std::size_t>(found - row.Lanes.begin());
    if (found == row.Lanes.end()) {
        row.Lanes.push_back({++lanes_, us, true});
        Write('b', {&row, at, {}, us}, us, row.Name, {});
    }
    row.Lanes[at].IsFree = false;
    return at;
}

void LinkRows::Write(char phase, const Open& open, std::int64_t us, std::string_view name,
                     std::vector<std::pair<std::string_view, std::string>> arguments)
{
    out_.Write({.Phase = phase,
                .On = open.On->On,
                .Us = us,
                .Name = name,
                .Category = "link",
                .Id = open.On->Lanes[open.Lane].Id,
                .Arguments = std::move(arguments)});
}

void LinkRows::Begin(const read::Exchange& request, std::int64_t us)
{
    LinkRow& row = RowOf(*request.On);
    const Open open = {&row, LaneOf(row, us), NameOf(request), us};
    Write('b', open, us, open.Name,
          {{"line", PositionText(request.At)},
           {"hCoP", request.Primitive ? std::to_string(*request.Primitive) : std::string()},
           {"request", BytesOf(request.Request, request.RequestSize)},
           {"redacted", RedactedText(request.Request)}});
    open_.insert_or_assign(request.Seq, open);
}

void LinkRows::Answer(const read::Exchange& request, const read::Answer& answer, std::int64_t us)
{
    const auto found = open_.find(request.Seq);
    if (found == open_.end())
        return;
    Open& open = found->second;
    open.Last = std::max(open.Last, us);
    Write('n', open, open.Last, AnswerText(answer, DialectOf(*request.On)),
          {{"line", PositionText(answer.At)},
           {"answer", BytesOf(answer.Data, answer.Size)},
           {"ms", MillisecondsText(answer.After)},
           {"redacted", RedactedText(answer.Data)}});
}

void LinkRows::End(const read::Exchange& exchange, std::int64_t us)
{
    const auto found = open_.find(exchange.Seq);
    if (found == open_.end())
        return;
    const Open open = std::move(found->second);
    open_.erase(found);
    Lane& lane = open.On->Lanes[open.Lane];
    lane.End = std::max(open.Last, us);
    lane.IsFree = true;
    const read::Answer* const answer = exchange.Deciding();
    const auto latency = exchange.FirstAnswer();
    Write('e', open, lane.End, open.Name,
          {{"outcome", std::string(OutcomeName(exchange.Result))},
           {"answer", answer ? BytesOf(answer->Data, answer->Size) : std::string()},
           {"error", exchange.ErrorName},
           {"ms", latency ? MillisecondsText(*latency) : std::string()},
           {"redacted", answer ? RedactedText(answer->Data) : std::string()}});
}

void LinkRows::Finish()
{
    for (auto& [key, row] : rows_)
        for (std::size_t i = 0; i < row.Lanes.size(); ++i)
            if (row.Lanes[i].IsFree)
                Write('e', {&row, i, {}, 0}, row.Lanes[i].End, row.Name, {});
}

} // namespace marvane::tool::trace
