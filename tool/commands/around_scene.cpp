#include "tool/commands/around_scene.h"

#include <algorithm>
#include <cstdio>

#include "tool/console/row_text.h"
#include "tool/read/call_text.h"

namespace marvane::tool {

namespace {

constexpr std::size_t BytesShown = 8;

/// The first bytes of a message: "22 F1 90", "36 01 00 01 +126".
std::string BytesText(const read::Payload& payload, std::size_t most)
{
    std::string text;
    const std::size_t shown = std::min(most, payload.Shown.size());
    for (const std::uint8_t byte : payload.Shown.first(shown)) {
        char digits[8];
        std::snprintf(digits, sizeof digits, "%s%02X", text.empty() ? "" : " ", static_cast<unsigned>(byte));
        text += digits;
    }
    if (payload.Size > shown)
        text += " +" + std::to_string(payload.Size - shown);
    return text;
}

std::string ShortName(std::string_view name)
{
    return std::string(name.starts_with("PDU") ? name.substr(3) : name);
}

/// "PDU_ERR_EVENT_QUEUE_EMPTY" as "EVENT_QUEUE_EMPTY".
std::string ShortStatus(std::string_view name)
{
    for (const std::string_view beginning :
         {"PDU_ERR_EVT_", "PDU_ERR_", "PDU_STATUS_", "PDU_COPST_", "PDU_CLLST_"})
        if (name.starts_with(beginning))
            return Printable(name.substr(beginning.size()));
    return Printable(name);
}

std::string Primitive(std::uint32_t number)
{
    return " #" + std::to_string(number);
}

std::string NameOf(const read::Call& call, bool isEvent)
{
    std::string name = isEvent ? "callback" : ShortName(call.Name);
    if (call.Which == read::Function::StartComPrimitive) {
        std::vector<std::uint8_t> storage;
        if (call.Primitive)
            name += Primitive(*call.Primitive);
        return name + "  " + BytesText(read::RequestOf(call, storage), BytesShown);
    }
    if (const std::string_view command = read::CommandName(call.Arguments);
        call.Which == read::Function::IoCtl && !command.empty())
        name.append(" ").append(command);
    if (call.Link)
        name += ", link " + std::to_string(*call.Link);
    return name;
}

std::string ResultOf(const read::Call& call)
{
    if (call.State == read::CallState::NotLoaded)
        return "library not loaded";
    if (call.State == read::CallState::InFlight)
        return "never returned";
    if (!call.Status || *call.Status == 0)
        return {};
    constexpr std::string_view queueEmpty = "PDU_ERR_EVENT_QUEUE_EMPTY";
    return call.StatusName == queueEmpty ? "empty" : ShortStatus(call.StatusName);
}

std::string ItemText(const read::Item& item)
{
    std::string text = item.Primitive ? Primitive(*item.Primitive).substr(1) + " " : "";
    if (item.Kind == read::ItemKind::Result)
        return text + BytesText(item.Data, BytesShown);
    return text + ShortStatus(item.CodeName);
}

std::string ReportText(const read::Comms& report)
{
    std::string label(report.Protocol);
    std::erase(label, '[');
    std::erase(label, ']');
    char address[16] = "";
    if (report.Address)
        std::snprintf(address, sizeof address, " %X", static_cast<unsigned>(*report.Address));
    if (!label.empty())
        label += ' ';
    const char* const arrow = report.Way == Direction::ToTarget ? "->" : "<-";
    const std::string bytes = BytesText(report.Data, BytesShown);
    return label + arrow + address + "  " + (bytes.empty() ? std::string(report.Title) : bytes);
}

} // namespace

void SceneSink::OnSession(const read::Session& session)
{
    if (session.BeginTime <= scene_.End)
        scene_.Zero = session.BeginTime;
}

void SceneSink::OnEntry(const read::Call& call, bool isEvent)
{
    isPast_ = call.BeginTime > scene_.End;
    if (isPast_)
        return;
    Act act;
    act.Thread = call.Thread;
    act.Begin = call.Begin;
    act.BeginTime = act.EndTime = call.BeginTime;
    act.IsByTheLibrary = isEvent;
    act.Name = NameOf(call, isEvent);
    open_.push_back(std::move(act));
}

void SceneSink::Add(Act act)
{
    isFull_ |= scene_.Acts.size() >= MostActs;
    if (!isFull_)
        scene_.Acts.push_back(std::move(act));
}

void SceneSink::Close(const read::Call& call, bool isEvent)
{
    std::erase_if(open_, [&](const Act& act) { return act.Begin == call.Begin; });
    if (!IsInside(call.BeginTime, call.EndTime))
        return;
    Act act;
    act.Thread = call.Thread;
    act.Begin = call.Begin;
    act.BeginTime = call.BeginTime;
    act.EndTime = call.EndTime;
    if (call.State != read::CallState::InFlight)
        act.End = call.End;
    act.IsByTheLibrary = isEvent;
    act.HasFailed = !isEvent && call.HasFailed();
    act.Name = NameOf(call, isEvent);
    act.Result = ResultOf(call);
    Add(std::move(act));
}

void SceneSink::OnItem(const read::Item& item)
{
    if (scene_.Acts.empty() || !item.Fetch || scene_.Acts.back().Begin != item.Fetch->Begin)
        return;
    scene_.Acts.back().Result = ItemText(item);
    scene_.Acts.back().HasItem = true;
}

void SceneSink::OnComms(const read::Comms& report)
{
    if (!IsInside(report.Time, report.Time))
        return;
    Act act;
    act.Thread = report.Thread;
    act.Begin = report.At;
    act.BeginTime = act.EndTime = report.Time;
    act.IsReport = act.IsByTheLibrary = true;
    act.Name = ReportText(report);
    Add(std::move(act));
}

Scene SceneSink::Finish()
{
    for (Act& act : open_) {
        act.EndTime = scene_.End;
        scene_.Acts.push_back(std::move(act));
    }
    open_.clear();
    std::ranges::stable_sort(scene_.Acts, {}, &Act::Begin);
    return std::move(scene_);
}

} // namespace marvane::tool
