// The records that say what the log is: the first one of each file, and one a session.
#include <deque>
#include <utility>

#include "tool/console/help.h"
#include "tool/export/log_records.h"
#include "tool/export/record_fields.h"

namespace marvane::tool {

namespace {

constexpr std::string_view Schema = "marvane.log/1";

} // namespace

/// The first line of each file.
void LogRecords::WriteHead()
{
    if (!line_.Takes("log"))
        return;
    const read::LogFile& first = inputs_.Files.front();
    line_.Begin("log");
    Put("ts", first.Begin.NameTime);
    line_.Text("file", first.Begin.Name);
    line_.Number("line", 1);
    line_.Number("session", 1);
    line_.Text("schema", Schema);
    line_.Text("program", VersionLine());
    std::vector<std::string_view> names;
    for (const read::LogFile& file : inputs_.Files)
        names.push_back(file.Begin.Name);
    line_.Texts("files", names);
    line_.Text("host", inputs_.Host);
    std::vector<NamedValue> tags;
    for (const auto& [key, value] : inputs_.Tags)
        tags.push_back({key, value});
    if (!tags.empty())
        line_.Values("tags", tags);
    End(false);
}

void LogRecords::OnSession(const read::Session& session)
{
    WriteSession();
    Findings::OnSession(session);
    session_ = &session;
}

/// The record of a session waits for the first call, which shows whether the target library was loaded.
void LogRecords::WriteSession()
{
    if (!session_)
        return;
    const read::Session& session = *std::exchange(session_, nullptr);
    if (!Begin("session", session.BeginTime, session.Begin, session.Number))
        return;
    line_.TextIfAny("marvane", session.Marvane);
    line_.TextIfAny("target", session.Target);
    line_.TextIfAny("target_version", session.TargetVersion);
    if (session.IsLoaded || session.HasNotLoaded || !session.LoadFailure.empty())
        line_.Flag("loaded", session.IsLoaded);
    std::vector<NamedValue> settings;
    std::deque<std::string> numbers;
    for (const read::Setting& setting : session.Settings) {
        if (setting.Number)
            numbers.push_back(std::to_string(*setting.Number));
        settings.push_back(
            {setting.Key, setting.Number ? numbers.back() : setting.Text, setting.Number.has_value()});
    }
    line_.Values("settings", settings);
    End(IsChanged(session.Begin, session.LastAt));
}

} // namespace marvane::tool
