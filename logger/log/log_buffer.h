// The text of one phase of a call, and the statements that add to it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <utility>

#include "line/marks.h"
#include "line/stamp.h"
#include "logger/state/settings.h"
#include "text/put_directive.h"
#include "text/text_copy.h"

namespace marvane {

/// The local time of a phase together with the calling thread, as the stamp that its lines begin with.
class FrameTime
{
public:
    /// No time has been read.
    FrameTime() = default;
    FrameTime(std::uint16_t hour, std::uint16_t minute, std::uint16_t second, std::uint16_t milliseconds);
    /// Reads the clock.
    void Read();

    bool IsSet() const { return isSet_; }
    /// "{14:03:07.250 - 00001A2C} ".
    std::string_view StampText() const { return {stamp_, StampLength}; }
    /// Writes the stamp, and whatever up to a place of StampPlace characters. Returns its end.
    char* PutStamp(char* out) const
    {
        std::memcpy(out, stamp_, StampPlace);
        return out + StampLength;
    }

    /// Of two registers: a copy that ends within one would have to wait for the writing of what it copies.
    static constexpr std::size_t StampPlace = 32;

private:
    char stamp_[StampPlace] = {};
    bool isSet_ = false;
};

/// Buffer of one call's text, on the stack of that call. Statements are dropped once the reserve is
/// reached; a marker tells so, once.
class LogBuffer
{
public:
    static constexpr std::size_t Size = 15000;
    static constexpr std::size_t Capacity = 14991;
    static constexpr std::size_t Reserve = 200;

    enum class LineEnd
    {
        No,
        Yes
    };

    // Not zero-filled: what counts is the length, and 15,000 bytes a call are dear.
    LogBuffer() {}
    LogBuffer(const LogBuffer&) = delete;
    LogBuffer& operator=(const LogBuffer&) = delete;

    std::string_view Text() const { return {text_, length_}; }
    void Clear() { length_ = 0; }

    /// True while a statement may still add text.
    bool HasRoom() const { return length_ + Reserve < Capacity; }
    /// How much text can be added.
    std::size_t Room() const { return Capacity - length_; }

    /// Adds one statement's text, cut at the capacity, and the marker when it reaches the reserve.
    /// The caller has tested HasRoom.
    void Append(std::string_view text, LineEnd lineEnd = LineEnd::No) { Join(lineEnd, text); }
    void Append(const FormattedText& text, LineEnd lineEnd);

    /// The same with a statement that is made of several texts.
    template <class... Texts> void Join(LineEnd lineEnd, const Texts&... texts)
    {
        char* end = text_ + length_;
        ((end = Put(end, texts)), ...);
        if (lineEnd == LineEnd::Yes && end != text_ + Capacity)
            *end++ = '\n';
        length_ = static_cast<std::size_t>(end - text_);
        if (!HasRoom())
            AddMarker();
    }

    /// Takes the place of a statement of that length, for the caller to put its characters there; null if a
    /// part of it would come near the reserve.
    char* Take(std::size_t length)
    {
        if (length_ + length + Reserve >= Capacity)
            return nullptr;
        length_ += length;
        return text_ + length_ - length;
    }

    /// The statement whose place was taken last ends here.
    void EndAt(const char* end) { length_ = static_cast<std::size_t>(end - text_); }

private:
    char* Put(char* end, std::string_view text)
    {
        const auto room = static_cast<std::size_t>(text_ + Capacity - end);
        if (text.size() <= room)
            return PutText(end, text);
        return PutText(end, text.substr(0, room));
    }
    void AddMarker();

    std::size_t length_ = 0;
    char text_[Size];
};

static_assert(LogBuffer::Capacity + marks::BufferFull.size() < LogBuffer::Size);

/// What one call has to say: the text of its present phase, and the time that this phase's lines carry.
struct CallText
{
    LogBuffer Buffer;
    FrameTime Time = {};
};

namespace log_buffer_detail {

/// Writes a statement straight to its place. False near the reserve: it may have to be cut.
template <class Format, class... Shown>
bool PutStatement(LogBuffer& text, LogBuffer::LineEnd lineEnd, const Shown&... shown)
{
    constexpr std::index_sequence_for<Shown...> indices;
    char* out = text.Take(put_directive::LimitOfAll<Format>(indices, shown...) + 1);
    if (!out)
        return false;
    out = put_directive::PutAll<Format>(out, indices, shown...);
    if (lineEnd == LogBuffer::LineEnd::Yes)
        *out++ = '\n';
    text.EndAt(out);
    return true;
}

template <class Format, class... Arguments>
void CutStatement(LogBuffer& text, LogBuffer::LineEnd lineEnd, const Arguments&... arguments)
{
    const put_directive::List<Arguments...> list = {FormatArgument(arguments)...};
    text.Append({Format::Text, Format::Pieces.data(), list.data(), list.size()}, lineEnd);
}

template <class Format, class... Arguments>
void Statement(LogBuffer& text, LogBuffer::LineEnd lineEnd, const Arguments&... arguments)
{
    if (!LoggingActive() || !text.HasRoom())
        return;
    if (!PutStatement<Format>(text, lineEnd, put_directive::Shown(arguments, text.Room())...))
        CutStatement<Format>(text, lineEnd, arguments...);
}

} // namespace log_buffer_detail

/// One log statement: formats onto the end of the text if logging is active and there is room.
template <FormatLiteral Literal, class... Arguments>
requires FormatOf<LogFormat<Literal>, Arguments...>
void LogAppend(LogBuffer& text, LogFormat<Literal>, const Arguments&... arguments)
{
    log_buffer_detail::Statement<LogFormat<Literal>>(text, LogBuffer::LineEnd::No, arguments...);
}

/// The same with a line end that belongs to the statement.
template <FormatLiteral Literal, class... Arguments>
requires FormatOf<LogFormat<Literal>, Arguments...>
void LogAppendLine(LogBuffer& text, LogFormat<Literal>, const Arguments&... arguments)
{
    log_buffer_detail::Statement<LogFormat<Literal>>(text, LogBuffer::LineEnd::Yes, arguments...);
}

/// One log statement that puts texts behind each other.
void LogJoined(LogBuffer& text, std::string_view first, std::string_view second = {},
               std::string_view third = {});

/// A line end as a statement of its own.
inline void LogLineEnd(LogBuffer& text)
{
    if (LoggingActive() && text.HasRoom())
        text.Append("\n");
}

/// The stamp with which every line begins: time and calling thread.
void LogStamp(LogBuffer& text, const FrameTime& time);

void LogStampThenJoined(LogBuffer& text, const FrameTime& time, std::string_view first,
                        std::string_view second, std::string_view third);

/// The stamp, and behind it a statement that puts texts behind each other.
inline void LogStamped(LogBuffer& text, const FrameTime& time, std::string_view first,
                       std::string_view second, std::string_view third)
{
    if (!LoggingActive())
        return;
    const std::size_t length = FrameTime::StampPlace + first.size() + second.size() + third.size();
    char* const place = time.IsSet() ? text.Take(length) : nullptr;
    // Near the reserve the two are statements of their own.
    if (!place)
        return LogStampThenJoined(text, time, first, second, third);
    text.EndAt(PutText(PutText(PutText(time.PutStamp(place), first), second), third));
}

/// The stamp, and the indent of a decoded line.
void LogIndented(LogBuffer& text, const FrameTime& time, std::string_view indent);

} // namespace marvane
