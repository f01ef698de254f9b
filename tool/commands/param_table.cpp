#include "tool/commands/param_table.h"

#include <algorithm>

#include "pdu/pdu_api.h"
#include "tool/console/row_text.h"
#include "tool/input/log_source.h"
#include "tool/read/param_values.h"

namespace marvane::tool {

namespace {

// Of each ComParam so many values that were set are kept, and of links and their ComParams so many.
constexpr std::size_t MostSets = 20;
constexpr std::size_t MostRows = 100'000;
constexpr std::size_t MostStarts = 10'000;

} // namespace

ParamTable::ParamTable(const MdfNames& names, TalkFilter filter, Console& console,
                       const std::vector<read::LogFile>& files)
    : names_(names), filter_(std::move(filter)), console_(console), files_(files)
{
    exchanges_.Links().SetNames(names.Names());
}

void ParamTable::OnSession(const read::Session& session)
{
    HasSession = true;
    names_.OnSession(session);
}

void ParamTable::OnEntry(const read::Call& call, bool isEvent)
{
    exchanges_.OnEntry(call, isEvent);
}

void ParamTable::OnCall(const read::Call& call)
{
    if (call.Which == read::Function::Connect && call.State == read::CallState::Returned && call.Status == 0u)
        StartOf(exchanges_.Links().Find(call)).Connected = call.Begin;
    exchanges_.OnCall(call);
}

void ParamTable::OnItem(const read::Item& item)
{
    exchanges_.OnItem(item);
}

void ParamTable::OnProblem(const read::Problem& problem)
{
    ComplainAbout(problem, files_, console_);
}

void ParamTable::OnParam(const read::Param& param)
{
    const auto link = exchanges_.Links().Find(*param.By);
    if (!filter_.Accepts(*link))
        return;
    ParamRow* row = RowOf(link, param);
    if (!row)
        return;
    const std::string value = Printable(read::ParamValueText(param));
    if (!param.IsSet) {
        if (!row->Read) {
            row->Read = value;
            row->ReadAt = param.By->Begin;
        }
        return;
    }
    ++row->SetCount;
    row->RestoredAt.reset();
    if ((row->Set.empty() || row->Set.back().Value != value) && row->Set.size() < MostSets)
        row->Set.push_back({value, param.By->Begin});
}

void ParamTable::Finish()
{
    exchanges_.Finish();
    for (LinkRows& rows : Links)
        rows.Start = StartOf(rows.On);
}

LinkStart& ParamTable::StartOf(const std::shared_ptr<const read::Link>& link)
{
    if (starts_.size() >= MostStarts && !starts_.contains(link))
        return otherStart_ = {};
    return starts_[link];
}

LinkRows* ParamTable::LinkOf(const std::shared_ptr<const read::Link>& link)
{
    const auto found = std::ranges::find(Links, link, &LinkRows::On);
    return found == Links.end() ? nullptr : &*found;
}

ParamRow* ParamTable::RowOf(const std::shared_ptr<const read::Link>& link, const read::Param& param)
{
    LinkRows* rows = LinkOf(link);
    const bool isKnown = rows && rows->Rows.contains(param.Id);
    if (!isKnown && ++rowCount_ > MostRows)
        return nullptr;
    if (!rows)
        rows = &Links.emplace_back(LinkRows{link, {}, {}});
    ParamRow& row = rows->Rows[param.Id];
    if (!isKnown) {
        row.Name = names_.ParamName(link->Session, param.Id, param.Name);
        row.Default = names_.DefaultOf(*link, param.Id);
    }
    return &row;
}

void ParamTable::OnExchange(const read::Exchange& exchange)
{
    if (exchange.Type == PDU_COPT_STARTCOMM)
        StartOf(exchange.On).Started = exchange.At;
    LinkRows* rows =
        exchange.Type == PDU_COPT_RESTORE_PARAM && exchange.IsEnded ? LinkOf(exchange.On) : nullptr;
    if (!rows)
        return;
    for (auto& [id, row] : rows->Rows)
        if (row.SetCount > 0)
            row.RestoredAt = exchange.At;
}

} // namespace marvane::tool
