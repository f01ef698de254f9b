#include "tool/xml/xml_scanner.h"

#include <gtest/gtest.h>

namespace marvane::tool {
namespace {

/// The parts of a document: "<a b=[1]", "</a", "text", "[cdata]"; or the fault.
std::string Parts(const std::string& text)
{
    const auto source = [&](XmlRange range) { return text.substr(range.Begin, range.End - range.Begin); };
    std::string parts;
    try {
        XmlScanner scanner(text);
        while (const auto event = scanner.Next()) {
            if (event->Part == XmlPart::StartTag) {
                parts += "<" + std::string(event->Name);
                for (const XmlAttribute& attribute : event->Attributes)
                    parts += " " + std::string(attribute.Name) + "=[" + source(attribute.Value) + "]";
            } else if (event->Part == XmlPart::EndTag)
                parts += "</" + std::string(event->Name);
            else if (event->Part == XmlPart::CData)
                parts += "[" + source(event->Range) + "]";
            else
                parts += source(event->Range);
            parts += "|";
        }
    } catch (const XmlError& error) {
        return parts + "!" + error.what() + " at " + std::to_string(error.Offset);
    }
    return parts;
}

TEST(XmlScanner, FindsTagsAttributesAndTexts)
{
    EXPECT_EQ(Parts("<?xml version='1.0'?>\n<a>x<b u=\"1\" v = '2'/>y</a >\n"),
              "<a|x|<b u=[1] v=[2]|</b|y|</a|");
    EXPECT_EQ(Parts("<a><!-- <b/> --><![CDATA[<c>]]></a>"), "<a|<!-- <b/> -->|[<c>]|</a|");
}

TEST(XmlScanner, SkipsADoctypeWithAllThatIsInIt)
{
    EXPECT_EQ(Parts("<!DOCTYPE a [<!ENTITY e \"]>\"><!-- ]> --><?p ]?>]><a>&e;</a>"), "<a|&e;|</a|");
}

TEST(XmlScanner, RefusesWhatIsNotWellFormed)
{
    EXPECT_EQ(Parts("<a><b></a>"), "<a|<b|!the end tag a ends no open element at 9");
    EXPECT_EQ(Parts("<a"), "!\">\" is missing at 2");
    EXPECT_EQ(Parts("<a>"), "<a|!the element a has no end at 3");
    EXPECT_EQ(Parts(""), "!holds no element at 0");
    EXPECT_EQ(Parts("<a/><b/>"), "<a|</a|!a second root element at 4");
    EXPECT_EQ(Parts("<a u='1' u='2'/>"), "!the attribute u twice at 10");
    EXPECT_EQ(Parts("<a>&nbsp;</a>"), "<a|!the entity \"&nbsp;\" is unknown at 3");
    EXPECT_EQ(Parts("no file of XML"), "!holds text outside its root element at 0");
}

TEST(XmlScanner, LimitsTheDepth)
{
    std::string deep;
    for (std::size_t i = 0; i <= XmlDepthLimit; ++i)
        deep += "<a>";
    EXPECT_TRUE(Parts(deep).ends_with("!nests elements too deep at 768"));
}

TEST(XmlReferences, AreReplacedIfPredefinedOrNumbered)
{
    EXPECT_EQ(DecodeXmlAttribute("&lt;&gt;&amp;&quot;&apos;&#65;&#x42;\r\n\t"), "<>&\"'AB  ");
    EXPECT_EQ(DecodeXmlAttribute("&nbsp;"), std::nullopt);
    EXPECT_EQ(DecodeXmlAttribute("&#0;"), std::nullopt);
    EXPECT_EQ(DecodeXmlText("a\r\nb\rc"), "a\nb\nc");
}

TEST(XmlEscape, KeepsTheQuotesThatAreThere)
{
    EXPECT_EQ(EscapeXmlAttribute("a&b<c\"d'e", '"'), "a&amp;b&lt;c&quot;d'e");
    EXPECT_EQ(EscapeXmlAttribute("\"'", '\''), "\"&apos;");
}

TEST(XmlEncodingTest, KnowsTheMarks)
{
    EXPECT_EQ(XmlText("\xEF\xBB\xBF<a/>").Utf8(), "<a/>");
    EXPECT_EQ(XmlText("\xEF\xBB\xBF<a/>").FileOffset(1), 4u);
    const XmlText wide(std::string_view("\xFF\xFE<\0\xE4\0/\0>\0", 10));
    EXPECT_EQ(wide.Utf8(), "<\xC3\xA4/>");
    EXPECT_EQ(wide.FileOffset(3), 6u);
    EXPECT_EQ(wide.Encoded("\xF0\x9F\x98\x80"), std::string("\x3D\xD8\x00\xDE", 4));
    EXPECT_THROW(XmlText(std::string_view("<\0a\0", 4)), XmlError);
}

TEST(XmlEncodingTest, TakesLatin1AsItIs)
{
    const XmlText text("<?xml version='1.0' encoding='iso-8859-1'?><a b='\xE4'/>");
    EXPECT_TRUE(text.Utf8().ends_with("<a b='\xC3\xA4'/>"));
    EXPECT_EQ(text.Encoded("\xC3\xBC"), "\xFC");
    EXPECT_THROW(text.Encoded("\xE2\x82\xAC"), XmlError);
}

TEST(XmlEncodingTest, RefusesOthers)
{
    EXPECT_THROW(XmlText("<?xml version='1.0' encoding='windows-1252'?><a/>"), XmlError);
}

} // namespace
} // namespace marvane::tool
