#include "tool/analysis/summary_json.h"

#include "tool/console/json_text.h"
#include "tool/console/row_text.h"

namespace marvane::tool {

namespace {

std::string SessionJson(const read::Session& session)
{
    JsonObject object;
    object.Add("number", session.Number)
        .Add("process", session.Process)
        .Add("begin", DateTimeText(session.BeginTime))
        .Add("dur_ms", session.LastTime - session.BeginTime)
        .Add("loaded", session.IsLoaded)
        .Add("ended", session.IsEnded);
    if (!session.Marvane.empty())
        object.Add("marvane", session.Marvane);
    if (!session.Target.empty())
        object.Add("target", session.Target);
    if (!session.TargetVersion.empty())
        object.Add("target_version", session.TargetVersion);
    return object.Text();
}

std::string ModuleJson(const ModuleFacts& module)
{
    JsonObject object;
    object.Add("session", module.Session).Add("hmod", module.Handle).Add("name", module.Name);
    if (!module.Serial.empty())
        object.Add("serial", module.Serial);
    if (!module.Software.empty())
        object.Add("software", module.Software);
    return object.Text();
}

void AddOutcomes(JsonObject& object, std::uint64_t requests,
                 const std::uint64_t (&counts)[read::OutcomeCount])
{
    object.Add("requests", requests);
    for (std::size_t i = 0; i < std::size(counts); ++i)
        object.Add(read::OutcomeName(static_cast<read::Outcome>(i)), counts[i]);
}

std::string LinkJson(const LinkFacts& link)
{
    JsonObject object;
    object.Add("session", link.What.Session).Add("hmod", link.What.Module).Add("hcll", link.What.Handle);
    if (!link.What.Protocol.empty())
        object.Add("protocol", link.What.Protocol);
    if (!link.What.Resource.empty())
        object.Add("resource", link.What.Resource);
    JsonArray pins;
    for (const std::uint32_t pin : link.What.Pins)
        pins.AddRaw(std::to_string(pin));
    object.AddRaw("pins", pins.Text());
    if (link.Connected)
        object.Add("connected", DateTimeText(*link.Connected));
    if (link.Disconnected)
        object.Add("disconnected", DateTimeText(*link.Disconnected));
    AddOutcomes(object, link.Requests, link.ByOutcome);
    return object.Text();
}

std::string FunctionJson(const FunctionFacts& facts)
{
    return JsonObject()
        .Add("call", facts.Name)
        .Add("count", facts.Ms.Count())
        .Add("failed", facts.Failed)
        .Add("total_ms", facts.Ms.Total())
        .Add("p50_ms", facts.Ms.Percentile(50))
        .Add("p95_ms", facts.Ms.Percentile(95))
        .Add("max_ms", facts.Ms.Max())
        .Text();
}

std::string ChangeJson(const read::ParamChange& change)
{
    return JsonObject()
        .Add("session", change.Session)
        .Add("hcll", change.On->Handle)
        .Add("name", change.Name)
        .Add("before", change.Before.value_or(""))
        .Add("after", change.After)
        .Text();
}

std::string TimeJson(const TimeShares& shares)
{
    return JsonObject()
        .Add("answers_ms", shares.ControlUnitMs())
        .Add("calls_ms", shares.InCallsMs())
        .Add("application_ms", shares.ApplicationMs())
        .Text();
}

std::string RequestsJson(const SummaryFacts& facts)
{
    JsonObject requests;
    AddOutcomes(requests, facts.Requests, facts.ByOutcome);
    return requests.Add("p50_us", facts.LatencyUs.Percentile(50))
        .Add("p95_us", facts.LatencyUs.Percentile(95))
        .Add("max_us", facts.LatencyUs.Max())
        .Text();
}

std::string SlowJson(const SlowFacts& slow)
{
    return JsonObject().Add("dur_ms", slow.Ms).Add("what", slow.What).Add("line", slow.At.Line).Text();
}

std::string ItemsJson(const SummaryFacts& facts)
{
    return JsonObject().Add("given", facts.ItemsGiven()).Add("destroyed", facts.ItemsDestroyed()).Text();
}

std::string ParamsJson(const SummaryFacts& facts)
{
    return JsonObject()
        .Add("set", facts.ParamsSet)
        .AddRaw("changed", ListJson(facts.Changes, ChangeJson))
        .Text();
}

std::string FoundJson(const SummaryFacts& facts)
{
    JsonObject found;
    for (std::size_t i = 0; i < std::size(facts.ByKind); ++i)
        found.Add(FindingName(static_cast<FindingKind>(i)), facts.ByKind[i]);
    return found.Text();
}

} // namespace

std::string SummaryJson(const SummaryFacts& facts, const std::vector<read::LogFile>& files)
{
    const auto text = [](const auto& each) { return JsonString(each); };
    JsonObject summary;
    summary.Add("schema", "marvane.summary/1")
        .AddRaw("files", ListJson(files, [](const auto& file) { return JsonString(file.Begin.Name); }))
        .AddRaw("sessions", ListJson(facts.Sessions, SessionJson))
        .AddRaw("modules", ListJson(facts.Modules, ModuleJson))
        .AddRaw("links", ListJson(facts.Links, LinkJson))
        .AddRaw("requests", RequestsJson(facts))
        .Add("calls", facts.Calls)
        .Add("events", facts.Events)
        .Add("threads", facts.Threads.size())
        .AddRaw("functions",
                ListJson(facts.Functions, [](const auto& each) { return FunctionJson(each.second); }))
        .AddRaw("slowest", ListJson(facts.Slow, SlowJson))
        .AddRaw("items", ItemsJson(facts))
        .AddRaw("params", ParamsJson(facts))
        .Add("cut_payloads", facts.CutPayloads())
        .AddRaw("found", FoundJson(facts))
        .AddRaw("hints", ListJson(facts.Hints().ForAll(), text));
    if (facts.Shares.AreKnown())
        summary.AddRaw("time", TimeJson(facts.Shares));
    return summary.Text();
}

} // namespace marvane::tool
