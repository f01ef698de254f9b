#include "tool/read/sessions.h"

#include <algorithm>

#include "tool/read/call_text.h"

namespace marvane::read {

namespace {

constexpr std::size_t MostSessions = 1000;
constexpr std::size_t MostSettings = 200;

/// The text between the first and the last `quote` of a text.
std::string_view Between(std::string_view text, char quote)
{
    const std::size_t begin = text.find(quote);
    const std::size_t end = text.rfind(quote);
    return begin < end ? text.substr(begin + 1, end - begin - 1) : std::string_view();
}

std::string_view WithoutBlanks(std::string_view text)
{
    const std::size_t begin = std::min(text.find_first_not_of(' '), text.size());
    return text.substr(begin, text.find_last_not_of(' ') + 1 - begin);
}

Setting& SettingOf(Session& session, std::string_view key)
{
    const auto found = std::ranges::find(session.Settings, key, &Setting::Key);
    if (found != session.Settings.end())
        return *found;
    if (session.Settings.size() < MostSettings)
        session.Settings.emplace_back();
    session.Settings.back().Key = key;
    return session.Settings.back();
}

} // namespace

Session& SessionTable::Begin(Position at, LogTime time, bool hasBeginning)
{
    if (sessions_.size() == MostSessions)
        sessions_.pop_front();
    auto session = std::make_unique<Session>();
    session->Number = ++count_;
    session->Begin = session->LastAt = at;
    session->BeginTime = session->LastTime = time;
    session->HasBeginning = hasBeginning;
    sessions_.push_back(std::move(session));
    return *sessions_.back();
}

Session* SessionTable::Find(std::uint32_t number) const
{
    const auto first = static_cast<std::uint32_t>(count_ - sessions_.size() + 1);
    return number >= first && number <= count_ ? sessions_[number - first].get() : nullptr;
}

Session* SessionTable::Newest() const
{
    const auto open = std::find_if(sessions_.rbegin(), sessions_.rend(),
                                   [](const auto& session) { return !session->IsEnded; });
    if (open != sessions_.rend())
        return open->get();
    return sessions_.empty() ? nullptr : sessions_.back().get();
}

Session* SessionTable::NewestBefore(const Session& session) const
{
    const auto open = std::find_if(sessions_.rbegin(), sessions_.rend(), [&session](const auto& other) {
        return !other->IsEnded && other->Number < session.Number;
    });
    return open == sessions_.rend() ? nullptr : open->get();
}

std::string* TakeSetting(Session& session, std::string_view setting)
{
    const std::size_t equals = setting.find('=');
    if (equals == std::string_view::npos)
        return nullptr;
    Setting& target = SettingOf(session, WithoutBlanks(setting.substr(0, equals)));
    const bool isDirectory = equals > 0 && setting[equals - 1] != ' ';
    const std::string_view value =
        isDirectory ? setting.substr(equals + 1) : WithoutBlanks(setting.substr(equals + 1));
    target.Number.reset();
    if (!value.starts_with('\'') || isDirectory) {
        target.Text = value;
        if (!isDirectory)
            target.Number = NumberInValue(value);
        return nullptr;
    }
    const bool isWhole = value.size() >= 2 && value.ends_with('\'');
    target.Text = value.substr(1, value.size() - (isWhole ? 2 : 1));
    return isWhole ? nullptr : &target.Text;
}

std::optional<std::uint32_t> LoadedOf(std::string_view header)
{
    constexpr std::string_view begin = "{Loaded=";
    if (!header.starts_with(begin) || !header.ends_with('}'))
        return std::nullopt;
    return NumberInValue(header.substr(begin.size(), header.size() - begin.size() - 1));
}

void TakeLoading(Session& session, std::string_view line)
{
    const std::string_view text = line.substr(ArrowLength);
    if (text.starts_with("LOADING: DLL = "))
        session.Target = Between(text, '"');
    if (text.starts_with("LOADING:  Failed to load - "))
        session.Target = Between(text, '\'');
    if (!text.starts_with("LOADED:  Version '"))
        return;
    const std::string_view versionAndPath = Between(text, '\'');
    constexpr std::string_view between = "' of '";
    const std::size_t at = versionAndPath.find(between);
    if (at == std::string_view::npos)
        return;
    session.TargetVersion = versionAndPath.substr(0, at);
    session.Target = versionAndPath.substr(at + between.size());
}

void TakeLoadFailure(Session& session, std::string_view line)
{
    constexpr std::string_view label = "\t\t\t\t\tDescription:- ";
    constexpr std::size_t longest = 4096;
    if (line.starts_with(label))
        session.LoadFailure = line.substr(label.size(), longest);
    else if (session.LoadFailure.size() + line.size() < longest)
        session.LoadFailure.append(" ").append(line);
}

std::optional<std::uint32_t> Session::NumberOf(std::string_view key) const
{
    const auto found = std::ranges::find(Settings, key, &Setting::Key);
    return found == Settings.end() ? std::nullopt : found->Number;
}

} // namespace marvane::read
