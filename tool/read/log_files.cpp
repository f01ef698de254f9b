#include "tool/read/log_files.h"

#include <algorithm>
#include <chrono>
#include <ctime>
#include <set>
#include <tuple>

#include "platform/clock.h"
#include "platform/utf8_path.h"
#include "platform/whole_path.h"

namespace marvane::read {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view Compressed = ".gz";

LogTime TimeOf(const FileTime& time)
{
    const std::int64_t days = DaysOf({time.Year, time.Month, time.Day});
    const std::int64_t seconds = (time.Hour * 60 + time.Minute) * 60 + time.Second;
    return {days * MillisecondsPerDay + seconds * 1000};
}

LogTime LocalTime(std::int64_t moment)
{
    const std::tm local = platform::LocalCalendarTime(moment);
    const std::int64_t days = DaysOf({local.tm_year + 1900, static_cast<unsigned>(local.tm_mon + 1),
                                      static_cast<unsigned>(local.tm_mday)});
    return {days * MillisecondsPerDay + ((local.tm_hour * 60 + local.tm_min) * 60 + local.tm_sec) * 1000LL};
}

LogTime ChangeOf(const fs::path& path)
{
    std::error_code error;
    const fs::file_time_type changed = fs::last_write_time(path, error);
    if (error)
        return LocalTime(platform::Now().Second);
    const auto system = std::chrono::file_clock::to_sys(changed);
    return LocalTime(std::chrono::floor<std::chrono::seconds>(system.time_since_epoch()).count());
}

std::optional<LogFileName> NameOf(std::string_view name)
{
    if (name.ends_with(Compressed))
        name.remove_suffix(Compressed.size());
    return ParseLogFileName(name);
}

LogFile FileAt(const fs::path& path)
{
    LogFile file;
    file.Path = path;
    file.Begin.Name = platform::PathText(path.filename());
    file.IsCompressed = file.Begin.Name.ends_with(Compressed);
    std::error_code error;
    const std::uintmax_t size = fs::file_size(path, error);
    file.Size = error ? 0 : size;
    const std::optional<LogFileName> name = NameOf(file.Begin.Name);
    file.LastChange = ChangeOf(path);
    file.Begin.HasNameTime = name.has_value();
    file.Begin.NameTime = name ? TimeOf(name->Begun) : file.LastChange;
    if (name)
        file.Family = name->Family;
    file.Begin.IsComms = file.Family == LogFamily::Comms;
    return file;
}

LogFile StandardInput()
{
    LogFile file;
    file.Path = "-";
    file.IsStandardInput = true;
    file.Begin.Name = '-';
    file.Begin.NameTime = LocalTime(platform::Now().Second);
    return file;
}

/// True if `pattern` with * and ? matches all of `text`.
bool Matches(std::string_view pattern, std::string_view text)
{
    std::size_t p = 0;
    std::size_t t = 0;
    std::size_t star = std::string_view::npos;
    std::size_t starText = 0;
    while (t < text.size()) {
        if (p < pattern.size() && pattern[p] == '*') {
            star = p++;
            starText = t;
        } else if (p < pattern.size() && (pattern[p] == '?' || pattern[p] == text[t])) {
            ++p;
            ++t;
        } else if (star != std::string_view::npos) {
            p = star + 1;
            t = ++starText;
        } else {
            return false;
        }
    }
    return std::all_of(pattern.begin() + static_cast<std::ptrdiff_t>(p), pattern.end(),
                       [](char c) { return c == '*'; });
}

class Finder
{
public:
    void Add(const std::string& path);
    FoundFiles Result();

private:
    void AddFile(const fs::path& path);
    void AddFolder(const fs::path& folder);
    void AddPattern(const fs::path& pattern);
    /// Adds the files of a folder whose names `isWanted`. False if there are none.
    template <class IsWanted> bool AddFrom(const fs::path& folder, IsWanted isWanted);
    void Fail(const fs::path& path, std::string reason)
    {
        found_.Failures.push_back({platform::PathText(path), std::move(reason)});
    }

    FoundFiles found_;
    std::set<fs::path> known_;
};

void Finder::Add(const std::string& text)
{
    if (text == "-") {
        found_.Files.push_back(StandardInput());
        return;
    }
    const fs::path path = platform::FilePath(text);
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (fs::is_directory(status))
        return AddFolder(path);
    if (fs::exists(status))
        return AddFile(path);
    if (platform::PathText(path.filename()).find_first_of("*?") != std::string::npos)
        return AddPattern(path);
    Fail(path, status.type() == fs::file_type::not_found ? "no such file" : error.message());
}

void Finder::AddFile(const fs::path& path)
{
    if (known_.insert(platform::ResolvedPath(path)).second)
        found_.Files.push_back(FileAt(path));
}

template <class IsWanted> bool Finder::AddFrom(const fs::path& folder, IsWanted isWanted)
{
    std::error_code error;
    bool hasAny = false;
    fs::directory_iterator entry(folder.empty() ? fs::path(".") : folder, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        std::error_code ignored;
        const fs::path name = entry->path().filename();
        if (!isWanted(platform::PathText(name)) || entry->is_directory(ignored))
            continue;
        AddFile(folder / name);
        hasAny = true;
    }
    if (error)
        Fail(folder, error.message());
    return hasAny || error;
}

void Finder::AddFolder(const fs::path& folder)
{
    const bool hasAny = AddFrom(folder, [](const std::string& name) { return NameOf(name).has_value(); });
    const fs::path whole = platform::ResolvedPath(folder);
    const std::string prefix =
        platform::PathText(whole.has_filename() ? whole.filename() : whole.parent_path().filename());
    const fs::path parent = whole.has_filename() ? whole.parent_path() : whole.parent_path().parent_path();
    const bool hasComms = !prefix.empty() && AddFrom(parent, [&](const std::string& name) {
        const std::optional<LogFileName> parsed = NameOf(name);
        return parsed && parsed->Prefix == prefix;
    });
    if (!hasAny && !hasComms)
        Fail(folder, "no logs in this folder");
}

void Finder::AddPattern(const fs::path& pattern)
{
    const std::string namePattern = platform::PathText(pattern.filename());
    if (!AddFrom(pattern.parent_path(), [&](const std::string& name) { return Matches(namePattern, name); }))
        Fail(pattern, "no file has such a name");
}

FoundFiles Finder::Result()
{
    std::ranges::stable_sort(found_.Files, {}, [](const LogFile& file) {
        return std::tuple(file.Begin.NameTime, file.Begin.IsComms, file.Begin.Name);
    });
    return std::move(found_);
}

} // namespace

FoundFiles FindLogFiles(const std::vector<std::string>& paths)
{
    Finder finder;
    for (const std::string& path : paths)
        finder.Add(path);
    return finder.Result();
}

} // namespace marvane::read
