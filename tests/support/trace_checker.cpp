#include "tests/support/trace_checker.h"

#include <cstdint>
#include <map>
#include <sstream>
#include <vector>

namespace marvane::testing {

namespace {

/// One event, which the export writes on a line of its own.
struct Event
{
    char Phase = '?';
    std::string Row; ///< process and thread
    std::int64_t Time = 0;
    std::string Name;
    std::string Id; ///< with the process
};

/// The text after `"key":` up to the next comma or brace; of a string what is between its quotes.
std::string Value(const std::string& line, const std::string& key)
{
    const std::string label = "\"" + key + "\":";
    std::size_t at = line.find(label);
    if (at == std::string::npos)
        return {};
    at += label.size();
    if (line[at] != '"')
        return line.substr(at, line.find_first_of(",}", at) - at);
    std::size_t end = at + 1;
    while (line[end] != '"')
        end += line[end] == '\\' ? 2 : 1;
    return line.substr(at + 1, end - at - 1);
}

Event EventOf(const std::string& line)
{
    const std::string process = Value(line, "pid");
    return {Value(line, "ph")[0], process + "/" + Value(line, "tid"), std::stoll(Value(line, "ts")),
            Value(line, "name"), process + "/" + Value(line, "id")};
}

struct Slice
{
    std::int64_t Begin;
    std::int64_t End;
};

class Checker
{
public:
    TraceCheck Result;

    void Take(const Event& event)
    {
        switch (event.Phase) {
        case 'B':
        case 'E':
            return TakeSlice(event);
        case 'b':
        case 'n':
        case 'e':
            return TakeAsync(event);
        case 's':
        case 'f':
            flows_[event.Id].push_back(event);
            return;
        case 'i':
        case 'M':
            return;
        default:
            Fault(event, "unknown phase");
        }
    }

    void Finish()
    {
        for (auto& [row, open] : stacks_)
            for (const Event& event : open) {
                ++Result.Open;
                slices_[row].push_back({event.Time, INT64_MAX});
            }
        for (const auto& [id, open] : async_)
            Result.OpenRequests += open.size() > 1 ? open.size() - 1 : 0;
        for (const auto& [id, ends] : flows_)
            CheckFlow(ends);
    }

private:
    void Fault(const Event& event, const std::string& text)
    {
        Result.Faults += text + ": " + event.Phase + " " + event.Name + " on " + event.Row + " at " +
                         std::to_string(event.Time) + "\n";
    }

    void TakeSlice(const Event& event)
    {
        std::vector<Event>& open = stacks_[event.Row];
        const auto last = last_.find(event.Row);
        if (last != last_.end() && event.Time <= last->second)
            Fault(event, "time does not grow");
        last_[event.Row] = event.Time;
        if (event.Phase == 'B') {
            ++Result.Slices;
            open.push_back(event);
        } else if (open.empty() || open.back().Name != event.Name) {
            Fault(event, "ends what is not innermost");
        } else {
            slices_[event.Row].push_back({open.back().Time, event.Time});
            open.pop_back();
        }
    }

    void TakeAsync(const Event& event)
    {
        std::vector<Event>& open = async_[event.Id];
        if (!open.empty() && event.Time < open.back().Time)
            Fault(event, "before its beginning");
        if (event.Phase == 'b') {
            Result.Requests += open.empty() ? 0 : 1; // the outermost is the link itself
            if (open.size() > 1)
                Fault(event, "two requests in one row");
            open.push_back(event);
        } else if (event.Phase == 'n' ? open.empty() : open.empty() || open.back().Name != event.Name) {
            Fault(event, "belongs to nothing");
        } else if (event.Phase == 'e') {
            open.pop_back();
        }
    }

    bool IsInSlice(const Event& event) const
    {
        const auto slices = slices_.find(event.Row);
        if (slices == slices_.end())
            return false;
        for (const Slice& slice : slices->second)
            if (slice.Begin <= event.Time && event.Time < slice.End)
                return true;
        return false;
    }

    void CheckFlow(const std::vector<Event>& ends)
    {
        ++Result.Flows;
        if (ends.size() != 2 || ends[0].Phase != 's' || ends[1].Phase != 'f')
            return Fault(ends[0], "flow without two ends");
        if (ends[1].Time < ends[0].Time)
            Fault(ends[1], "flow back in time");
        for (const Event& end : ends)
            if (!IsInSlice(end))
                Fault(end, "flow outside of all slices");
    }

    std::map<std::string, std::vector<Event>> stacks_;
    std::map<std::string, std::int64_t> last_;
    std::map<std::string, std::vector<Event>> async_;
    std::map<std::string, std::vector<Event>> flows_;
    std::map<std::string, std::vector<Slice>> slices_;
};

} // namespace

TraceCheck CheckTrace(const std::string& json)
{
    Checker checker;
    std::istringstream lines(json);
    for (std::string line; std::getline(lines, line);)
        if (line.starts_with("{\"ph\":"))
            checker.Take(EventOf(line));
    checker.Finish();
    return checker.Result;
}

} // namespace marvane::testing
