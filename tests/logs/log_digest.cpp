#include "tests/logs/log_digest.h"

#include <cstdio>
#include <filesystem>
#include <map>

#include "tool/analysis/link_words.h"
#include "tool/read/exchanges.h"
#include "tool/read/log_files.h"
#include "tool/read/log_reader.h"
#include "tool/read/param_values.h"

namespace marvane::testing {

namespace {

using namespace marvane::read;

std::string Hex(Bytes bytes)
{
    std::string text;
    char digits[4];
    for (const std::uint8_t byte : bytes) {
        std::snprintf(digits, sizeof digits, "%02x", byte);
        text += digits;
    }
    return text;
}

std::string Number(const char* format, std::uint32_t number)
{
    char text[32];
    std::snprintf(text, sizeof text, format, number);
    return text;
}

std::string Place(const Position& at, std::uint32_t file = 0)
{
    return (at.File == file ? "" : std::to_string(at.File + 1) + ":") + std::to_string(at.Line);
}

std::string PayloadText(const Payload& data)
{
    std::string text = Hex(data.Shown);
    return data.IsCut ? text + " of " + std::to_string(data.Size) : text;
}

std::string StateText(const Call& call)
{
    switch (call.State) {
    case CallState::Returned:
        return "returned";
    case CallState::InFlight:
        return "in flight";
    case CallState::NotLoaded:
        return "not loaded";
    case CallState::Cut:
        return "cut";
    }
    return "?";
}

std::string ProblemText(ProblemKind what)
{
    constexpr const char* names[] = {"damaged",    "last line cut",      "in flight",    "cut",
                                     "not loaded", "exit without entry", "file changed", "file trouble"};
    return names[static_cast<std::size_t>(what)];
}

/// Lines by their place; those of one place in the order in which they came.
class Lines
{
public:
    void Add(const Position& at, const std::string& text)
    {
        lines_.emplace(at, Place(at) + " " + text + "\n");
    }
    std::string Text() const
    {
        std::string text;
        for (const auto& [at, line] : lines_)
            text += line;
        return text;
    }

private:
    std::multimap<Position, std::string> lines_;
};

class Digest : public LogSink
{
public:
    void OnCall(const Call& call) override { Add("call " + std::string(call.Name), call, true); }
    void OnEvent(const Event& event) override { Add("event " + Number("0x%X", event.Type), event, false); }

    void OnItem(const Item& item) override
    {
        constexpr const char* kinds[] = {"result", "status", "error", "info", "unknown"};
        std::string text = std::string("item ") + kinds[static_cast<std::size_t>(item.Kind)];
        if (item.Primitive)
            text += " hCoP " + std::to_string(*item.Primitive);
        text += " at " + std::to_string(item.Timestamp);
        text +=
            item.Kind == ItemKind::Result ? " " + PayloadText(item.Data) : " " + std::string(item.CodeName);
        lines_.Add(item.At, text);
    }

    void OnComms(const Comms& report) override
    {
        std::string text = report.Way == Direction::ToTarget ? "comms sent " : "comms received ";
        text += report.Protocol.empty() ? "NULL" : std::string(report.Protocol);
        text += " '" + std::string(report.Title) + "'";
        if (report.Address)
            text += Number(" 0x%X", *report.Address);
        if (report.Data.IsPresent)
            text += " " + PayloadText(report.Data);
        lines_.Add(report.At, text + " lines " + std::to_string(report.Lines.size()));
    }

    void OnParam(const Param& param) override
    {
        const std::string value = ParamValueText(param);
        lines_.Add(param.By->Begin, std::string("param ") + (param.IsSet ? "set " : "get ") +
                                        std::to_string(param.Id) + " " + ParamNameText(param) +
                                        (value.empty() ? "" : ": " + value));
    }

    void OnMark(const Mark& mark) override { lines_.Add(mark.At, "mark " + std::string(mark.Text)); }
    void OnProblem(const Problem& problem) override
    {
        lines_.Add(problem.At, "problem " + ProblemText(problem.What));
    }

    std::string Text() const { return lines_.Text(); }

private:
    void Add(std::string text, const Call& call, bool hasStatus)
    {
        text += Number(" t%X", call.Thread) + " d" + std::to_string(call.Depth) + " " + StateText(call);
        if (hasStatus && call.Status)
            text += Number(" 0x%02X", *call.Status);
        if (hasStatus && call.State != CallState::InFlight && call.State != CallState::NotLoaded)
            text += " " + std::to_string(call.Duration()) + " ms";
        text += " .." + Place(call.End, call.Begin.File);
        if (call.IsCutIn)
            text += " cut in";
        lines_.Add(call.Begin, text);
    }

    Lines lines_;
};

std::string LatencyText(const std::optional<Latency>& latency)
{
    if (!latency)
        return {};
    return ", " + std::to_string(latency->Us) + " us by " + (latency->IsByLog ? "log" : "library");
}

std::string DataText(const std::vector<std::uint8_t>& data, std::uint64_t size)
{
    std::string text = data.empty() ? "?" : Hex(data);
    return size > data.size() ? text + " of " + std::to_string(size) : text;
}

class ExchangeList : public LogSink, private ExchangeSink
{
public:
    void OnEntry(const Call& call, bool isEvent) override { exchanges_.OnEntry(call, isEvent); }
    void OnCall(const Call& call) override { exchanges_.OnCall(call); }
    void OnItem(const Item& item) override { exchanges_.OnItem(item); }
    void OnComms(const Comms& report) override { exchanges_.OnComms(report); }

    std::string Text()
    {
        exchanges_.Finish();
        std::string text;
        for (const auto& [at, line] : lines_)
            text += line;
        return text;
    }

private:
    void OnExchange(const Exchange& exchange) override
    {
        const bool hasLink = exchange.On->Handle != UndefinedHandle;
        std::string text = "#" + (exchange.Primitive ? std::to_string(*exchange.Primitive) : "?") + " link " +
                           (hasLink ? std::to_string(exchange.On->Handle) : "?") + " " +
                           DataText(exchange.Request, exchange.RequestSize) + ": " +
                           std::string(OutcomeName(exchange.Result)) +
                           (exchange.StartError == 0 ? "" : " " + exchange.StartErrorName);
        if (const Answer* answer = exchange.Deciding())
            text += " " + DataText(answer->Data, answer->Size);
        text += LatencyText(exchange.FirstAnswer());
        if (exchange.AnswerCount > 0)
            text += ", " + std::to_string(exchange.AnswerCount) +
                    (exchange.AnswerCount == 1 ? " answer" : " answers");
        if (exchange.PendingCount > 0)
            text += ", " + std::to_string(exchange.PendingCount) + " pending";
        text += Senders(exchange);
        if (exchange.Result == Outcome::Refused && exchange.Deciding()->Nrc)
            text += Number(", nrc %02x", *exchange.Deciding()->Nrc);
        if (!exchange.ErrorName.empty())
            text += ", " + exchange.ErrorName;
        lines_.emplace(exchange.At, text + "\n");
    }

    void OnUnstarted(const Exchange& request) override { OnExchange(request); }

    void OnLateAnswer(const LateAnswer& late) override
    {
        lines_.emplace(late.What.At, "#" + std::to_string(late.Primitive) + " late " + Hex(late.What.Data) +
                                         ", " + std::to_string(late.AfterEndMs) + " ms after the end\n");
    }

    /// The answers with their unique response identifiers, where these differ.
    static std::string Senders(const Exchange& exchange)
    {
        std::string text;
        bool isSame = true;
        for (const Answer& answer : exchange.Answers) {
            isSame = isSame && answer.From == exchange.Answers.front().From;
            text += (text.empty() ? "" : ", ") + (answer.From ? std::to_string(*answer.From) : "?") + ": " +
                    Hex(answer.Data);
        }
        return isSame ? std::string() : " (" + text + ")";
    }

    Exchanges exchanges_{*this, tool::SuppressesAnswer};
    std::multimap<Position, std::string> lines_;
};

void ReadAll(const std::vector<std::string>& names, LogSink& sink)
{
    std::vector<std::string> paths;
    for (const std::string& name : names)
        paths.push_back(HandMadeLog(name));
    LogReader reader(sink);
    for (const LogFile& file : FindLogFiles(paths).Files)
        ReadLogFile(file, reader);
    reader.Finish();
}

} // namespace

std::string HandMadeLog(const std::string& name)
{
    return MARVANE_LOGS_DIR "/" + name;
}

std::string LogDigest(const std::vector<std::string>& names)
{
    Digest digest;
    ReadAll(names, digest);
    return digest.Text();
}

std::string ExchangeDigest(const std::vector<std::string>& names)
{
    ExchangeList exchanges;
    ReadAll(names, exchanges);
    return exchanges.Text();
}

} // namespace marvane::testing
