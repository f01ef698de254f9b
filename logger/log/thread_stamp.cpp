#include "logger/log/thread_stamp.h"

#include "platform/process.h"

namespace marvane {

namespace {

thread_local constinit ThreadStamp Own;

// The thread of a forked child has another id, which is part of the stamp.
const bool ForksSeen = (platform::CallInForkedChild([] { Own = ThreadStamp(); }), true);

} // namespace

ThreadStamp& ThreadStamp::Begin(std::int64_t second)
{
    const platform::TimeOfDay time = platform::LocalTimeOfDay(second);
    PutStamp(text_, {time.Hour, time.Minute, time.Second, static_cast<std::uint16_t>(milliseconds_),
                     platform::CurrentThreadId()});
    second_ = second;
    return *this;
}

ThreadStamp& ThreadStamp::OfThisThread()
{
    return Own;
}

} // namespace marvane
