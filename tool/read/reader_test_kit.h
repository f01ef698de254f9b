// For the tests of the reader: what was read from a log as text, and logs in a few characters.
#pragma once

#include <sstream>
#include <string>
#include <string_view>

#include "tool/read/log_reader.h"

namespace marvane::read::testing {

/// One line a record, in the order in which the sink was told.
class TextSink : public LogSink
{
public:
    std::string Text() const { return out_.str(); }

    void OnSession(const Session& session) override
    {
        out_ << "session " << session.Number << " process " << session.Process
             << (session.HasBeginning ? "\n" : " no beginning\n");
    }
    void OnCall(const Call& call) override
    {
        out_ << Lines(call) << "call " << call.Name;
        AddState(call);
    }
    void OnEvent(const Event& event) override
    {
        out_ << Lines(event) << "event 0x" << std::hex << event.Type << std::dec;
        AddState(event);
    }
    void OnItem(const Item& item) override
    {
        out_ << item.At.Line << " item 0x" << std::hex << item.TypeCode << std::dec << " hCoP "
             << (item.Primitive ? std::to_string(*item.Primitive) : "none") << ' ' << item.CodeName;
        AddBytes(item.Data.Shown);
        out_ << (item.Data.IsCut ? " cut\n" : "\n");
    }
    void OnComms(const Comms& report) override
    {
        out_ << report.At.Line << (report.Way == Direction::ToTarget ? " sent " : " received ") << '\''
             << report.Protocol << "' '" << report.Title << "' lines " << report.Lines.size();
        AddBytes(report.Data.Shown);
        out_ << (report.IsCut ? " cut\n" : "\n");
    }
    void OnParam(const Param& param) override
    {
        out_ << param.By->Begin.Line << (param.IsSet ? " set " : " get ") << param.Id << " '" << param.Name
             << "' ";
        if (param.Number)
            out_ << *param.Number;
        AddBytes(param.Field);
        out_ << '\n';
    }
    void OnMark(const Mark& mark) override { out_ << mark.At.Line << " mark " << mark.Text << '\n'; }
    void OnProblem(const Problem& problem) override
    {
        static constexpr const char* names[] = {"damaged",      "last line cut", "in flight",
                                                "cut",          "not loaded",    "exit without entry",
                                                "file changed", "file trouble"};
        out_ << problem.At.Line << ' ' << names[static_cast<int>(problem.What)] << ": " << problem.Text
             << '\n';
    }

private:
    static std::string Lines(const Call& call)
    {
        return std::to_string(call.Begin.Line) + ".." + std::to_string(call.End.Line) + ' ';
    }

    void AddState(const Call& call)
    {
        static constexpr const char* states[] = {"returned", "in flight", "not loaded", "cut"};
        out_ << ' ' << states[static_cast<int>(call.State)];
        if (call.Status)
            out_ << ' ' << *call.Status;
        out_ << " thread " << std::hex << call.Thread << std::dec << " depth " << call.Depth << " in "
             << call.LinesIn.size() << " out " << call.LinesOut.size() << ' ' << call.Duration() << " ms\n";
    }

    void AddBytes(Bytes bytes)
    {
        static constexpr char digits[] = "0123456789abcdef";
        for (std::size_t i = 0; i < bytes.size(); ++i)
            out_ << (i == 0 ? " " : "") << digits[bytes[i] >> 4] << digits[bytes[i] & 15];
    }

    std::ostringstream out_;
};

/// A log from lines whose stamps are written short: "1 + PDUConstruct()" is of thread 1, "1@250 ..." has 250
/// as its milliseconds, "|text" has no stamp. The hour is ten.
inline std::string LogOf(std::string_view lines)
{
    std::string log;
    while (!lines.empty()) {
        const std::string_view line = lines.substr(0, lines.find('\n'));
        lines.remove_prefix(std::min(lines.size(), line.size() + 1));
        if (line.starts_with('|')) {
            log.append(line.substr(1)) += '\n';
            continue;
        }
        const bool hasTime = line[1] == '@';
        const std::string_view time = hasTime ? line.substr(2, 3) : "000";
        log.append("{10:00:00.").append(time).append(" - 0000000").append(1, line[0]);
        log.append("} ").append(line.substr(hasTime ? 6 : 2)) += '\n';
    }
    return log;
}

/// What is read from one file with that content, in pieces of that size.
inline std::string ReadText(std::string_view log, std::size_t piece = std::string_view::npos)
{
    TextSink sink;
    LogReader reader(sink);
    reader.BeginFile({.Name = "test", .NameTime = {DaysOf({2026, 11, 21}) * MillisecondsPerDay}});
    while (!log.empty()) {
        reader.Feed(log.substr(0, piece));
        log.remove_prefix(std::min(log.size(), piece));
    }
    reader.Finish();
    return sink.Text();
}

} // namespace marvane::read::testing
