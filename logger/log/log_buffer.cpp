#include "logger/log/log_buffer.h"

#include <cstring>

#include "logger/log/thread_stamp.h"
#include "platform/clock.h"
#include "platform/process.h"

namespace marvane {

void LogBuffer::Append(const FormattedText& text, LineEnd lineEnd)
{
    char* end = FormatText(text_ + length_, text_ + Capacity, text);
    if (lineEnd == LineEnd::Yes && end != text_ + Capacity)
        *end++ = '\n';
    length_ = static_cast<std::size_t>(end - text_);
    if (!HasRoom())
        AddMarker();
}

void LogBuffer::AddMarker()
{
    std::memcpy(text_ + length_, marks::BufferFull.data(), marks::BufferFull.size());
    length_ += marks::BufferFull.size();
}

namespace {

Stamp StampOfThisThread(const platform::TimeOfDay& time, std::uint32_t milliseconds)
{
    return {time.Hour, time.Minute, time.Second, static_cast<std::uint16_t>(milliseconds),
            platform::CurrentThreadId()};
}

} // namespace

FrameTime::FrameTime(std::uint16_t hour, std::uint16_t minute, std::uint16_t second,
                     std::uint16_t milliseconds)
    : isSet_(true)
{
    marvane::PutStamp(stamp_, StampOfThisThread({hour, minute, second}, milliseconds));
}

ThreadStamp& ThreadStamp::Begin(std::int64_t second)
{
    PutStamp(text_, StampOfThisThread(platform::LocalTimeOfDay(second), milliseconds_));
    second_ = second;
    return *this;
}

void ThreadStamp::Put(std::uint32_t milliseconds, char* out)
{
    if (milliseconds != milliseconds_) {
        PutStampMilliseconds(text_, milliseconds);
        milliseconds_ = milliseconds;
    }
    std::memcpy(out, text_, Place);
}

void FrameTime::Read()
{
    static_assert(ThreadStamp::Place == StampPlace);
    const platform::Moment now = platform::Now();
    ThreadStamp::OfThisThread(now.Second).Put(now.Milliseconds, stamp_);
    isSet_ = true;
}

void LogStamp(LogBuffer& text, const FrameTime& time)
{
    if (!LoggingActive() || !text.HasRoom())
        return;
    // Logging may have become active in mid-call.
    if (!time.IsSet())
        return text.Append(FrameTime(0, 0, 0, 0).StampText());
    text.Append(time.StampText());
}

void LogJoined(LogBuffer& text, std::string_view first, std::string_view second, std::string_view third)
{
    if (LoggingActive() && text.HasRoom())
        text.Join(LogBuffer::LineEnd::No, first, second, third);
}

void LogStampThenJoined(LogBuffer& text, const FrameTime& time, std::string_view first,
                        std::string_view second, std::string_view third)
{
    LogStamp(text, time);
    LogJoined(text, first, second, third);
}

void LogIndented(LogBuffer& text, const FrameTime& time, std::string_view indent)
{
    LogStamped(text, time, indent, {}, {});
}

} // namespace marvane
