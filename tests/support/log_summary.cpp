#include "tests/support/log_summary.h"

#include "line/marks.h"
#include "tests/support/temporary_folder.h"
#include "tool/read/log_files.h"

namespace marvane::testing {

namespace {

class SummarySink : public read::LogSink
{
public:
    explicit SummarySink(LogSummary& summary) : summary_(summary) {}

    void OnLine(const read::Line& line) override
    {
        if (line.Kind != read::LineKind::Exit)
            return;
        const std::string_view name = line.Text.substr(marks::Exit.size());
        ++summary_.Exits[std::string(name.substr(0, name.find('<')))];
    }
    void OnEntry(const read::Call& call, bool) override { ++summary_.Entries[std::string(call.Name)]; }
    void OnComms(const read::Comms&) override { ++summary_.Reports; }
    void OnMark(const read::Mark& mark) override
    {
        summary_.Closings += mark.Text.ends_with(marks::ChangingFile);
        summary_.Continuations += mark.Text.ends_with(marks::ContinuationFile);
    }
    void OnProblem(const read::Problem& problem) override
    {
        // At the end of a log, calls may be under way.
        if (problem.What != read::ProblemKind::InFlight || !IsAtEnd)
            summary_.Wrong.emplace_back(problem.Text);
    }

    bool IsAtEnd = false;

private:
    LogSummary& summary_;
};

} // namespace

std::string LogInOrder(const std::filesystem::path& folder)
{
    std::string text;
    for (const read::LogFile& file : read::FindLogFiles({folder.string()}).Files)
        if (file.Family == LogFamily::Api)
            text += FileText(file.Path);
    return text;
}

LogSummary Summarise(std::string_view log)
{
    LogSummary summary;
    SummarySink sink(summary);
    read::LogReader reader(sink);
    reader.BeginFile({});
    reader.Feed(log.substr(0, log.rfind('\n') + 1));
    sink.IsAtEnd = true;
    reader.Finish();
    return summary;
}

std::string WrongLines(const LogSummary& summary)
{
    std::string text;
    for (std::size_t i = 0; i < summary.Wrong.size() && i < 10; ++i)
        text += "  " + summary.Wrong[i] + "\n";
    return text;
}

} // namespace marvane::testing
