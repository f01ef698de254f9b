#include "tool/xml/xml_scanner.h"

#include <algorithm>
#include <utility>

namespace marvane::tool {

namespace {

constexpr std::string_view Blanks = " \t\r\n";

bool IsBlank(char character)
{
    return Blanks.find(character) != std::string_view::npos;
}

bool IsNameStart(char32_t c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == ':' ||
           (c >= 0xC0 && c != 0xD7 && c != 0xF7);
}

bool IsNameCharacter(char32_t c)
{
    return IsNameStart(c) || (c >= '0' && c <= '9') || c == '-' || c == '.' || c == 0xB7;
}

bool IsCharacter(char32_t c)
{
    return c >= 0x20 ? c != 0xFFFE && c != 0xFFFF : c == '\t' || c == '\n' || c == '\r';
}

} // namespace

void XmlScanner::Fail(const std::string& message) const
{
    throw XmlError(message, at_);
}

bool XmlScanner::SkipBlanks()
{
    const std::size_t begin = at_;
    while (at_ < text_.size() && IsBlank(text_[at_]))
        ++at_;
    return at_ != begin;
}

void XmlScanner::Expect(std::string_view expected)
{
    if (!At(expected))
        Fail("\"" + std::string(expected) + "\" is missing");
    at_ += expected.size();
}

std::string_view XmlScanner::TakeName()
{
    const std::size_t begin = at_;
    while (at_ < text_.size()) {
        const Utf8Character character = ReadUtf8(text_, at_);
        const bool fits = at_ == begin ? IsNameStart(character.Value) : IsNameCharacter(character.Value);
        if (character.Length == 0 || !fits)
            break;
        at_ += character.Length;
    }
    if (at_ == begin)
        Fail("a name is missing");
    return text_.substr(begin, at_ - begin);
}

std::string_view XmlScanner::TakeOpeningQuote()
{
    SkipBlanks();
    Expect("=");
    SkipBlanks();
    if (!At("\"") && !At("'"))
        Fail("a quote is missing");
    return text_.substr(at_++, 1);
}

std::string_view XmlScanner::TakeUntil(std::string_view end, const char* what)
{
    const std::size_t begin = at_;
    const std::size_t found = text_.find(end, begin);
    if (found == std::string_view::npos)
        Fail(std::string(what) + " has no end");
    const std::string_view inside = text_.substr(begin, found - begin);
    CheckCharacters(inside);
    at_ = found + end.size();
    return inside;
}

void XmlScanner::CheckCharacters(std::string_view text) const
{
    for (std::size_t at = 0; at < text.size();) {
        const Utf8Character character = ReadUtf8(text, at);
        if (character.Length == 0)
            Fail("holds bytes that are not UTF-8");
        if (!IsCharacter(character.Value))
            Fail("holds a control character");
        at += character.Length;
    }
}

void XmlScanner::CheckText(XmlRange range) const
{
    const std::string_view text = text_.substr(range.Begin, range.End - range.Begin);
    CheckCharacters(text);
    for (std::size_t at = text.find('&'); at != std::string_view::npos; at = text.find('&', at + 1)) {
        const std::size_t end = text.find(';', at);
        if (end == std::string_view::npos)
            Fail("\"&\" begins a reference that has no end");
        CheckReference(text.substr(at + 1, end - at - 1));
    }
}

std::optional<XmlEvent> XmlScanner::Next()
{
    if (!started_) {
        started_ = true;
        TakeDeclaration();
    }
    if (pendingEnd_) {
        open_.pop_back();
        return std::exchange(pendingEnd_, std::nullopt);
    }
    for (;;) {
        if (open_.empty())
            SkipBlanks();
        if (at_ == text_.size()) {
            if (!open_.empty())
                Fail("the element " + std::string(open_.back()) + " has no end");
            if (!sawRoot_)
                Fail("holds no element");
            return std::nullopt;
        }
        if (text_[at_] != '<') {
            if (open_.empty())
                Fail("holds text outside its root element");
            return TakeText();
        }
        if (std::optional<XmlEvent> event = TakeMarkup())
            return event;
    }
}

std::optional<XmlEvent> XmlScanner::TakeMarkup()
{
    if (At("<!--"))
        return TakeComment();
    if (At("<![CDATA["))
        return TakeCData();
    if (At("</"))
        return TakeEndTag();
    if (At("<?"))
        SkipInstruction();
    else if (At("<!"))
        SkipDoctype();
    else
        return TakeStartTag();
    return std::nullopt;
}

XmlEvent XmlScanner::TakeComment()
{
    const std::size_t begin = at_;
    at_ += 4;
    TakeUntil("--", "a comment");
    if (!At(">"))
        Fail("\"--\" inside a comment");
    ++at_;
    return {XmlPart::Comment, {begin, at_}, {}, {}, open_.size()};
}

XmlEvent XmlScanner::TakeCData()
{
    if (open_.empty())
        Fail("a CDATA section outside the root element");
    at_ += 9;
    const std::size_t begin = at_;
    const std::string_view inside = TakeUntil("]]>", "a CDATA section");
    return {XmlPart::CData, {begin, begin + inside.size()}, {}, {}, open_.size()};
}

XmlEvent XmlScanner::TakeText()
{
    const XmlRange range = {at_, std::min(text_.find('<', at_), text_.size())};
    if (text_.substr(range.Begin, range.End - range.Begin).find("]]>") != std::string_view::npos)
        Fail("\"]]>\" in a text");
    CheckText(range);
    at_ = range.End;
    return {XmlPart::Text, range, {}, {}, open_.size()};
}

XmlEvent XmlScanner::TakeStartTag()
{
    if (open_.empty() && sawRoot_)
        Fail("a second root element");
    if (open_.size() == XmlDepthLimit)
        Fail("nests elements too deep");
    XmlEvent tag{XmlPart::StartTag, {at_, at_}, {}, {}, open_.size()};
    ++at_;
    tag.Name = TakeName();
    while (SkipBlanks() && !At("/") && !At(">")) {
        XmlAttribute attribute{TakeName(), {}};
        const auto isSame = [&](const XmlAttribute& other) { return other.Name == attribute.Name; };
        if (std::any_of(tag.Attributes.begin(), tag.Attributes.end(), isSame))
            Fail("the attribute " + std::string(attribute.Name) + " twice");
        const std::string_view quote = TakeOpeningQuote();
        attribute.Value.Begin = at_;
        if (TakeUntil(quote, "an attribute").find('<') != std::string_view::npos)
            Fail("\"<\" in the value of an attribute");
        attribute.Value.End = at_ - 1;
        CheckText(attribute.Value);
        tag.Attributes.push_back(attribute);
    }
    const bool isEmpty = At("/");
    Expect(isEmpty ? "/>" : ">");
    tag.Range.End = at_;
    sawRoot_ = true;
    open_.push_back(tag.Name);
    if (isEmpty)
        pendingEnd_ = XmlEvent{XmlPart::EndTag, tag.Range, tag.Name, {}, tag.Depth};
    return tag;
}

XmlEvent XmlScanner::TakeEndTag()
{
    const std::size_t begin = at_;
    at_ += 2;
    const std::string_view name = TakeName();
    if (open_.empty() || open_.back() != name)
        Fail("the end tag " + std::string(name) + " ends no open element");
    SkipBlanks();
    Expect(">");
    open_.pop_back();
    return {XmlPart::EndTag, {begin, at_}, name, {}, open_.size()};
}

} // namespace marvane::tool
