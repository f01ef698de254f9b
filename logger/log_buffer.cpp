#include "logger/log_buffer.h"

#include <algorithm>
#include <cstring>

namespace marvane {

void LogBuffer::Append(std::string_view text, LineEnd lineEnd)
{
    const std::size_t length = std::min(text.size(), Capacity - length_);
    std::memcpy(text_ + length_, text.data(), length);
    Finish(text_ + length_ + length, lineEnd);
}

void LogBuffer::Append(std::string_view format, const FormatArgument* arguments, LineEnd lineEnd)
{
    Finish(FormatText(text_ + length_, text_ + Capacity, format, arguments), lineEnd);
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
    ShortText result;
    const FormatArgument number[] = {handle};
    char* const end = handle == PDU_HANDLE_UNDEF
                          ? FormatText(result.text_, std::end(result.text_), "<PDU_HANDLE_UNDEF>", nullptr)
                          : FormatText(result.text_, std::end(result.text_), "0x%08X", number);
    result.length_ = static_cast<std::size_t>(end - result.text_);
    return result;
}

ShortText UridText(UNUM32 identifier)
{
    ShortText result;
    const FormatArgument number[] = {identifier};
    char* const end = identifier == PDU_ID_UNDEF
                          ? FormatText(result.text_, std::end(result.text_), "<PDU_ID_UNDEF>", nullptr)
                          : FormatText(result.text_, std::end(result.text_), "%u", number);
    result.length_ = static_cast<std::size_t>(end - result.text_);
    return result;
}

} // namespace marvane
