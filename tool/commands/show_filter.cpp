#include "tool/commands/show_filter.h"

#include <algorithm>
#include <charconv>

#include "tool/console/nearest.h"

namespace marvane::tool {

namespace {

/// A number, decimal, or hexadecimal with 0x; threads are always hexadecimal, as logs print them.
std::optional<std::uint32_t> NumberOf(std::string_view text, int base = 10)
{
    if (text.starts_with("0x") || text.starts_with("0X")) {
        text.remove_prefix(2);
        base = 16;
    }
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

std::optional<std::uint32_t> NumberOption(const Arguments& arguments, std::string_view option, int base = 10)
{
    const std::optional<std::string> text = arguments.Value(option);
    if (!text)
        return std::nullopt;
    const std::optional<std::uint32_t> number = NumberOf(*text, base);
    if (!number)
        throw UsageError(std::string(option) + " takes a number, not '" + *text + "'");
    return number;
}

/// "120-180", "120-", "-180", "120".
void ReadRange(const std::string& text, std::uint64_t& first, std::uint64_t& last)
{
    const std::size_t hyphen = text.find('-');
    const std::string_view whole = text;
    const std::string_view from = whole.substr(0, hyphen);
    const std::string_view to = hyphen == std::string::npos ? from : whole.substr(hyphen + 1);
    const std::optional<std::uint32_t> begin = from.empty() ? 1 : NumberOf(from);
    const std::optional<std::uint32_t> end = to.empty() ? UINT32_MAX : NumberOf(to);
    if (!begin || !end || *begin > *end || (from.empty() && to.empty()))
        throw UsageError("--calls takes numbers of calls such as 120-180, 120- or 120, not '" + text + "'");
    first = *begin;
    last = to.empty() ? UINT64_MAX : *end;
}

/// Names of functions may be given without their "PDU".
bool IsName(std::string_view wanted, std::string_view name)
{
    return SameWord(wanted, name) || (name.starts_with("PDU") && SameWord(wanted, name.substr(3)));
}

/// Throws if a name is that of no function.
void CheckName(const std::string& wanted)
{
    constexpr auto count = static_cast<std::size_t>(read::Function::Unknown);
    std::vector<std::string_view> known;
    known.reserve(2 * count);
    for (std::size_t i = 0; i < count; ++i)
        known.push_back(read::FunctionName(static_cast<read::Function>(i)));
    for (const std::string_view name : known)
        if (IsName(wanted, name))
            return;
    for (const std::string_view name : std::vector(known))
        if (name.starts_with("PDU"))
            known.push_back(name.substr(3));
    throw UsageError("--call '" + wanted + "' is no function of the API" + DidYouMean(wanted, known));
}

} // namespace

ShowFilter::ShowFilter(const Arguments& arguments, TimeRange range)
    : range_(range), names_(arguments.Values("--call")), statuses_(arguments.Values("--status")),
      links_(arguments.Values("--link")), module_(NumberOption(arguments, "--module")),
      thread_(NumberOption(arguments, "--thread", 16)), errors_(arguments.Has("--errors")),
      inverted_(arguments.Has("--invert-match"))
{
    for (const std::string& text : arguments.Values("--grep"))
        texts_.emplace_back(text);
    for (const std::string& name : names_)
        CheckName(name);
    if (const std::optional<std::string> calls = arguments.Value("--calls"))
        ReadRange(*calls, firstCall_, lastCall_);
    if (inverted_ && texts_.empty())
        throw UsageError("-v inverts --grep, which is missing");
    isAboutCalls_ = !names_.empty() || !statuses_.empty() || !links_.empty() || module_ || errors_ ||
                    arguments.Has("--calls");
}

bool ShowFilter::Takes(const read::Call& call, bool isEvent, std::string_view link,
                       const LogLines& lines) const
{
    if (!range_.Touches(call) || (thread_ && call.Thread != *thread_))
        return false;
    if (isAboutCalls_) {
        if (isEvent ? firstCall_ > 0 : call.Seq < firstCall_ || call.Seq > lastCall_)
            return false;
        if ((module_ && call.Module != module_) || (errors_ && !call.HasFailed()))
            return false;
        if (!TakesName(call) || !TakesStatus(call) || !TakesLink(call, link))
            return false;
    }
    return TakesText(lines);
}

bool ShowFilter::TakesLoose(const LogLines& lines, std::uint32_t thread) const
{
    if (isAboutCalls_ || lines.IsEmpty() || (thread_ && thread != *thread_))
        return false;
    return range_.Holds(lines.Entries().front().Time) && TakesText(lines);
}

bool ShowFilter::TakesText(const LogLines& lines) const
{
    if (texts_.empty())
        return true;
    const bool found = std::ranges::any_of(texts_, [&](const TextSearch& text) { return lines.Holds(text); });
    return found != inverted_;
}

bool ShowFilter::TakesName(const read::Call& call) const
{
    return names_.empty() ||
           std::ranges::any_of(names_, [&](const std::string& name) { return IsName(name, call.Name); });
}

bool ShowFilter::TakesStatus(const read::Call& call) const
{
    if (statuses_.empty())
        return true;
    return call.Status && std::ranges::any_of(statuses_, [&](const std::string& wanted) {
               if (const std::optional<std::uint32_t> number = NumberOf(wanted))
                   return call.Status == number;
               const std::string_view name = call.StatusName;
               const std::size_t end = name.find('_', name.find('_') + 1);
               return SameWord(wanted, name) ||
                      (end != std::string_view::npos && SameWord(wanted, name.substr(end + 1)));
           });
}

bool ShowFilter::TakesLink(const read::Call& call, std::string_view link) const
{
    if (links_.empty())
        return true;
    return call.Link && std::ranges::any_of(links_, [&](const std::string& wanted) {
               if (const std::optional<std::uint32_t> number = NumberOf(wanted))
                   return call.Link == number;
               return link.find(wanted) != std::string_view::npos;
           });
}

} // namespace marvane::tool
