#include "tool/read/frame.h"

#include "tool/read/call_text.h"
#include "tool/read/known_lines.h"

namespace marvane::read {

namespace {

/// Each half of a call has at most 15,000 characters; some more is granted to other writers.
constexpr std::size_t LongestText = 128 * 1024;
constexpr std::size_t KeptMemory = 32 * 1024;
constexpr std::size_t KeptLines = 1024;

/// Reads "NAME=HANDLE" at the beginning of `rest`, takes it away and returns it as a value.
bool TakeHandle(std::string_view& rest, std::string_view name, std::optional<std::uint32_t>& handle)
{
    constexpr std::string_view undefined = "<PDU_HANDLE_UNDEF>";
    constexpr std::size_t length = 10; // "0x00000001"
    if (!rest.starts_with(name))
        return false;
    rest.remove_prefix(name.size());
    const bool isUndefined = rest.starts_with(undefined);
    handle = isUndefined ? std::nullopt : NumberInValue(rest.substr(0, length));
    rest.remove_prefix(isUndefined ? undefined.size() : std::min(length, rest.size()));
    if (rest.starts_with(", "))
        rest.remove_prefix(2);
    return true;
}

/// Reads "NAME=VALUE" at the beginning of `rest` and takes it away; no value has a comma.
std::string_view TakeValue(std::string_view& rest, std::string_view name)
{
    if (!rest.starts_with(name))
        return {};
    const std::size_t end = std::min(rest.find(','), rest.size());
    std::string_view value = rest.substr(name.size(), end - name.size());
    rest.remove_prefix(std::min(end + 2, rest.size()));
    value.remove_prefix(std::min(value.find_first_not_of(' '), value.size()));
    return value;
}

} // namespace

void Frame::Reset()
{
    Record = Event();
    IsEvent = IsOrphan = IsInResults = IsDoubtful = false;
    text_.clear();
    lines_.clear();
    if (text_.capacity() > KeptMemory)
        text_ = std::string();
    if (lines_.capacity() > KeptLines)
        lines_ = std::vector<StoredLine>();
    entryLength_ = countIn_ = 0;
    read_ = {};
}

void Frame::SetEntry(std::string_view text)
{
    text_ = text.substr(0, LongestText);
    entryLength_ = text_.size();
    read_ = {};
    const std::string_view name = std::string_view(text_).substr(0, text_.find_first_of("({"));
    Record.Which = FunctionOf(name);
    IsEvent = Record.Which == Function::CallbackTrap;
    ReadEntry();
    std::string_view handles = Record.Arguments;
    if (IsEvent)
        Record.Type = NumberInValue(TakeValue(handles, "Type=")).value_or(0);
    if (TakeHandle(handles, "hMod=", Record.Module) && TakeHandle(handles, "hCLL=", Record.Link))
        TakeHandle(handles, "hCoP=", Record.Primitive);
}

bool Frame::HasName(std::string_view name) const
{
    const std::string_view entry = std::string_view(text_).substr(0, entryLength_);
    return entry.starts_with(name) &&
           (entry.size() == name.size() || entry[name.size()] == '(' || entry[name.size()] == '{');
}

void Frame::ContinueEntry(std::string_view text)
{
    if (text_.size() + text.size() < LongestText) {
        text_ += '\n';
        text_ += text;
    }
    entryLength_ = text_.size();
}

bool Frame::HasWholeEntry() const
{
    return IsWholeEntry(Record.Which, std::string_view(text_).substr(0, entryLength_));
}

void Frame::ReadEntry()
{
    const std::string_view entry = std::string_view(text_).substr(0, entryLength_);
    if (read_.data() == entry.data() && read_.size() == entry.size())
        return;
    read_ = entry;
    const std::size_t open = entry.find_first_of("({");
    Record.Name = entry.substr(0, open);
    Record.HasArguments = open != std::string_view::npos && entry[open] == '(';
    Record.Arguments = Record.HasArguments ? entry.substr(open + 1) : std::string_view();
    if (Record.Arguments.ends_with(')'))
        Record.Arguments.remove_suffix(1);
    if (!IsEvent)
        return;
    std::string_view rest = Record.Arguments;
    for (const std::string_view name : {"Type=", "hMod=", "hCLL="})
        TakeValue(rest, name);
    Record.LinkTag = TakeValue(rest, "pCLLTag=");
    Record.ApiTag = TakeValue(rest, "pAPITag=");
    Record.Handler = TakeValue(rest, "Handler = ");
}

const Event& Frame::Entry()
{
    ReadEntry();
    return Record;
}

bool Frame::HasRoom(std::size_t length) const
{
    return text_.size() + length < LongestText;
}

bool Frame::AddLine(std::uint64_t number, std::string_view text)
{
    if (!HasRoom(text.size()))
        return false;
    lines_.push_back(
        {number, static_cast<std::uint32_t>(text_.size()), static_cast<std::uint32_t>(text.size())});
    countIn_ += IsInResults ? 0 : 1;
    text_ += text;
    return true;
}

bool Frame::ContinueLine(std::string_view text)
{
    if (lines_.empty() || !HasRoom(text.size() + 1))
        return false;
    text_ += '\n';
    text_ += text;
    lines_.back().Length += static_cast<std::uint32_t>(text.size() + 1);
    return true;
}

std::string_view Frame::LastLine() const
{
    if (lines_.empty())
        return {};
    return std::string_view(text_).substr(lines_.back().Begin, lines_.back().Length);
}

const Event& Frame::Finished(std::vector<CallLine>& storage)
{
    ReadEntry();
    storage.clear();
    for (const StoredLine& line : lines_)
        storage.push_back({line.Number, std::string_view(text_).substr(line.Begin, line.Length)});
    Record.LinesIn = std::span(storage).first(countIn_);
    Record.LinesOut = std::span(storage).subspan(countIn_);
    if (Record.Which == Function::StartComPrimitive && Record.Status == 0u)
        if (const auto handle = ValueOf(Record.LinesOut, "hCoP"))
            Record.Primitive = NumberInValue(*handle);
    return Record;
}

} // namespace marvane::read
