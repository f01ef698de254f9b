#include "tool/export/redaction_marks.h"

#include <algorithm>

namespace marvane::tool {

void RedactionMarks::BeginFile(std::uint32_t file)
{
    lines_[file].clear();
}

void RedactionMarks::AddPayload(read::Bytes bytes)
{
    const std::uint64_t hash = KeyedHash(key_, bytes);
    if (payloads_.insert(hash).second)
        payloadOrder_.push_back(hash);
    if (payloadOrder_.size() > MostPayloads) {
        payloads_.erase(payloadOrder_.front());
        payloadOrder_.pop_front();
    }
}

void RedactionMarks::AddLine(std::uint32_t file, std::uint64_t line)
{
    std::deque<std::uint64_t>& lines = lines_[file];
    ++lineCount_;
    lines.push_back(line);
    if (lines.size() > MostLines)
        lines.pop_front();
}

bool RedactionMarks::IsChanged(std::uint32_t file, std::uint64_t line) const
{
    const auto lines = lines_.find(file);
    return lines != lines_.end() && std::ranges::binary_search(lines->second, line);
}

bool RedactionMarks::IsChanged(const read::Call& call) const
{
    const auto isChanged = [&](std::uint32_t file) {
        return [this, file](const read::CallLine& line) { return IsChanged(file, line.Number); };
    };
    // Arguments may go on in a second line.
    return IsChanged(call.Begin.File, call.Begin.Line) || IsChanged(call.Begin.File, call.Begin.Line + 1) ||
           std::ranges::any_of(call.LinesIn, isChanged(call.Begin.File)) ||
           std::ranges::any_of(call.LinesOut, isChanged(call.End.File));
}

bool RedactionMarks::IsChanged(const read::Comms& report) const
{
    return IsChanged(report.At.File, report.At.Line) ||
           std::ranges::any_of(report.Lines, [&](const read::CallLine& line) {
               return IsChanged(report.At.File, line.Number);
           });
}

bool RedactionMarks::IsChanged(std::uint32_t file, std::uint64_t first, std::uint64_t last) const
{
    const auto lines = lines_.find(file);
    if (lines == lines_.end())
        return false;
    const auto found = std::ranges::lower_bound(lines->second, first);
    return found != lines->second.end() && *found <= last;
}

bool RedactionMarks::IsChanged(const read::Exchange& exchange) const
{
    return IsChanged(exchange.Request) ||
           std::ranges::any_of(exchange.Answers,
                               [&](const read::Answer& answer) { return IsChanged(answer.Data); });
}

bool RedactionMarks::IsChanged(read::Bytes payload) const
{
    return !payload.empty() && payloads_.contains(KeyedHash(key_, payload));
}

} // namespace marvane::tool
