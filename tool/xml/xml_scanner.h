// Finds the parts of an XML document and changes nothing: the byte ranges of tags, attribute values and text.
// Made for files of which every other byte must stay. It accepts what a non-validating XML 1.0 parser
// accepts, except that the inside of a DOCTYPE is skipped, so that its entities are unknown.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tool/xml/xml_encoding.h"

namespace marvane::tool {

inline constexpr std::size_t XmlDepthLimit = 256;

/// Bytes [Begin, End) of the text.
struct XmlRange
{
    std::size_t Begin = 0;
    std::size_t End = 0;
    bool operator==(const XmlRange&) const = default;
};

struct XmlAttribute
{
    std::string_view Name;
    XmlRange Value; ///< between the quotes, as it is written
};

enum class XmlPart
{
    StartTag, ///< an empty-element tag is a StartTag, then an EndTag of the same range
    EndTag,
    Text,  ///< between two other parts, as it is written
    CData, ///< the inside of a CDATA section
    Comment,
};

struct XmlEvent
{
    XmlPart Part;
    XmlRange Range;        ///< the whole part; of CDATA the inside
    std::string_view Name; ///< of a tag, with its prefix
    std::vector<XmlAttribute> Attributes;
    std::size_t Depth = 0; ///< of a tag: how many elements it is in
};

/// Reads a document of UTF-8 part by part.
class XmlScanner
{
public:
    /// `text` stays the caller's and must outlive the scanner and its events.
    explicit XmlScanner(std::string_view text) : text_(text) {}

    /// The next part; none at the end of the document. Throws XmlError where the text is not well-formed.
    std::optional<XmlEvent> Next();

private:
    [[noreturn]] void Fail(const std::string& message) const;
    bool At(std::string_view expected) const { return text_.substr(at_).starts_with(expected); }
    bool SkipBlanks();
    void Expect(std::string_view expected);
    std::string_view TakeName();
    /// What is between a name and its value: "=" and a quote, which it returns.
    std::string_view TakeOpeningQuote();
    std::string_view TakeUntil(std::string_view end, const char* what);
    void CheckCharacters(std::string_view text) const;
    void CheckText(XmlRange range) const;
    void CheckReference(std::string_view name) const;

    void TakeDeclaration();
    std::optional<std::string_view> TakePseudoAttribute(std::string_view name);
    void SkipInstruction();
    void SkipDoctype();
    void SkipInternalSubset();
    XmlEvent TakeComment();
    XmlEvent TakeCData();
    XmlEvent TakeStartTag();
    XmlEvent TakeEndTag();
    XmlEvent TakeText();
    std::optional<XmlEvent> TakeMarkup();

    std::string_view text_;
    std::size_t at_ = 0;
    std::vector<std::string_view> open_;
    std::optional<XmlEvent> pendingEnd_;
    bool started_ = false;
    bool sawDoctype_ = false;
    bool sawRoot_ = false;
};

/// The value of an attribute, or a text, with its references replaced and its blanks as a parser reports
/// them. None if it holds an entity other than the five predefined ones.
std::optional<std::string> DecodeXmlAttribute(std::string_view raw);
std::optional<std::string> DecodeXmlText(std::string_view raw);

/// The inside of a CDATA section as a parser reports it.
std::string DecodeXmlCData(std::string_view raw);

/// A text as it can be put between these quotes.
std::string EscapeXmlAttribute(std::string_view text, char quote);

/// The part of a name after its prefix.
std::string_view LocalName(std::string_view name);

/// Line of a place in a text, counted from 1.
std::size_t LineOf(std::string_view text, std::size_t offset);

} // namespace marvane::tool
