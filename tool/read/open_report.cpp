#include "tool/read/open_report.h"

#include "tool/read/call_text.h"

namespace marvane::read {

namespace {

/// A report has at most 15,000 characters; some more is granted to other writers.
constexpr std::size_t LongestText = 128 * 1024;

} // namespace

void OpenReport::Begin(const Comms& record, const ReportTitle& title)
{
    record_ = record;
    record_.Way = title.Way;
    title_ = title.Protocol;
    title_ += title.Title;
    protocolLength_ = title.Protocol.size();
    text_.clear();
    stored_.clear();
    isOpen_ = true;
}

void OpenReport::ContinueTitle(std::string_view text)
{
    if (title_.size() + text.size() < LongestText)
        (title_ += '\n') += text;
}

bool OpenReport::Accepts(std::uint32_t thread, LogTime time, std::string_view line) const
{
    return isOpen_ && thread == record_.Thread && time == record_.Time &&
           line.starts_with(Arrow(record_.Way).Text());
}

void OpenReport::AddLine(std::uint64_t number, std::string_view line)
{
    if (text_.size() + line.size() >= LongestText)
        return;
    stored_.push_back({number, text_.size(), line.size()});
    text_ += line;
}

void OpenReport::ContinueLine(std::string_view text)
{
    if (stored_.empty() || text_.size() + text.size() >= LongestText)
        return;
    (text_ += '\n') += text;
    stored_.back().Length += text.size() + 1;
}

std::string_view OpenReport::LastLine() const
{
    return stored_.empty() ? std::string_view() : std::string_view(text_).substr(stored_.back().Begin);
}

const Comms& OpenReport::Finish(bool isCut)
{
    isOpen_ = false;
    record_.IsCut = isCut;
    record_.Protocol = std::string_view(title_).substr(0, protocolLength_);
    record_.Title = std::string_view(title_).substr(protocolLength_);
    lines_.clear();
    for (const StoredLine& line : stored_)
        lines_.push_back({line.Number, std::string_view(text_).substr(line.Begin, line.Length)});
    record_.Lines = lines_;
    ReadValues();
    return record_;
}

void OpenReport::ReadValues()
{
    const auto address = ValueOf(lines_, "Address");
    record_.Address = address ? NumberInValue(*address) : std::nullopt;
    record_.Data = Payload();
    bytes_.clear();
    for (const CallLine& line : lines_) {
        const DecodedText decoded = line.Decode();
        const std::size_t size = decoded.Label.rfind(": Size");
        if (!decoded.Dump && size == std::string_view::npos)
            continue;
        const std::string_view label = decoded.Dump ? decoded.Label : decoded.Label.substr(0, size);
        record_.Data = DumpOf(lines_, label, bytes_, {}, record_.IsCut && decoded.Dump);
        return;
    }
}

} // namespace marvane::read
