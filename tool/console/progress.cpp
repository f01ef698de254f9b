#include "tool/console/progress.h"

#include "platform/terminal.h"

namespace marvane::tool {

namespace {

constexpr std::chrono::milliseconds FirstAfter(500);
constexpr std::chrono::milliseconds ThenEvery(100);

void Put(const std::string& text)
{
    bool closed = false;
    platform::WriteStream(platform::Stream::Error, text, closed);
}

} // namespace

Progress::Progress(std::string what, std::uint64_t total)
    : what_(std::move(what)), total_(total), wanted_(platform::IsTerminal(platform::Stream::Error)),
      next_(Clock::now() + FirstAfter)
{
}

Progress::~Progress()
{
    if (shown_ > 0)
        Put("\r" + std::string(shown_, ' ') + "\r");
}

void Progress::At(std::uint64_t done)
{
    if (!wanted_ || Clock::now() < next_)
        return;
    next_ = Clock::now() + ThenEvery;
    std::string line = what_;
    if (total_ > 0)
        line += " " + std::to_string(done * 100 / total_) + " %";
    const std::size_t length = line.size();
    if (length < shown_)
        line.append(shown_ - length, ' ');
    shown_ = length;
    Put("\r" + line);
}

} // namespace marvane::tool
