#include "tool/commands/status_logs.h"

#include <algorithm>
#include <cstdio>

#include "tool/read/log_reader.h"
#include "tool/setup/setup_files.h"

namespace marvane::tool {

namespace {

constexpr std::size_t MostSessions = 3;

/// Counts what a file of a log holds.
class SessionCount : public read::LogSink
{
public:
    explicit SessionCount(SessionFacts& facts) : facts_(facts) {}

    void OnSession(const read::Session& session) override { last_ = session.Number; }
    void OnCall(const read::Call& call) override
    {
        ++facts_.Calls;
        facts_.Failed += call.HasFailed() ? 1 : 0;
        if (call.State == read::CallState::InFlight)
            facts_.Open = call.Name;
    }
    void Finish(const read::LogReader& reader)
    {
        const read::Session* const session = reader.FindSession(last_);
        if (!session)
            return;
        facts_.Ms = session->LastTime - session->BeginTime;
        facts_.IsEnded = session->IsEnded;
    }

private:
    SessionFacts& facts_;
    std::uint32_t last_ = 0;
};

SessionFacts FactsOf(const read::LogFile& file)
{
    SessionFacts facts;
    facts.File = PathText(file.Path.filename());
    facts.Path = PathText(file.Path);
    facts.Begin = file.Begin.NameTime;
    SessionCount count(facts);
    read::LogReader reader(count, read::Wants::Calls);
    facts.IsReadable = read::ReadLogFile(file, reader);
    reader.Finish();
    count.Finish(reader);
    return facts;
}

std::string SizeText(std::uint64_t bytes)
{
    const std::uint64_t tenths = bytes * 10 / (1u << 20);
    return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10) + " MB";
}

std::string DurationText(std::int64_t ms)
{
    if (ms < 60'000)
        return std::to_string(ms / 1000) + "." + std::to_string(ms / 100 % 10) + " s";
    const std::int64_t minutes = ms / 60'000;
    return minutes < 120 ? std::to_string(minutes) + " min" : std::to_string(minutes / 60) + " h";
}

std::string TimeText(read::LogTime time, bool withSeconds)
{
    const std::uint32_t seconds = time.TimeOfDay() / 1000;
    char text[40];
    std::snprintf(text, sizeof text, withSeconds ? "%02u:%02u:%02u" : "%02u:%02u", seconds / 3600,
                  seconds / 60 % 60, seconds % 60);
    return text;
}

std::string DayText(read::LogTime time)
{
    static constexpr const char* months[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                             "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    const read::Date date = time.CalendarDate();
    return (date.Day < 10 ? " " : "") + std::to_string(date.Day) + " " + months[date.Month - 1];
}

std::string NewestText(read::LogTime newest, read::LogTime now)
{
    return "newest " + TimeText(newest, true) + " " + (newest.Day() == now.Day() ? "today" : DayText(newest));
}

std::string Padded(std::string text, std::size_t width)
{
    text.resize(std::max(text.size(), width), ' ');
    return text;
}

} // namespace

FolderOfLogs LookAtLogs(const std::string& folder)
{
    FolderOfLogs logs{folder, 0, 0, {}};
    std::vector<read::LogFile> files;
    if (IsFolder(folder))
        files = read::FindLogFiles({folder}).Files;
    std::erase_if(files, [](const read::LogFile& file) { return file.Family != LogFamily::Api; });
    logs.Files = files.size();
    for (const read::LogFile& file : files)
        logs.Bytes += file.Size;
    for (std::size_t i = 0; i < std::min(files.size(), MostSessions); ++i)
        logs.Newest.push_back(FactsOf(files[files.size() - 1 - i]));
    return logs;
}

std::string OutcomeOf(const SessionFacts& session)
{
    if (!session.IsReadable)
        return "can't be read";
    if (!session.Open.empty())
        return "inside " + session.Open + " at the end";
    const std::string failed =
        session.Failed == 0 ? "none failed" : std::to_string(session.Failed) + " failed";
    return failed + (session.IsEnded ? "" : ", no PDUDestruct");
}

std::string LogRows(const FolderOfLogs& logs, std::uint64_t most, read::LogTime now)
{
    const std::string count =
        most == 0 ? std::to_string(logs.Files) + (logs.Files == 1 ? " file" : " files")
                  : std::to_string(logs.Files) + " of at most " + std::to_string(most) + " files";
    std::string rows = "   logs in     " + logs.Folder + "\n               " + count + ", " +
                       SizeText(logs.Bytes) +
                       (logs.Newest.empty() ? "" : "   " + NewestText(logs.Newest[0].Begin, now)) + "\n";
    std::size_t width = 0;
    for (const SessionFacts& session : logs.Newest)
        width = std::max(width, OutcomeOf(session).size());
    for (const SessionFacts& session : logs.Newest)
        rows += "               " + DayText(session.Begin) + " " + TimeText(session.Begin, false) + "  " +
                Padded(DurationText(session.Ms), 6) + "  " +
                Padded(std::to_string(session.Calls) + (session.Calls == 1 ? " call" : " calls"), 10) + "  " +
                Padded(OutcomeOf(session), width) + "  " + session.File + "\n";
    return rows;
}

} // namespace marvane::tool
