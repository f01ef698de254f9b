#include "logger/log/thread_stamp.h"

#include "platform/process.h"

namespace marvane {

namespace {

thread_local constinit ThreadStamp Own;

// A forked child's one thread has an id of its own, which is part of the stamp.
const bool ForksSeen = (platform::CallInForkedChild([] { Own = ThreadStamp(); }), true);

} // namespace

ThreadStamp& ThreadStamp::OfThisThread(std::int64_t second)
{
    return Own.At(second);
}

} // namespace marvane
