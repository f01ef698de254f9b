// marvane params: the ComParams of each link: default, read, set, restored.
#include "tool/commands/param_table.h"

#include "tool/analysis/link_words.h"
#include "tool/commands/program.h"
#include "tool/commands/shared_options.h"
#include "tool/console/arguments.h"
#include "tool/console/json_text.h"
#include "tool/console/row_text.h"
#include "tool/input/log_source.h"

namespace marvane::tool {

namespace {

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
