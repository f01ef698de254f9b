#include "tool/commands/follow.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <set>
#include <thread>

namespace marvane::tool {

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds PollEvery(100);
constexpr std::size_t PartSize = 64 * 1024;

/// When the command is to give up; never without --timeout. It counts from the first time it is asked for.
Clock::time_point EndOfPatience(const Arguments& arguments)
{
    static const Clock::time_point begin = Clock::now();
    const std::optional<std::string> text = arguments.Value("--timeout");
    if (!text)
        return Clock::time_point::max();
    char* end = nullptr;
    const double seconds = std::strtod(text->c_str(), &end);
    if (text->empty() || *end != 0 || !(seconds >= 0 && seconds <= 1e8))
        throw UsageError("--timeout takes a number of seconds, not '" + *text + "'");
    return begin + std::chrono::milliseconds(static_cast<std::int64_t>(std::llround(seconds * 1000)));
}

std::string TextOf(const fs::path& path)
{
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

/// A file that is read as far as it has been written, again and again.
class GrowingFile
{
public:
    explicit GrowingFile(fs::path path) : path_(std::move(path)) {}

    /// Passes on what is new; true if there was anything.
    bool ReadInto(read::LogReader& reader, const read::FileBegin& begin)
    {
        std::error_code gone;
        const std::uintmax_t size = fs::file_size(path_, gone);
        if (gone || size == at_)
            return false;
        if (size < at_)
            BeginAgain(reader, begin);
        std::ifstream stream(path_, std::ios::binary);
        stream.seekg(static_cast<std::streamoff>(at_));
        char part[PartSize];
        stream.read(part, sizeof part);
        at_ += static_cast<std::uintmax_t>(stream.gcount());
        reader.Feed({part, static_cast<std::size_t>(stream.gcount())});
        return stream.gcount() > 0;
    }

private:
    void BeginAgain(read::LogReader& reader, const read::FileBegin& begin)
    {
        reader.Report(read::ProblemKind::FileChanged,
                      begin.Name + ": became shorter, read again from its beginning");
        reader.EndFile();
        reader.BeginFile(begin);
        at_ = 0;
    }

    fs::path path_;
    std::uintmax_t at_ = 0;
};

/// The files that are followed, one after the other.
class Follower
{
public:
    Follower(std::vector<read::LogFile>& files, read::LogReader& reader) : files_(files), reader_(reader)
    {
        const bool hasApi =
            std::ranges::any_of(files, [](const auto& file) { return file.Family == LogFamily::Api; });
        if (hasApi)
            std::erase_if(files, [](const auto& file) { return file.Begin.IsComms; });
        for (const read::LogFile& file : files) {
            if (file.IsStandardInput)
                throw UsageError("-f follows files, not standard input");
            known_.insert(file.Path.filename());
        }
    }

    /// Reads what is there and not more than a part at a time; true if there was anything.
    bool Step()
    {
        if (!current_ && !BeginNext())
            return false;
        if (current_->ReadInto(reader_, files_[number_].Begin))
            return true;
        if (number_ + 1 == files_.size() && !FindNewer())
            return false;
        if (current_->ReadInto(reader_, files_[number_].Begin))
            return true; // Written between the two looks.
        reader_.EndFile();
        current_.reset();
        ++number_;
        return Step();
    }

private:
    bool BeginNext()
    {
        while (number_ < files_.size() && files_[number_].IsCompressed)
            read::ReadLogFile(files_[number_++], reader_);
        if (number_ >= files_.size())
            return false;
        reader_.BeginFile(files_[number_].Begin);
        current_.emplace(files_[number_].Path);
        return true;
    }

    /// Adds the files that were begun after the last one; true if there are any.
    bool FindNewer()
    {
        const read::LogFile last = files_.back();
        const fs::path folder = last.Path.has_parent_path() ? last.Path.parent_path() : fs::path(".");
        bool found = false;
        for (read::LogFile& file : read::FindLogFiles({TextOf(folder)}).Files) {
            const bool isNext = file.Family == last.Family && file.Begin.NameTime >= last.Begin.NameTime;
            if (!isNext || !known_.insert(file.Path.filename()).second)
                continue;
            files_.push_back(std::move(file));
            found = true;
        }
        return found;
    }

    std::vector<read::LogFile>& files_;
    read::LogReader& reader_;
    std::set<fs::path> known_;
    std::size_t number_ = 0;
    std::optional<GrowingFile> current_;
};

} // namespace

bool IsFollowing(const Arguments& arguments)
{
    const bool isFollowing = arguments.Has("--follow");
    for (const char* const option : {"--until-match", "--timeout"})
        if (!isFollowing && arguments.Has(option))
            throw UsageError(std::string(option) + " is for following: add -f");
    return isFollowing;
}

bool WaitFor(const Arguments& arguments, const std::function<bool()>& find)
{
    const Clock::time_point end = EndOfPatience(arguments);
    while (!find()) {
        if (Clock::now() >= end)
            return false;
        std::this_thread::sleep_for(PollEvery);
    }
    return true;
}

int FollowLogs(const Arguments& arguments, Console& console, std::vector<read::LogFile>& files,
               read::LogReader& reader, const std::function<void()>& afterBatch)
{
    if (const std::optional<std::string> text = arguments.Value("--until-match"))
        console.WatchFor(*text);
    Follower follower(files, reader);
    const bool isDone = WaitFor(arguments, [&] {
        while (!console.HasMatched() && follower.Step()) {
            afterBatch();
            console.Flush();
        }
        return console.HasMatched() || reader.IsEnough();
    });
    reader.Finish();
    return isDone ? 0 : 1;
}

} // namespace marvane::tool
