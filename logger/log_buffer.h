// The text of one phase of a call, and the statements that add to it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <type_traits>

#include "logger/log_format.h"
#include "logger/settings.h"
#include "logger/text_copy.h"
#include "platform/platform.h"

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
    std::string_view Stamp() const { return {stamp_, StampLength}; }

private:
    static constexpr std::size_t StampLength = 26;

    char stamp_[StampLength] = {};
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
    static constexpr std::string_view Marker = "\t\t\t\t...\n";

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

static_assert(LogBuffer::Capacity + LogBuffer::Marker.size() < LogBuffer::Size);

/// A short text by value, for the argument list of a statement.
class ShortText
{
public:
    operator std::string_view() const { return {text_, length_}; }

    static constexpr std::size_t Most = 24;
    /// Copies the whole place of the text, whatever its length. Returns the end of the text.
    char* PutTo(char* out) const
    {
        std::memcpy(out, text_, Most);
        return out + length_;
    }

private:
    explicit ShortText(std::string_view text) : length_(text.size())
    {
        CopyText(text_, text.data(), length_);
    }

    friend ShortText HandleText(UNUM32 handle);
    friend ShortText UridText(UNUM32 identifier);
    char text_[Most] = {};
    std::size_t length_;
};

/// "<PDU_HANDLE_UNDEF>", or eight hexadecimal digits behind "0x".
inline ShortText HandleText(UNUM32 handle)
{
    if (handle == PDU_HANDLE_UNDEF)
        return ShortText("<PDU_HANDLE_UNDEF>");
    ShortText result("0x");
    PutHex(result.text_ + result.length_, handle, UpperCase);
    result.length_ += 8;
    return result;
}

/// "<PDU_ID_UNDEF>", or the response identifier in decimal.
ShortText UridText(UNUM32 identifier);

namespace log_buffer_detail {

// Arguments whose text has a known limit. They are put where the statement stands, without a list of them.
constexpr std::size_t MostDigits = 10;
inline std::size_t Limit(std::uint32_t)
{
    return MostDigits;
}
inline std::size_t Limit(std::string_view text)
{
    return text.size();
}
inline std::size_t Limit(const ShortText&)
{
    return ShortText::Most;
}

inline char* PutPlain(char* out, std::uint32_t number)
{
    return PutDecimal(out, number);
}
inline char* PutPlain(char* out, std::string_view text)
{
    return PutText(out, text);
}
inline char* PutPlain(char* out, const ShortText& text)
{
    return text.PutTo(out);
}

template <class T>
inline constexpr bool HasLimit =
    std::is_same_v<T, std::uint32_t> || std::is_same_v<T, std::string_view> || std::is_same_v<T, ShortText>;

template <class... Arguments>
bool PutPlainStatement(LogBuffer& text, LogBuffer::LineEnd lineEnd, const LogFormat<Arguments...>& format,
                       const Arguments&... arguments)
{
    char* out = text.Take((format.Text().size() + ... + Limit(arguments)) + 1);
    if (!out)
        return false;
    const FormatPiece* piece = format.Pieces();
    const char* literal = format.Text().data();
    const auto put = [&](const auto& argument) {
        out = PutPlain(out, std::string_view(literal, piece->Literal));
        literal += piece->Literal + piece->Length;
        ++piece;
        out = PutPlain(out, argument);
    };
    (put(arguments), ...);
    out = PutPlain(out, std::string_view(literal, static_cast<std::size_t>(format.Text().end() - literal)));
    if (lineEnd == LogBuffer::LineEnd::Yes)
        *out++ = '\n';
    text.EndAt(out);
    return true;
}

template <class... Arguments>
void Statement(LogBuffer& text, LogBuffer::LineEnd lineEnd, const LogFormat<Arguments...>& format,
               const Arguments&... arguments)
{
    if (!LoggingActive() || !text.HasRoom())
        return;
    if constexpr (sizeof...(Arguments) == 0)
        return text.Append(format.Text(), lineEnd);
    else {
        if constexpr ((HasLimit<Arguments> && ...))
            if (format.IsPlain() && PutPlainStatement(text, lineEnd, format, arguments...))
                return;
        const FormatArgument list[] = {FormatArgument(arguments)...};
        text.Append({format.Text(), format.Pieces(), list, sizeof...(Arguments)}, lineEnd);
    }
}

} // namespace log_buffer_detail

/// One log statement: formats onto the end of the text if logging is active and there is room.
template <class... Arguments>
void LogAppend(LogBuffer& text, const std::type_identity_t<LogFormat<Arguments...>>& format,
               const Arguments&... arguments)
{
    log_buffer_detail::Statement<Arguments...>(text, LogBuffer::LineEnd::No, format, arguments...);
}

/// The same with a line end that belongs to the statement.
template <class... Arguments>
void LogAppendLine(LogBuffer& text, const std::type_identity_t<LogFormat<Arguments...>>& format,
                   const Arguments&... arguments)
{
    log_buffer_detail::Statement<Arguments...>(text, LogBuffer::LineEnd::Yes, format, arguments...);
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
    const std::string_view stamp = time.Stamp();
    const std::size_t length = stamp.size() + first.size() + second.size() + third.size();
    char* const place = time.IsSet() ? text.Take(length) : nullptr;
    // Near the reserve the two are statements of their own.
    if (!place)
        return LogStampThenJoined(text, time, first, second, third);
    PutText(PutText(PutText(PutText(place, stamp), first), second), third);
}

/// The stamp, and the indent of a decoded line.
void LogIndented(LogBuffer& text, const FrameTime& time, std::string_view indent);

} // namespace marvane
