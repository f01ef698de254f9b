#include "tool/commands/follow.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <mutex>
#include <optional>
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

/// True if a folder is followed, with whatever begins in it.
bool TakesFolder(const Arguments& arguments)
{
    const auto isFolder = [](const std::string& path) {
        std::error_code unknown;
        return fs::is_directory(fs::path(std::u8string(path.begin(), path.end())), unknown);
    };
    return arguments.Operands().empty() || std::ranges::any_of(arguments.Operands(), isFolder);
}

/// A file that is read as far as it has been written, again and again.
class GrowingFile
{
public:
    GrowingFile(fs::path path, std::uint32_t number) : path_(std::move(path)), number_(number) {}

    /// Its number in the reader.
    std::uint32_t Number() const { return number_; }
    const fs::path& Path() const { return path_; }

    bool HasNews() const { return Size() != at_; }
    bool HasShrunk() const { return Size() < at_; }

    /// Passes on what is new; true if there was anything.
    bool ReadInto(read::LogReader& reader)
    {
        if (!HasNews())
            return false;
        std::ifstream stream(path_, std::ios::binary);
        stream.seekg(static_cast<std::streamoff>(at_));
        char part[PartSize];
        stream.read(part, sizeof part);
        at_ += static_cast<std::uintmax_t>(stream.gcount());
        reader.Feed({part, static_cast<std::size_t>(stream.gcount())});
        return stream.gcount() > 0;
    }

private:
    /// A file that is gone has no news.
    std::uintmax_t Size() const
    {
        std::error_code gone;
        const std::uintmax_t size = fs::file_size(path_, gone);
        return gone ? at_ : size;
    }

    fs::path path_;
    std::uint32_t number_;
    std::uintmax_t at_ = 0;
};

/// The files that are followed: the newest of each family grows, one after the other begins.
class Follower
{
public:
    Follower(std::vector<read::LogFile>& files, read::LogReader& reader, bool takesAllFamilies)
        : files_(files), reader_(reader), takesAllFamilies_(takesAllFamilies)
    {
        for (const read::LogFile& file : files)
            known_.insert(file.Path.filename());
    }

    /// Reads what is there and not more than a part at a time; true if there was anything.
    bool Step()
    {
        if (open_ && Read(*open_))
            return true;
        if (next_ < files_.size())
            return BeginNext();
        for (GrowingFile& file : growing_)
            if (file.HasNews())
                return Read(file.Number());
        return FindNewer() && BeginNext();
    }

private:
    GrowingFile& Growing(std::uint32_t number)
    {
        return *std::ranges::find(growing_, number, &GrowingFile::Number);
    }

    /// Reads a part of the file with that number, again from its beginning if it became shorter.
    bool Read(std::uint32_t number)
    {
        if (Growing(number).HasShrunk())
            number = BeginAgain(number);
        if (!Growing(number).HasNews())
            return false;
        GoTo(number);
        return Growing(number).ReadInto(reader_);
    }

    void GoTo(std::uint32_t number)
    {
        if (open_ == number)
            return;
        Leave();
        reader_.Resume(number);
        open_ = number;
    }

    void Leave()
    {
        if (open_)
            reader_.Suspend();
        open_.reset();
    }

    void End(std::uint32_t number)
    {
        GoTo(number);
        reader_.EndFile();
        open_.reset();
        std::erase_if(growing_, [number](const GrowingFile& file) { return file.Number() == number; });
    }

    /// The files have the numbers of the reader, so one that is begun again stands there twice.
    std::uint32_t BeginAgain(std::uint32_t number)
    {
        const read::LogFile file = files_[number];
        GoTo(number);
        reader_.Report(read::ProblemKind::FileChanged,
                       file.Begin.Name + ": became shorter, read again from its beginning");
        End(number);
        files_.insert(files_.begin() + static_cast<std::ptrdiff_t>(next_), file);
        Begin();
        return *open_;
    }

    void Begin()
    {
        Leave();
        const read::LogFile& file = files_[next_];
        reader_.BeginFile(file.Begin);
        open_ = static_cast<std::uint32_t>(next_++);
        growing_.emplace_back(file.Path, *open_);
    }

    /// Begins the next file. The one of its family before it is read to its end first.
    bool BeginNext()
    {
        const std::optional<LogFamily> family = files_[next_].Family;
        const auto former = std::ranges::find_if(
            growing_, [&](const GrowingFile& file) { return files_[file.Number()].Family == family; });
        if (former != growing_.end()) {
            const std::uint32_t number = former->Number();
            if (Read(number))
                return true;
            End(number);
        }
        if (!files_[next_].IsCompressed) {
            Begin();
            return Read(*open_) || Step();
        }
        Leave();
        read::ReadLogFile(files_[next_++], reader_);
        return true;
    }

    bool IsFollowed(const read::LogFile& file) const
    {
        const auto last = std::find_if(files_.rbegin(), files_.rend(),
                                       [&](const read::LogFile& each) { return each.Family == file.Family; });
        if (last == files_.rend())
            return takesAllFamilies_ && file.Begin.NameTime >= files_.front().Begin.NameTime;
        return file.Begin.NameTime >= last->Begin.NameTime;
    }

    /// Adds the files that were begun after the last one of their family; true if there are any.
    bool FindNewer()
    {
        if (files_.empty())
            return false; // None came before the time-out.
        // Comms logs may be beside the folder of the API logs, which leads to both.
        const auto api = std::ranges::find(files_, std::optional(LogFamily::Api), &read::LogFile::Family);
        const fs::path path = api == files_.end() ? files_.back().Path : api->Path;
        const fs::path folder = path.has_parent_path() ? path.parent_path() : fs::path(".");
        std::vector<read::LogFile> newer;
        for (read::LogFile& file : read::FindLogFiles({TextOf(folder)}).Files)
            if (IsFollowed(file) && known_.insert(file.Path.filename()).second)
                newer.push_back(std::move(file));
        files_.insert(files_.end(), newer.begin(), newer.end());
        return !newer.empty();
    }

    std::vector<read::LogFile>& files_;
    read::LogReader& reader_;
    bool takesAllFamilies_;
    std::set<fs::path> known_;
    std::size_t next_ = 0;              ///< the first of the files that has not been begun
    std::optional<std::uint32_t> open_; ///< the file that the reader is in
    std::vector<GrowingFile> growing_;
};

/// Standard input, which is read on a thread of its own: nobody knows how long that takes.
class InputPump
{
public:
    InputPump() { std::thread(Pump, state_).detach(); }

    /// Passes on what has come; true if there was anything.
    bool ReadInto(read::LogReader& reader)
    {
        std::string bytes;
        {
            const std::lock_guard hold(state_->Mutex);
            bytes.swap(state_->Bytes);
        }
        reader.Feed(bytes);
        return !bytes.empty();
    }
    /// True if no more will come, and all was passed on.
    bool IsAtEnd() const
    {
        const std::lock_guard hold(state_->Mutex);
        return state_->IsAtEnd && state_->Bytes.empty();
    }

private:
    struct State
    {
        std::mutex Mutex;
        std::string Bytes;
        bool IsAtEnd = false;
    };

    /// Line by line, so that none waits for a full buffer.
    static void Pump(const std::shared_ptr<State>& state)
    {
        std::string line;
        for (int byte = std::getc(stdin); byte != EOF; byte = std::getc(stdin)) {
            line += static_cast<char>(byte);
            if (byte != '\n')
                continue;
            const std::lock_guard hold(state->Mutex);
            state->Bytes += line;
            line.clear();
        }
        const std::lock_guard hold(state->Mutex);
        state->Bytes += line;
        state->IsAtEnd = true;
    }

    std::shared_ptr<State> state_ = std::make_shared<State>();
};

/// Passes on what a source has, until the text that is waited for was written or the sink has enough.
template <typename Source>
bool Drain(Source&& step, Console& console, const read::LogReader& reader,
           const std::function<void()>& afterBatch)
{
    while (!console.HasMatched() && step()) {
        afterBatch();
        console.Flush();
    }
    return console.HasMatched() || reader.IsEnough();
}

/// With --until-match it is a failure if the input ends before.
int FollowInput(const Arguments& arguments, Console& console, const read::LogFile& input,
                read::LogReader& reader, const std::function<void()>& afterBatch)
{
    InputPump pump;
    reader.BeginFile(input.Begin);
    bool isDone = false;
    const bool isInTime = WaitFor(arguments, [&] {
        const bool wasAtEnd = pump.IsAtEnd();
        isDone = Drain([&] { return pump.ReadInto(reader); }, console, reader, afterBatch);
        return isDone || wasAtEnd;
    });
    reader.Finish();
    return isDone || (isInTime && !arguments.Has("--until-match")) ? 0 : 1;
}

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
    if (std::ranges::any_of(files, &read::LogFile::IsStandardInput)) {
        if (files.size() > 1)
            throw UsageError("-f follows files or standard input, not both");
        return FollowInput(arguments, console, files.front(), reader, afterBatch);
    }
    Follower follower(files, reader, TakesFolder(arguments));
    const bool isDone = WaitFor(
        arguments, [&] { return Drain([&] { return follower.Step(); }, console, reader, afterBatch); });
    reader.Finish();
    return isDone ? 0 : 1;
}

} // namespace marvane::tool
