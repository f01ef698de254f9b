#include "tool/export/capture_output.h"

#include <algorithm>

#include "tool/console/row_text.h"

namespace marvane::tool::pcapng {

void CaptureOutput::BeginFile(std::string_view name)
{
    files_.push_back(Printable(name));
}

std::string CaptureOutput::LineText(const read::Position& at) const
{
    std::string text = "line " + std::to_string(at.Line);
    return at.File == 0 || at.File >= files_.size() ? text : text + " of " + files_[at.File];
}

std::int64_t CaptureOutput::MicrosecondsOf(read::LogTime time)
{
    return (time.Ms - static_cast<std::int64_t>(zone_.OffsetAt(time)) * 60'000) * 1000;
}

void CaptureOutput::Put(QueuedPacket packet, read::LogTime time)
{
    latest_ = std::max(latest_, MicrosecondsOf(time));
    if (inputs_.Range.Holds(time))
        queue_.Add(std::move(packet));
    queue_.Advance(latest_);
}

void CaptureOutput::PutText(Level level, std::string_view text, const read::Link& link, read::LogTime time,
                            const read::Position& at)
{
    QueuedPacket packet;
    SetText(packet, level, text);
    packet.Interface = interfaces_.Of(link);
    packet.Us = MicrosecondsOf(time);
    packet.Comment = LineText(at);
    MarkRedacted(packet, at.File, at.Line, at.Line);
    Put(std::move(packet), time);
}

} // namespace marvane::tool::pcapng
