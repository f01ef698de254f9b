#include "logger/log/phase_text.h"

#include "platform/clock.h"
#include "platform/process.h"

namespace marvane {

PhaseTime::PhaseTime(std::uint16_t hour, std::uint16_t minute, std::uint16_t second,
                     std::uint16_t milliseconds)
    : isSet_(true)
{
    marvane::PutStamp(stamp_, {hour, minute, second, milliseconds, platform::CurrentThreadId()});
}

void PhaseTime::Read()
{
    const platform::Moment now = platform::Now();
    ThreadStamp::OfThisThread().At(now.Second).Put(now.Milliseconds, stamp_);
    isSet_ = true;
}

void PhaseText::AddStamp()
{
    if (!LoggingActive() || !buffer_.HasRoom())
        return;
    // Logging may have been switched on in mid-call.
    buffer_.Append(time_.IsSet() ? time_.StampText() : PhaseTime(0, 0, 0, 0).StampText());
}

void PhaseText::AddArrow(Arrow arrow)
{
    AddStamped(arrow.Text());
}

void PhaseText::AddStampThenJoined(std::string_view first, std::string_view second, std::string_view third)
{
    AddStamp();
    if (LoggingActive() && buffer_.HasRoom())
        buffer_.Append(first, second, third);
}

} // namespace marvane
