#include "tool/input/follow.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <optional>
#include <thread>

#include "platform/utf8_path.h"
#include "tool/input/follower.h"
#include "tool/input/input_pump.h"

namespace marvane::tool {

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds PollEvery(100);

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

/// True if a folder is followed, with whatever begins in it.
bool TakesFolder(const Arguments& arguments)
{
    const auto isFolder = [](const std::string& path) {
        std::error_code unknown;
        return fs::is_directory(platform::FilePath(path), unknown);
    };
    return arguments.Operands().empty() || std::ranges::any_of(arguments.Operands(), isFolder);
}

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
