#include "tool/analysis/summary_facts.h"

#include <algorithm>

#include "pdu/pdu_api.h"
#include "tool/read/call_text.h"

namespace marvane::tool {

namespace {

using read::Function;

constexpr std::size_t MostThreads = 10'000;
// The reader keeps the last thousand sessions; the others are copied before.
constexpr std::size_t MostLive = 500;

/// The text between the quotes of a value.
std::string Unquoted(std::string_view value)
{
    if (value.size() >= 2 && value.front() == '"' && value.back() == '"')
        value = value.substr(1, value.size() - 2);
    return std::string(value == "<NULL STRING>" ? std::string_view() : value);
}

/// "PDUIoCtl PDU_IOCTL_READ_VBATT": the call with what tells it from others of its name.
std::string CallText(const read::Call& call, std::string_view name)
{
    std::string text(name);
    const std::string_view command =
        call.Which == Function::IoCtl ? read::CommandName(call.Arguments) : std::string_view();
    return command.empty() ? text : text.append(" ").append(command);
}

} // namespace

void SummaryFacts::OnSession(const read::Session& session)
{
    Findings::OnSession(session);
    Shares.OnSession(session);
    ++SessionCount;
    live_.push_back(&session);
    if (live_.size() > MostLive) {
        Retire(*live_.front());
        live_.pop_front();
    }
}

void SummaryFacts::Retire(const read::Session& session)
{
    const bool isBefore = range_.Since && session.LastTime < *range_.Since;
    if (isBefore || (range_.Until && session.BeginTime > *range_.Until))
        return;
    EndedSessions += session.IsEnded;
    Processes = std::max(Processes, session.Process);
    if (Sessions.size() == MostSessions)
        Sessions.pop_back();
    Sessions.push_back(session);
    Sessions.back().Settings = {};
}

void SummaryFacts::OnProblem(const read::Problem& problem)
{
    ComplainAbout(problem, files_, console_);
    Findings::OnProblem(problem);
}

void SummaryFacts::OnFinding(const Finding& finding)
{
    if (range_.Holds(finding.Time))
        ByKind[static_cast<std::size_t>(finding.Kind)] += finding.Count;
}

void SummaryFacts::Measure(const read::Call& call, std::string_view name)
{
    if (Threads.size() < MostThreads)
        Threads.insert(call.Thread);
    FunctionFacts& facts = Functions[std::string(name)];
    facts.Name = name;
    const std::int64_t ms = std::max<std::int64_t>(call.Duration(), 0);
    facts.Ms.Add(static_cast<std::uint64_t>(ms));
    facts.Failed += call.HasFailed();
    if (ms < 1 || (Slow.size() == MostSlow && Slow.back().Ms >= ms))
        return;
    if (Slow.size() == MostSlow)
        Slow.pop_back();
    const bool isEvent = call.Which == Function::CallbackTrap;
    SlowFacts slow = {ms, isEvent ? "callback (in the application)" : CallText(call, name), call.Begin};
    Slow.insert(std::ranges::find_if(Slow, [&](const SlowFacts& each) { return each.Ms < ms; }),
                std::move(slow));
}

void SummaryFacts::OnEntry(const read::Call& call, bool isEvent)
{
    Shares.OnEntry(call, isEvent);
    Findings::OnEntry(call, isEvent);
}

void SummaryFacts::OnCall(const read::Call& call)
{
    Shares.OnCall(call);
    Findings::OnCall(call);
    params_.OnCall(call);
    if (call.Which == Function::LoggerUninitialise)
        return; // the logger's own end, no call of the application
    if (range_.Holds(call.BeginTime)) {
        ++Calls;
        Measure(call, call.Name);
    }
    if (call.State != read::CallState::Returned || call.Status != 0u)
        return;
    if (call.Which == Function::GetModuleIds)
        SeeModules(call);
    else if (call.Which == Function::GetVersion)
        SeeVersion(call);
    else
        SeeLink(call);
}

void SummaryFacts::OnEvent(const read::Event& event)
{
    Shares.OnEvent(event);
    Findings::OnEvent(event);
    if (!range_.Holds(event.BeginTime))
        return;
    ++Events;
    Measure(event, "PDUCallbackTrap");
}

void SummaryFacts::OnParam(const read::Param& param)
{
    auto change = params_.OnParam(param, Findings::Links());
    if (!range_.Holds(param.By->BeginTime))
        return;
    ParamsSet += param.IsSet;
    if (change && change->Before && Changes.size() < MostChanges)
        Changes.push_back(std::move(*change));
}

ModuleFacts* SummaryFacts::ModuleOf(std::uint32_t session, std::uint32_t handle)
{
    const auto found = std::ranges::find_if(
        Modules, [&](const ModuleFacts& each) { return each.Session == session && each.Handle == handle; });
    if (found != Modules.end())
        return &*found;
    if (Modules.size() == MostModules || handle == read::UndefinedHandle)
        return nullptr;
    Modules.push_back({session, handle, {}, {}, {}});
    return &Modules.back();
}

void SummaryFacts::SeeModules(const read::Call& call)
{
    ModuleFacts* module = nullptr;
    for (const read::CallLine& line : call.LinesOut) {
        const read::DecodedText decoded = line.Decode();
        if (decoded.Label == "hMod")
            module =
                ModuleOf(call.Session, read::NumberInValue(decoded.Value).value_or(read::UndefinedHandle));
        else if (decoded.Label == "pVendorModuleName" && module)
            module->Name = Unquoted(decoded.Value);
    }
}

void SummaryFacts::SeeVersion(const read::Call& call)
{
    ModuleFacts* module = call.Module ? ModuleOf(call.Session, *call.Module) : nullptr;
    if (!module)
        return;
    if (const auto serial = read::ValueOf(call.LinesOut, "HwSerialNumber"))
        module->Serial = *serial;
    const auto name = read::ValueOf(call.LinesOut, "PDUApiSwName");
    const auto version = read::ValueOf(call.LinesOut, "PDUApiSwVersion");
    if (name && version)
        module->Software = Unquoted(*name) + " " + std::string(*version);
}

LinkFacts* SummaryFacts::FactsOf(const read::Link& link)
{
    const auto found = std::ranges::find_if(Links, [&](const LinkFacts& each) {
        return each.What.Session == link.Session && each.What.Module == link.Module &&
               each.What.Handle == link.Handle && each.What.CreatedAt == link.CreatedAt;
    });
    if (found != Links.end())
        return &*found;
    if (Links.size() == MostLinks)
        return nullptr;
    Links.push_back({});
    Links.back().What = link;
    return &Links.back();
}

void SummaryFacts::SeeLink(const read::Call& call)
{
    if (call.Which == Function::CreateComLogicalLink) {
        const auto handle = read::ValueOf(call.LinesOut, "phCLL");
        if (const auto number = handle ? read::NumberInValue(*handle) : std::nullopt)
            FactsOf(
                *Findings::Links().Find(call.Session, call.Module.value_or(read::UndefinedHandle), *number));
        return;
    }
    if (!call.Link || (call.Which != Function::Connect && call.Which != Function::Disconnect))
        return;
    if (LinkFacts* facts = FactsOf(*Findings::Links().Find(call))) {
        if (call.Which == Function::Connect && !facts->Connected)
            facts->Connected = call.BeginTime;
        if (call.Which == Function::Disconnect)
            facts->Disconnected = call.EndTime;
    }
}

void SummaryFacts::OnEnded(const read::Exchange& exchange)
{
    Shares.OnEnded(exchange);
    if ((exchange.Type != PDU_COPT_SENDRECV && exchange.Type != 0) || !range_.Holds(exchange.Time))
        return;
    const auto outcome = static_cast<std::size_t>(exchange.Result);
    ++Requests;
    ++ByOutcome[outcome];
    const auto latency = exchange.FirstAnswer();
    if (latency)
        LatencyUs.Add(latency->Us);
    // A start that failed may name a link that does not exist.
    const bool isLink =
        exchange.HasHandles && (exchange.On->IsCreated || exchange.Result != read::Outcome::NotStarted);
    if (LinkFacts* facts = isLink ? FactsOf(*exchange.On) : nullptr) {
        ++facts->Requests;
        ++facts->ByOutcome[outcome];
    }
}

void SummaryFacts::Finish()
{
    FinishFindings();
    for (const read::Session* session : live_)
        Retire(*session);
    live_.clear();
}

} // namespace marvane::tool
