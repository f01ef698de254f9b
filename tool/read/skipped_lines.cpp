#include "tool/read/skipped_lines.h"

#include <algorithm>

#include "line/marks.h"
#include "line/stamp.h"

namespace marvane::read {

namespace {

constexpr std::string_view Callback = "PDUCallbackTrap";
constexpr std::size_t ThreadBegin = 16, ThreadSize = 8; ///< in a stamp
/// Calls that have lost their exit lines must not gather.
constexpr std::size_t MostDepth = 64;

std::string_view NameAt(std::string_view text)
{
    return text.substr(0, text.find_first_of("(<{"));
}

} // namespace

void SkippedLines::OnLine(std::string_view line, std::size_t length)
{
    const bool mayMatter = line.size() > StampLength && line.front() == '{';
    const char first = mayMatter ? line[StampLength] : ' ';
    if ((first == '+' || first == '-' || first == '#') && ParseStamp(line)) {
        const std::string_view text = line.substr(StampLength);
        const std::string_view thread = line.substr(ThreadBegin, ThreadSize);
        if (text == marks::Initialise) {
            header_ = at_;
            open_.erase(std::string(thread));
        } else if (text.starts_with(marks::Entry))
            Enter(thread, NameAt(text.substr(marks::Entry.size())));
        else if (text.starts_with(marks::Exit))
            Leave(thread, NameAt(text.substr(marks::Exit.size())));
    }
    at_.Offset += length;
    ++at_.Line;
}

void SkippedLines::Enter(std::string_view thread, std::string_view name)
{
    auto found = open_.find(thread);
    if (found == open_.end())
        found = open_.emplace(thread, std::vector<OpenCall>()).first;
    std::vector<OpenCall>& calls = found->second;
    // Calls and callbacks take turns: what is not left by then has lost its exit line.
    if (!calls.empty() && (calls.back().Name == Callback) == (name == Callback))
        calls.pop_back();
    if (calls.size() == MostDepth)
        calls.erase(calls.begin());
    calls.push_back({std::string(name), at_});
}

void SkippedLines::Leave(std::string_view thread, std::string_view name)
{
    const auto found = open_.find(thread);
    if (found == open_.end())
        return;
    std::vector<OpenCall>& calls = found->second;
    const auto entered = std::find_if(calls.rbegin(), calls.rend(),
                                      [name](const OpenCall& call) { return call.Name == name; });
    if (entered != calls.rend())
        calls.erase(entered.base() - 1, calls.end());
}

std::optional<FilePlace> SkippedLines::FirstOpen() const
{
    std::optional<FilePlace> first;
    for (const auto& [thread, calls] : open_)
        if (!calls.empty() && (!first || calls.front().At.Offset < first->Offset))
            first = calls.front().At;
    return first;
}

} // namespace marvane::read
