#include "logger/log/log_buffer.h"

namespace marvane {

void LogBuffer::Append(const FormattedText& text)
{
    EndStatement(FormatText(text_ + length_, text_ + Capacity, text));
}

void LogBuffer::AddMark()
{
    length_ = static_cast<std::size_t>(PutText(text_ + length_, marks::BufferFull) - text_);
}

} // namespace marvane
