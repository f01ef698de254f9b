// What one phase of a call writes to the log: lines that share one stamp.
//
// A call has two phases, before and after the target library runs. Each composes its text here and hands it
// to the log in one piece, so that lines of different threads are never mixed inside a phase.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "line/arrows.h"
#include "line/stamp.h"
#include "logger/log/log_buffer.h"
#include "logger/log/thread_stamp.h"
#include "logger/state/settings.h"

namespace marvane {

/// The stamp that the lines of a phase begin with: local time at which the phase began, and calling thread.
class PhaseTime
{
public:
    /// No time has been read.
    PhaseTime() = default;
    PhaseTime(std::uint16_t hour, std::uint16_t minute, std::uint16_t second, std::uint16_t milliseconds);
    /// Reads the clock.
    void Read();

    bool IsSet() const { return isSet_; }
    /// "{14:03:07.250 - 00001A2C} ".
    std::string_view StampText() const { return {stamp_, StampLength}; }
    /// Writes the stamp to a place of at least ThreadStamp::Place characters, all of which may be
    /// overwritten. Returns the end of the stamp.
    char* PutStamp(char* out) const
    {
        std::memcpy(out, stamp_, sizeof stamp_);
        return out + StampLength;
    }

private:
    // Two whole 16-byte registers, as it was written: a copy in other pieces has to wait until the writes
    // have left the store buffer, which cost 7 of 207 ns a call.
    char stamp_[ThreadStamp::Place] = {};
    bool isSet_ = false;
};

/// Text and time of one phase, on the stack of its call. Every statement adds its text only while logging is
/// active and the buffer has room, so callers need not test that. Used by one thread.
class PhaseText
{
public:
    /// An empty text without a time.
    PhaseText() = default;
    explicit PhaseText(const PhaseTime& time) : time_(time) {}

    /// Begins a phase: empties the text and reads the clock. Does nothing while logging is off.
    void Begin()
    {
        if (!LoggingActive())
            return;
        buffer_.Clear();
        time_.Read();
    }

    /// Empties the text; the time stays.
    void Clear() { buffer_.Clear(); }

    std::string_view Text() const { return buffer_.Text(); }
    bool HasRoom() const { return buffer_.HasRoom(); }
    const PhaseTime& Time() const { return time_; }

    /// Adds one statement. The text of a format is one unit: it is added whole or, at the end of the buffer,
    /// cut.
    template <FormatLiteral Literal, class... Arguments>
    requires FormatOf<LogFormat<Literal>, Arguments...>
    void Add(LogFormat<Literal> format, const Arguments&... arguments)
    {
        if (LoggingActive() && buffer_.HasRoom())
            buffer_.Append(format, arguments...);
    }

    /// The same with a line break at the end of the statement.
    template <FormatLiteral Literal, class... Arguments>
    requires FormatOf<LogFormat<Literal>, Arguments...>
    void AddLine(LogFormat<Literal>, const Arguments&... arguments)
    {
        Add(LogFormat<WithLineBreak(Literal)>(), arguments...);
    }

    /// Adds the stamp, with which every line begins.
    void AddStamp();

    /// Adds the stamp, and then a statement that joins one to three texts.
    template <class... Texts> void AddStamped(const Texts&... texts)
    {
        if (!LoggingActive())
            return;
        char* out = time_.IsSet() ? buffer_.Reserve((ThreadStamp::Place + ... + texts.size())) : nullptr;
        // Near the end of the buffer the mark may have to come between the two.
        if (!out)
            return AddStampThenJoined(texts...);
        out = time_.PutStamp(out);
        ((out = PutText(out, texts)), ...);
        buffer_.Commit(out);
    }

    /// Adds the stamp and the arrow of a decoded line.
    void AddArrow(Arrow arrow);

    /// Reserves the bytes of whole lines for the caller to fill. Null while logging is off, near the end of
    /// the buffer, and without a time: then the lines have to be added by statements.
    char* Reserve(std::size_t length)
    {
        return LoggingActive() && time_.IsSet() ? buffer_.Reserve(length) : nullptr;
    }

private:
    void AddStampThenJoined(std::string_view first, std::string_view second = {},
                            std::string_view third = {});

    LogBuffer buffer_;
    PhaseTime time_;
};

} // namespace marvane
