// marvane params: the ComParams of each link: default, read, set, restored.
#include <algorithm>
#include <map>

#include "pdu/pdu_api.h"
#include "tool/commands/arguments.h"
#include "tool/commands/json_text.h"
#include "tool/commands/link_words.h"
#include "tool/commands/log_source.h"
#include "tool/commands/mdf_names.h"
#include "tool/commands/program.h"
#include "tool/commands/row_text.h"
#include "tool/commands/shared_options.h"
#include "tool/commands/talk_filter.h"
#include "tool/read/exchanges.h"
#include "tool/read/param_values.h"

namespace marvane::tool {

namespace {

// Of each ComParam so many values that were set are kept, and of links and their ComParams so many.
constexpr std::size_t MostSets = 20;
constexpr std::size_t MostRows = 100'000;
constexpr std::size_t MostStarts = 10'000;

/// Values that followed each other without a change are one.
struct SetValue
{
    std::string Value;
    read::Position At; ///< where it was set first
};

struct ParamRow
{
    std::string Name;
    std::optional<std::string> Default;
    std::optional<std::string> Read; ///< by the first PDUGetComParam
    read::Position ReadAt;
    std::vector<SetValue> Set;
    std::uint64_t SetCount = 0;
    std::optional<read::Position> RestoredAt;

    bool IsChanged() const
    {
        return Set.size() > 1 || (Set.size() == 1 && Read && *Read != Set.front().Value);
    }
};

/// Where a link came into use.
struct LinkStart
{
    std::optional<read::Position> Connected;
    std::optional<read::Position> Started; ///< its communication
};

struct LinkRows
{
    std::shared_ptr<const read::Link> On;
    LinkStart Start;
    std::map<std::uint32_t, ParamRow> Rows; ///< by the number of the ComParam

    /// True if a ComParam was set before the link was connected.
    bool IsSetBefore(const ParamRow& row) const
    {
        return Start.Connected && !row.Set.empty() && row.Set.front().At < *Start.Connected;
    }
};

class ParamTable : public read::LogSink, private read::ExchangeSink
{
public:
    static constexpr read::Wants Wants = read::Wants::Calls | read::Wants::Items | read::Wants::Params;

    ParamTable(const MdfNames& names, TalkFilter filter, Console& console,
               const std::vector<read::LogFile>& files)
        : names_(names), filter_(std::move(filter)), console_(console), files_(files)
    {
        exchanges_.Links().SetNames(names.Names());
    }

    std::vector<LinkRows> Links;
    bool HasSession = false; ///< false if there was no line of a log

    void OnSession(const read::Session& session) override
    {
        HasSession = true;
        names_.OnSession(session);
    }
    void OnEntry(const read::Call& call, bool isEvent) override { exchanges_.OnEntry(call, isEvent); }
    void OnCall(const read::Call& call) override
    {
        if (call.Which == read::Function::Connect && call.State == read::CallState::Returned &&
            call.Status == 0u)
            StartOf(exchanges_.Links().Find(call)).Connected = call.Begin;
        exchanges_.OnCall(call);
    }
    void OnItem(const read::Item& item) override { exchanges_.OnItem(item); }
    void OnProblem(const read::Problem& problem) override { ComplainAbout(problem, files_, console_); }

    void OnParam(const read::Param& param) override
    {
        const auto link = exchanges_.Links().Find(*param.By);
        if (!filter_.Accepts(*link))
            return;
        ParamRow* row = RowOf(link, param);
        if (!row)
            return;
        const std::string value = read::ParamValueText(param);
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

    void Finish()
    {
        exchanges_.Finish();
        for (LinkRows& rows : Links)
            rows.Start = StartOf(rows.On);
    }

private:
    LinkStart& StartOf(const std::shared_ptr<const read::Link>& link)
    {
        if (starts_.size() >= MostStarts && !starts_.contains(link))
            return otherStart_ = {};
        return starts_[link];
    }

    LinkRows* LinkOf(const std::shared_ptr<const read::Link>& link)
    {
        const auto found = std::ranges::find(Links, link, &LinkRows::On);
        return found == Links.end() ? nullptr : &*found;
    }

    ParamRow* RowOf(const std::shared_ptr<const read::Link>& link, const read::Param& param)
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

    void OnExchange(const read::Exchange& exchange) override
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

    const MdfNames& names_;
    TalkFilter filter_;
    Console& console_;
    const std::vector<read::LogFile>& files_;
    read::Exchanges exchanges_{static_cast<read::ExchangeSink&>(*this)};
    std::map<std::shared_ptr<const read::Link>, LinkStart> starts_;
    LinkStart otherStart_; ///< of links beyond MostStarts
    std::size_t rowCount_ = 0;
};

std::string SetText(const ParamRow& row)
{
    std::string text;
    for (const SetValue& set : row.Set)
        text += (text.empty() ? "" : " -> ") + set.Value;
    return text;
}

std::string StartText(const LinkStart& start)
{
    std::string text;
    if (start.Connected)
        text += "   connected in line " + PositionText(*start.Connected);
    if (start.Started)
        text += std::string(text.empty() ? "   " : ", ") + "communication started in line " +
                PositionText(*start.Started);
    return text;
}

void WriteLink(Console& console, const LinkRows& link, bool hasDefaults)
{
    const std::string name = LinkText(*link.On).empty() ? std::string("no link") : LinkText(*link.On);
    console.Write(name + (link.On->Name().empty() ? "" : "   " + Printable(link.On->Name())) +
                  StartText(link.Start) + "\n");
    const std::size_t readColumn = hasDefaults ? 43 : 33;
    const std::size_t setColumn = hasDefaults ? 57 : 51;
    std::string header = "    ComParam";
    if (hasDefaults)
        PutAt(header, 33, "default");
    PutAt(header, readColumn, "read");
    PutAt(header, setColumn, "set");
    PutBefore(header, 98, "line");
    console.Write(header + "\n");
    for (const auto& [id, row] : link.Rows) {
        std::string text = std::string(link.IsSetBefore(row) ? " <" : "  ") + (row.IsChanged() ? "! " : "  ");
        text += Shortened(Printable(row.Name), 28);
        if (row.Default)
            PutAt(text, 33, Shortened(Printable(*row.Default), readColumn - 34));
        if (row.Read)
            PutAt(text, readColumn, Shortened(*row.Read, setColumn - readColumn - 1));
        std::string set = SetText(row);
        if (row.RestoredAt)
            set += "  restored (" + PositionText(*row.RestoredAt) + ")";
        PutAt(text, setColumn, Shortened(set, 91 - setColumn));
        PutBefore(text, 98, PositionText(row.Set.empty() ? row.ReadAt : row.Set.back().At));
        console.Write(Finished(std::move(text)));
    }
}

void WriteTable(Console& console, const ParamTable& table, const MdfNames& names)
{
    std::uint64_t changed = 0;
    std::uint64_t before = 0;
    bool hasConnect = false;
    std::uint64_t count = 0;
    for (const LinkRows& link : table.Links) {
        WriteLink(console, link, !names.IsEmpty());
        console.Write("\n");
        count += link.Rows.size();
        hasConnect |= link.Start.Connected.has_value();
        for (const auto& [id, row] : link.Rows) {
            changed += row.IsChanged();
            before += link.IsSetBefore(row);
        }
    }
    std::string sum = Counted(count, "ComParam") + ", " + Grouped(changed) + " changed (!)";
    if (hasConnect)
        sum += ", " + (before == 0 ? "none" : Grouped(before)) + " set before PDUConnect (<)";
    console.Write(sum + "    defaults: " + (names.IsEmpty() ? "--mdf FILE" : names.Source()) + "\n");
}

std::string RowJson(const LinkRows& link, std::uint32_t id, const ParamRow& row)
{
    JsonObject object;
    object.Add("session", link.On->Session);
    if (link.On->Module != read::UndefinedHandle)
        object.Add("hmod", link.On->Module);
    if (link.On->Handle != read::UndefinedHandle)
        object.Add("hcll", link.On->Handle);
    object.Add("link", link.On->Name()).Add("id", id).Add("name", row.Name);
    if (row.Default)
        object.Add("default", *row.Default);
    if (row.Read)
        object.Add("read", *row.Read).Add("read_line", row.ReadAt.Line);
    JsonArray sets;
    for (const SetValue& set : row.Set)
        sets.AddRaw(JsonObject().Add("value", set.Value).Add("line", set.At.Line).Text());
    object.AddRaw("set", sets.Text()).Add("set_count", row.SetCount).Add("changed", row.IsChanged());
    if (row.RestoredAt)
        object.Add("restored_line", row.RestoredAt->Line);
    if (link.Start.Connected)
        object.Add("connected_line", link.Start.Connected->Line)
            .Add("set_before_connect", link.IsSetBefore(row));
    if (link.Start.Started)
        object.Add("started_line", link.Start.Started->Line);
    return object.Text();
}

void WriteJson(Console& console, const ParamTable& table, const std::vector<read::LogFile>& files)
{
    JsonArray names;
    for (const read::LogFile& file : files)
        names.Add(file.Begin.Name);
    std::string rows;
    for (const LinkRows& link : table.Links)
        for (const auto& [id, row] : link.Rows)
            rows += (rows.empty() ? "\n" : ",\n") + RowJson(link, id, row);
    console.Write("{\"schema\":\"marvane.params/1\",\"files\":" + names.Text() + ",\"params\":[" + rows +
                  (rows.empty() ? "" : "\n") + "]}\n");
}

int RunParams(const Arguments& arguments, Console& console)
{
    const MdfNames names = MdfNames::Of(arguments, console);
    TalkFilter filter;
    filter.Link = arguments.Value("--link");
    const std::vector<read::LogFile> files = FindLogs(arguments, console);
    if (files.empty())
        return ExitTrouble; // complained about
    ParamTable table(names, filter, console, files);
    read::LogReader reader(table, ParamTable::Wants);
    ReadLogs(files, reader);
    table.Finish();
    if (!table.HasSession && console.HasComplained())
        return ExitTrouble;
    if (table.Links.empty() && filter.IsSet())
        return 1;
    if (arguments.Has("--json")) {
        WriteJson(console, table, files);
    } else {
        console.UsePager();
        WriteTable(console, table, names);
        WriteFileNames(files, console);
    }
    return 0;
}

constexpr Option ParamOptionList[] = {
    {"--link", "LINK", "Only this link: its handle, or a part of its resource's or protocol's name"},
    {"--json", "", "As JSON, schema marvane.params/1"},
};
constexpr OptionGroup ParamOptions = {"What to show", ParamOptionList};
constexpr OptionGroup ParamGroups[] = {ParamOptions, NameOptions, LogOptions};

constexpr Example ParamExamples[] = {
    {"params", "what the newest session read and set"},
    {"params run.LGR --link 2 --mdf vendor.xml", "one link, with names and defaults"},
};

} // namespace

extern const Command ParamsCommand;
constinit const Command ParamsCommand = {
    .Name = "params",
    .Purpose = "ComParams by link: default, read, set, restored",
    .Takes = LogOperands,
    .Description = WhatLogsAre,
    .Examples = ParamExamples,
    .Groups = ParamGroups,
    .ExitStatus = "0; 1 if --link chose a link and it has none; 2 for trouble or wrong usage",
    .Run = RunParams,
};

} // namespace marvane::tool
