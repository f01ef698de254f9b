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
    std::memcpy(text_ + length_, Marker.data(), Marker.size());
    length_ += Marker.size();
}

namespace {

constexpr std::size_t MillisecondsColumn = 10;

void PutMilliseconds(char* stamp, std::uint32_t milliseconds)
{
    stamp[MillisecondsColumn] = static_cast<char>('0' + milliseconds / 100);
    PutTwoDigits(stamp + MillisecondsColumn + 1, milliseconds % 100);
}

void ComposeStamp(char* stamp, const platform::TimeOfDay& time, std::uint32_t milliseconds,
                  std::uint32_t thread)
{
    PutText(stamp, "{00:00:00.000 - 00000000} ");
    PutTwoDigits(stamp + 1, time.Hour);
    PutTwoDigits(stamp + 4, time.Minute);
    PutTwoDigits(stamp + 7, time.Second);
    PutMilliseconds(stamp, milliseconds);
    PutHex(stamp + 16, thread, UpperCase);
}

} // namespace

FrameTime::FrameTime(std::uint16_t hour, std::uint16_t minute, std::uint16_t second,
                     std::uint16_t milliseconds)
    : isSet_(true)
{
    ComposeStamp(stamp_, {hour, minute, second}, milliseconds, platform::CurrentThreadId());
}

ThreadStamp& ThreadStamp::Begin(std::int64_t second)
{
    ComposeStamp(text_, platform::LocalTimeOfDay(second), milliseconds_, platform::CurrentThreadId());
    second_ = second;
    return *this;
}

void ThreadStamp::Put(std::uint32_t milliseconds, char* out)
{
    if (milliseconds != milliseconds_) {
        PutMilliseconds(text_, milliseconds);
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
        return text.Append(FrameTime(0, 0, 0, 0).Stamp());
    text.Append(time.Stamp());
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
