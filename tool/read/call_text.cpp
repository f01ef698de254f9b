#include "tool/read/call_text.h"

#include <algorithm>
#include <charconv>

namespace marvane::read {

namespace {

constexpr std::string_view HandleUndefined = "<PDU_HANDLE_UNDEF>";
constexpr std::string_view IdUndefined = "<PDU_ID_UNDEF>";

bool IsBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

std::string_view Trimmed(std::string_view text)
{
    while (!text.empty() && IsBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && IsBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

bool IsNameCharacter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

/// The name in front of a '=' at `equals`, or an empty text.
std::string_view NameBefore(std::string_view arguments, std::size_t equals)
{
    std::size_t end = equals;
    while (end > 0 && arguments[end - 1] == ' ')
        --end;
    std::size_t begin = end;
    while (begin > 0 && IsNameCharacter(arguments[begin - 1]))
        --begin;
    const bool isFirst = begin == 0;
    const bool followsComma = begin >= 2 && IsBlank(arguments[begin - 1]);
    return isFirst || followsComma ? arguments.substr(begin, end - begin) : std::string_view();
}

/// The string argument of a call, quotes included: no call has two.
struct Quoted
{
    std::size_t Begin;
    std::size_t End; ///< past the closing quote, or of the text if that is missing
};

Quoted QuotedPart(std::string_view arguments)
{
    const std::size_t begin = std::min(arguments.find('"'), arguments.size());
    const std::size_t last = arguments.rfind('"');
    if (last == begin) // The text was cut before the closing one.
        return {begin, arguments.size()};
    return {begin, last == std::string_view::npos ? begin : last + 1};
}

std::size_t NextEquals(std::string_view arguments, std::size_t from, const Quoted& quoted)
{
    const std::size_t found = arguments.find('=', from);
    if (found == std::string_view::npos || found < quoted.Begin || found >= quoted.End)
        return found;
    return arguments.find('=', quoted.End);
}

/// End of the value that begins at `begin`: in front of the comma before the next name.
std::size_t ValueEnd(std::string_view arguments, std::size_t begin, const Quoted& quoted)
{
    for (std::size_t equals = NextEquals(arguments, begin, quoted); equals != std::string_view::npos;
         equals = NextEquals(arguments, equals + 1, quoted)) {
        const std::string_view name = NameBefore(arguments, equals);
        if (name.empty())
            continue;
        const std::size_t comma =
            arguments.rfind(',', static_cast<std::size_t>(name.data() - arguments.data()));
        if (comma != std::string_view::npos && comma >= begin)
            return comma;
    }
    return arguments.size();
}

std::string_view WithoutQuotes(std::string_view value)
{
    if (!value.starts_with('"'))
        return value;
    value.remove_prefix(1);
    return value.ends_with('"') ? value.substr(0, value.size() - 1) : value;
}

template <class Number> std::optional<Number> Parsed(std::string_view digits, int base)
{
    Number number{};
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number, base);
    if (error != std::errc() || end != digits.data() + digits.size() || digits.empty())
        return std::nullopt;
    return number;
}

std::optional<std::uint32_t> PlainNumber(std::string_view text)
{
    if (text.starts_with("0x") || text.starts_with("0X"))
        return Parsed<std::uint32_t>(text.substr(2), 16);
    if (!text.starts_with('-'))
        return Parsed<std::uint32_t>(text, 10);
    const auto number = Parsed<std::int32_t>(text, 10);
    return number ? std::optional(static_cast<std::uint32_t>(*number)) : std::nullopt;
}

std::string_view CutToDumpLabel(std::string_view label)
{
    return Trimmed(label.substr(0, dump_columns::LabelEnd - dump_columns::Label));
}

} // namespace

std::optional<std::string_view> Argument(std::string_view arguments, std::string_view name)
{
    const Quoted quoted = QuotedPart(arguments);
    for (std::size_t equals = NextEquals(arguments, 0, quoted); equals != std::string_view::npos;
         equals = NextEquals(arguments, equals + 1, quoted)) {
        if (NameBefore(arguments, equals) != name)
            continue;
        const std::size_t end = ValueEnd(arguments, equals + 1, quoted);
        return WithoutQuotes(Trimmed(arguments.substr(equals + 1, end - equals - 1)));
    }
    return std::nullopt;
}

std::optional<std::uint32_t> NumberInValue(std::string_view value)
{
    value = Trimmed(value);
    if (value == HandleUndefined)
        return UndefinedHandle;
    if (value == IdUndefined)
        return UndefinedId;
    if (!value.ends_with(')'))
        return PlainNumber(value);
    const std::size_t open = value.rfind('(');
    if (open == std::string_view::npos)
        return std::nullopt;
    return PlainNumber(value.substr(open + 1, value.size() - open - 2));
}

std::string_view NameInValue(std::string_view value)
{
    value = Trimmed(value);
    const std::size_t open = value.rfind('(');
    return open == std::string_view::npos ? value : Trimmed(value.substr(0, open));
}

std::string_view CommandName(std::string_view arguments)
{
    const auto command = Argument(arguments, "IoCtlCommandId");
    const std::size_t open = command ? command->find('(') : std::string_view::npos;
    if (open == std::string_view::npos)
        return {};
    std::string_view name = command->substr(open + 1, command->find(')', open) - open - 1);
    constexpr std::string_view prefix = "PDU_IOCTL_";
    if (name.starts_with(prefix))
        name.remove_prefix(prefix.size());
    return name;
}

std::optional<std::uint32_t> HandleArgument(std::string_view arguments, std::string_view name)
{
    const auto value = Argument(arguments, name);
    const auto number = value ? NumberInValue(*value) : std::nullopt;
    return number == UndefinedHandle ? std::nullopt : number;
}

DecodedText CallLine::Decode() const
{
    DecodedText decoded;
    const std::optional<Arrow> arrow = ParseArrow(Text);
    decoded.Way = arrow ? arrow->ShownDirection() : Direction::FromTarget;
    decoded.Depth = arrow ? static_cast<std::uint8_t>(arrow->ShownDepth()) : std::uint8_t{4};
    decoded.Text = arrow ? Text.substr(ArrowLength) : Text;
    decoded.Dump = ParseDumpRow(decoded.Text);
    if (decoded.Dump) {
        decoded.Label = decoded.Dump->Label;
        return decoded;
    }
    const std::size_t equals = decoded.Text.find('=');
    decoded.Label = Trimmed(decoded.Text.substr(0, equals));
    if (equals != std::string_view::npos)
        decoded.Value = Trimmed(decoded.Text.substr(equals + 1));
    return decoded;
}

std::optional<std::string_view> ValueOf(std::span<const CallLine> lines, std::string_view label)
{
    for (const CallLine& line : lines) {
        const std::optional<Arrow> arrow = ParseArrow(line.Text);
        const std::string_view text = arrow ? line.Text.substr(ArrowLength) : line.Text;
        if (!text.starts_with(label))
            continue;
        const std::size_t equals = text.find('=', label.size());
        if (equals != std::string_view::npos && Trimmed(text.substr(0, equals)) == label)
            return Trimmed(text.substr(equals + 1));
    }
    return std::nullopt;
}

Payload DumpOf(std::span<const CallLine> lines, std::string_view label, std::vector<std::uint8_t>& storage,
               std::optional<std::uint64_t> expected, bool isCut)
{
    Payload payload;
    const std::size_t begin = storage.size();
    const std::string_view shown = CutToDumpLabel(label);
    for (const CallLine& line : lines) {
        const std::string_view text = line.Text.size() > ArrowLength ? line.Text.substr(ArrowLength) : "";
        const std::string_view trimmed = Trimmed(text);
        if (!trimmed.starts_with(shown))
            continue;
        const auto row = ParseDumpRow(text);
        if (!row) {
            const std::string_view rest = trimmed.substr(std::min(label.size(), trimmed.size()));
            payload.IsPresent |= trimmed.starts_with(label) && rest.starts_with(": ");
            continue;
        }
        if (row->Label != shown)
            continue;
        const std::size_t known = storage.size() - begin;
        if (row->Offset == 0 && known > 0)
            break; // the next buffer of that label
        payload.IsPresent = true;
        payload.IsCut |= row->IsCut;
        if (row->Offset != known) {
            payload.IsCut = true; // a line is missing: what follows would be in the wrong place
            break;
        }
        storage.insert(storage.end(), row->Bytes.begin(),
                       row->Bytes.begin() + static_cast<std::ptrdiff_t>(row->Count));
    }
    payload.Shown = Bytes(storage).subspan(begin);
    payload.Size = std::max<std::uint64_t>(expected.value_or(0), payload.Shown.size());
    payload.IsCut |= payload.Shown.size() < payload.Size || (isCut && !expected);
    return payload;
}

Payload RequestOf(const Call& start, std::vector<std::uint8_t>& storage)
{
    const auto argument = Argument(start.Arguments, "CoPDataSize");
    const auto size = argument ? NumberInValue(*argument) : std::nullopt;
    Payload request = DumpOf(start.LinesIn, "pCoPData", storage, size, start.IsCutIn);
    request.IsPresent |= size.has_value();
    return request;
}

} // namespace marvane::read
