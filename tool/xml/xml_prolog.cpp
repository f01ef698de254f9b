// What comes before the root element, and the references inside texts.
#include <algorithm>
#include <array>
#include <charconv>

#include "tool/xml/xml_scanner.h"

namespace marvane::tool {

namespace {

struct PredefinedEntity
{
    std::string_view Name;
    char Character;
};

constexpr std::array<PredefinedEntity, 5> PredefinedEntities = {
    {{"lt", '<'}, {"gt", '>'}, {"amp", '&'}, {"quot", '"'}, {"apos", '\''}}};

/// The character of "#65" or "#x41"; none if that is no character of XML.
std::optional<char32_t> NumberedCharacter(std::string_view reference)
{
    const bool isHex = reference.starts_with("#x");
    const std::string_view digits = reference.substr(isHex ? 2 : 1);
    std::uint32_t value = 0;
    const auto [end, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), value, isHex ? 16 : 10);
    const bool isControl = value < 0x20 && value != '\t' && value != '\n' && value != '\r';
    if (error != std::errc() || end != digits.data() + digits.size() || isControl || value > 0x10FFFF ||
        (value >= 0xD800 && value < 0xE000) || value == 0xFFFE || value == 0xFFFF)
        return std::nullopt;
    return value;
}

std::optional<char32_t> Referenced(std::string_view reference)
{
    if (reference.starts_with('#'))
        return NumberedCharacter(reference);
    const auto found = std::find_if(PredefinedEntities.begin(), PredefinedEntities.end(),
                                    [&](const PredefinedEntity& entity) { return entity.Name == reference; });
    if (found == PredefinedEntities.end())
        return std::nullopt;
    return found->Character;
}

/// A copy with its references replaced; line ends and, of an attribute, all blanks as a parser reports them.
std::optional<std::string> Decode(std::string_view raw, bool isAttribute)
{
    std::string text;
    for (std::size_t at = 0; at < raw.size(); ++at) {
        if (raw[at] == '&') {
            const std::size_t end = raw.find(';', at);
            if (end == std::string_view::npos)
                return std::nullopt;
            const std::optional<char32_t> character = Referenced(raw.substr(at + 1, end - at - 1));
            if (!character)
                return std::nullopt;
            AppendUtf8(text, *character);
            at = end;
        } else if (raw[at] == '\r') {
            if (at + 1 == raw.size() || raw[at + 1] != '\n')
                text += isAttribute ? ' ' : '\n';
        } else
            text += isAttribute && (raw[at] == '\n' || raw[at] == '\t') ? ' ' : raw[at];
    }
    return text;
}

} // namespace

void XmlScanner::CheckReference(std::string_view name) const
{
    if (Referenced(name))
        return;
    if (name.starts_with('#'))
        Fail("\"&" + std::string(name) + ";\" is no character");
    XmlScanner inside(name);
    if (name.empty() || inside.TakeName() != name)
        Fail("\"&\" begins no reference");
    // A document type may declare entities; without one there are none.
    if (!sawDoctype_)
        Fail("the entity \"&" + std::string(name) + ";\" is unknown");
}

void XmlScanner::TakeDeclaration()
{
    if (!At("<?xml"))
        return;
    at_ += 5;
    if (!At(" ") && !At("\t") && !At("\r") && !At("\n")) {
        at_ -= 5; // An instruction whose name only begins so.
        return;
    }
    if (!TakePseudoAttribute("version"))
        Fail("the XML declaration has no version");
    TakePseudoAttribute("encoding");
    const std::string_view standalone = TakePseudoAttribute("standalone").value_or("no");
    if (standalone != "yes" && standalone != "no")
        Fail("standalone is neither yes nor no");
    SkipBlanks();
    Expect("?>");
}

std::optional<std::string_view> XmlScanner::TakePseudoAttribute(std::string_view name)
{
    const std::size_t before = at_;
    if (!SkipBlanks() || !At(name)) {
        at_ = before;
        return std::nullopt;
    }
    at_ += name.size();
    const std::string_view quote = TakeOpeningQuote();
    const std::string_view value = TakeUntil(quote, "the XML declaration");
    const auto isAllowed = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '.' ||
               c == '_' || c == '-' || c == ':';
    };
    if (!std::all_of(value.begin(), value.end(), isAllowed))
        Fail("the XML declaration holds no valid " + std::string(name));
    return value;
}

void XmlScanner::SkipInstruction()
{
    at_ += 2;
    const std::string_view name = TakeName();
    if (name.size() == 3 && (name[0] | 0x20) == 'x' && (name[1] | 0x20) == 'm' && (name[2] | 0x20) == 'l')
        Fail("an XML declaration that is not at the beginning");
    if (!At("?>") && !SkipBlanks())
        Fail("a processing instruction without a blank after its name");
    TakeUntil("?>", "a processing instruction");
}

void XmlScanner::SkipDoctype()
{
    if (!At("<!DOCTYPE") || sawRoot_ || sawDoctype_)
        Fail("\"<!\" where no declaration may be");
    const std::size_t begin = at_;
    at_ += 9;
    sawDoctype_ = true;
    if (!SkipBlanks())
        Fail("a DOCTYPE without a name");
    TakeName();
    while (!At(">")) {
        if (at_ == text_.size())
            Fail("the DOCTYPE has no end");
        const char character = text_[at_++];
        if (character == '"' || character == '\'')
            TakeUntil(std::string_view(&character, 1), "a text in the DOCTYPE");
        else if (character == '[')
            SkipInternalSubset();
        else if (character == '<')
            Fail("\"<\" in the DOCTYPE");
    }
    CheckCharacters(text_.substr(begin, at_ - begin));
    ++at_;
}

void XmlScanner::SkipInternalSubset()
{
    while (!At("]")) {
        if (at_ == text_.size())
            Fail("the DOCTYPE has no end");
        if (At("<!--")) {
            TakeComment();
        } else if (At("<?")) {
            SkipInstruction();
        } else {
            const char character = text_[at_++];
            if (character == '"' || character == '\'')
                TakeUntil(std::string_view(&character, 1), "a text in the DOCTYPE");
        }
    }
    ++at_;
}

std::optional<std::string> DecodeXmlAttribute(std::string_view raw)
{
    return Decode(raw, true);
}

std::optional<std::string> DecodeXmlText(std::string_view raw)
{
    return Decode(raw, false);
}

std::string DecodeXmlCData(std::string_view raw)
{
    std::string text;
    for (std::size_t at = 0; at < raw.size(); ++at)
        if (raw[at] != '\r')
            text += raw[at];
        else if (at + 1 == raw.size() || raw[at + 1] != '\n')
            text += '\n';
    return text;
}

std::string EscapeXmlAttribute(std::string_view text, char quote)
{
    std::string out;
    for (const char character : text) {
        if (character == '&')
            out += "&amp;";
        else if (character == '<')
            out += "&lt;";
        else if (character == quote)
            out += quote == '"' ? "&quot;" : "&apos;";
        else
            out += character;
    }
    return out;
}

std::string_view LocalName(std::string_view name)
{
    return name.substr(name.find(':') + 1);
}

std::size_t LineOf(std::string_view text, std::size_t offset)
{
    const std::string_view before = text.substr(0, offset);
    return static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n')) + 1;
}

} // namespace marvane::tool
