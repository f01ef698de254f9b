#include "tool/export/trace_events.h"

#include "tool/export/json_line.h"

namespace marvane::tool::trace {

namespace {

using Arguments = std::vector<std::pair<std::string_view, std::string>>;

void AppendText(std::string& line, std::string_view key, std::string_view text)
{
    line.append(",\"").append(key).append("\":");
    AppendJsonString(line, text);
}

void AppendNumber(std::string& line, std::string_view key, std::int64_t number)
{
    line.append(",\"").append(key).append("\":").append(std::to_string(number));
}

void AppendArguments(std::string& line, const Arguments& arguments)
{
    std::string members;
    for (const auto& [key, value] : arguments)
        if (!value.empty())
            AppendText(members, key, value);
    line += '{';
    line += std::string_view(members).substr(members.empty() ? 0 : 1);
    line += '}';
}

} // namespace

void EventWriter::Begin()
{
    line_ = hasEvents_ ? ",\n" : "{\"traceEvents\":[\n";
    hasEvents_ = true;
}

void EventWriter::Write(const Event& event)
{
    Begin();
    line_.append("{\"ph\":\"").append(1, event.Phase) += '"';
    AppendNumber(line_, "pid", event.On.Process);
    AppendNumber(line_, "tid", event.On.Thread);
    AppendNumber(line_, "ts", event.Us);
    AppendText(line_, "name", event.Name);
    if (!event.Category.empty())
        AppendText(line_, "cat", event.Category);
    if (event.Id != 0)
        AppendText(line_, "id", std::to_string(event.Id));
    if (event.Phase == 'f')
        line_ += ",\"bp\":\"e\""; // its end is in the slice around it, not in the next one
    if (event.Phase == 'i')
        line_ += ",\"s\":\"t\"";
    if (!event.Arguments.empty()) {
        line_ += ",\"args\":";
        AppendArguments(line_, event.Arguments);
    }
    line_ += '}';
    out_.Write(line_);
}

void EventWriter::WriteName(std::string_view what, Row on, std::string_view name)
{
    Write({.Phase = 'M', .On = on, .Us = 0, .Name = what, .Arguments = {{"name", std::string(name)}}});
}

void EventWriter::Finish(const Arguments& arguments)
{
    line_ = hasEvents_ ? "\n" : "{\"traceEvents\":[";
    line_ += "],\"displayTimeUnit\":\"ms\",\"otherData\":";
    AppendArguments(line_, arguments);
    line_ += "}\n";
    out_.Write(line_);
}

} // namespace marvane::tool::trace
