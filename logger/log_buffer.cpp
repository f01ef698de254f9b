#include "logger/log_buffer.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace marvane {

void LogBuffer::Append(std::string_view text, LineEnd lineEnd)
{
    const std::size_t length = std::min(text.size(), Capacity - length_);
    CopyText(text_ + length_, text.data(), length);
    Finish(text_ + length_ + length, lineEnd);
}

void LogBuffer::Append(const FormattedText& text, LineEnd lineEnd)
{
    Finish(FormatText(text_ + length_, text_ + Capacity, text), lineEnd);
}

void LogBuffer::Finish(char* end, LineEnd lineEnd)
{
    if (lineEnd == LineEnd::Yes && end != text_ + Capacity)
        *end++ = '\n';
    length_ = static_cast<std::size_t>(end - text_);
    if (!HasRoom()) {
        std::memcpy(end, Marker.data(), Marker.size());
        length_ += Marker.size();
    }
}

void LogStamp(LogBuffer& text, const FrameTime& time)
{
    LogAppend(text, "{%02u:%02u:%02u.%03u - %08X} ", time.Hour, time.Minute, time.Second, time.Milliseconds,
              platform::CurrentThreadId());
}

ShortText HandleText(UNUM32 handle)
{
    if (handle == PDU_HANDLE_UNDEF)
        return ShortText("<PDU_HANDLE_UNDEF>");
    ShortText result("0x");
    PutHex(result.text_ + result.length_, handle, UpperCase);
    result.length_ += 8;
    return result;
}

ShortText UridText(UNUM32 identifier)
{
    if (identifier == PDU_ID_UNDEF)
        return ShortText("<PDU_ID_UNDEF>");
    ShortText result("");
    const FormatArgument number[] = {identifier};
    char* const end = FormatText(result.text_, std::end(result.text_), "%u", number);
    result.length_ = static_cast<std::size_t>(end - result.text_);
    return result;
}

} // namespace marvane
