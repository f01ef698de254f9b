// libexpat as the judge of the scanner: what is accepted, the ranges of start tags, the values of attributes,
// the texts.
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include <expat.h>
#include <gtest/gtest.h>

#include "tool/xml/xml_scanner.h"

namespace marvane::tool {
namespace {

/// What a reader found: the start tags with their ranges and values, and all text; or that it refused.
struct Reading
{
    bool Accepted = false;
    std::string Found;
    std::string Fault;
};

struct ExpatState
{
    XML_Parser Parser;
    std::string Found;
};

void OnStart(void* data, const XML_Char* name, const XML_Char** attributes)
{
    auto& state = *static_cast<ExpatState*>(data);
    const auto at = static_cast<std::size_t>(XML_GetCurrentByteIndex(state.Parser));
    const auto count = static_cast<std::size_t>(XML_GetCurrentByteCount(state.Parser));
    state.Found += "<" + std::string(name) + " " + std::to_string(at) + "-" + std::to_string(at + count);
    for (; *attributes; attributes += 2)
        state.Found += " " + std::string(attributes[0]) + "=[" + attributes[1] + "]";
    state.Found += ">";
}

void OnEnd(void* data, const XML_Char* name)
{
    static_cast<ExpatState*>(data)->Found += "</" + std::string(name) + ">";
}

void OnText(void* data, const XML_Char* text, int length)
{
    static_cast<ExpatState*>(data)->Found.append(text, static_cast<std::size_t>(length));
}

Reading ByExpat(const std::string& bytes)
{
    ExpatState state{XML_ParserCreate(nullptr), {}};
    XML_SetUserData(state.Parser, &state);
    XML_SetElementHandler(state.Parser, OnStart, OnEnd);
    XML_SetCharacterDataHandler(state.Parser, OnText);
    const XML_Status status = XML_Parse(state.Parser, bytes.data(), static_cast<int>(bytes.size()), 1);
    const char* const fault = XML_ErrorString(XML_GetErrorCode(state.Parser));
    const Reading reading{status == XML_STATUS_OK, state.Found, fault ? fault : ""};
    XML_ParserFree(state.Parser);
    return reading;
}

Reading ByScanner(const std::string& bytes)
{
    Reading reading;
    try {
        const XmlText text(bytes);
        const auto source = [&](XmlRange range) {
            return std::string_view(text.Utf8()).substr(range.Begin, range.End - range.Begin);
        };
        XmlScanner scanner(text.Utf8());
        while (const auto event = scanner.Next()) {
            if (event->Part == XmlPart::StartTag) {
                reading.Found += "<" + std::string(event->Name) + " " +
                                 std::to_string(text.FileOffset(event->Range.Begin)) + "-" +
                                 std::to_string(text.FileOffset(event->Range.End));
                for (const XmlAttribute& attribute : event->Attributes)
                    reading.Found += " " + std::string(attribute.Name) + "=[" +
                                     DecodeXmlAttribute(source(attribute.Value)).value_or("?") + "]";
                reading.Found += ">";
            } else if (event->Part == XmlPart::EndTag)
                reading.Found += "</" + std::string(event->Name) + ">";
            else if (event->Part != XmlPart::Comment)
                reading.Found += event->Part == XmlPart::Text
                                     ? DecodeXmlText(source(event->Range)).value_or("?")
                                     : DecodeXmlCData(source(event->Range));
        }
        reading.Accepted = true;
    } catch (const XmlError& error) {
        reading.Fault = error.what();
    }
    return reading;
}

void ExpectSameReading(const std::string& bytes)
{
    const Reading expected = ByExpat(bytes);
    const Reading found = ByScanner(bytes);
    EXPECT_EQ(found.Accepted, expected.Accepted)
        << bytes << "\nexpat: " << expected.Fault << "\nscanner: " << found.Fault;
    if (expected.Accepted && found.Accepted) {
        EXPECT_EQ(found.Found, expected.Found) << bytes;
    }
}

std::string Wide(const std::string& ascii, bool bigEndian)
{
    std::string bytes = bigEndian ? "\xFE\xFF" : "\xFF\xFE";
    for (const char character : ascii)
        bytes += bigEndian ? std::string{'\0', character} : std::string{character, '\0'};
    return bytes;
}

const std::string Root = "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone='yes'?>\r\n"
                         "<!-- a comment - with - hyphens -->\r\n<?style a?>"
                         "<r:MVCI_PDU_API_ROOT xmlns:r=\"u\" V='2.2.0'>\r\n"
                         "  <MVCI_PDU_API><SHORT_NAME>\xC3\x84 &amp; &#66;</SHORT_NAME>\r\n"
                         "    <LIBRARY_FILE  URI = \"file:///C:/a b/&quot;\tx.dll\" />\r\n"
                         "    <![CDATA[ <no> & ]] ]]></MVCI_PDU_API><a.b-c_d/>\r\n"
                         "</r:MVCI_PDU_API_ROOT >\r\n<!-- end --> ";

const std::vector<std::string>& Corpus()
{
    static const std::vector<std::string> corpus = {
        Root,
        "\xEF\xBB\xBF" + Root,
        Wide("<?xml version='1.0' encoding='UTF-16'?><a b='c'>x<d/></a>", false),
        Wide("<?xml version='1.0'?><a b='c'>x<d/></a>", true),
        "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><a b='\xE4'>\xFC</a>",
        "<!DOCTYPE a SYSTEM \"x>y\"><a/>",
        "<!DOCTYPE a [<!ELEMENT a ANY><!-- ]> --><?p ]>?><!ENTITY e 'x]>'>]><a>t</a>",
        "<a>]]&gt;</a>",
        "<a b='>'/>",
        "<a\n\tb='1'\r\nc='2'\n/>",
    };
    return corpus;
}

TEST(XmlJudge, AgreesOnTheCorpus)
{
    for (const std::string& bytes : Corpus()) {
        EXPECT_TRUE(ByExpat(bytes).Accepted) << bytes;
        ExpectSameReading(bytes);
    }
}

TEST(XmlJudge, AgreesOnWhatIsRefused)
{
    for (const char* bytes : {"<a>]]></a>",
                              "<a b='<'/>",
                              "<a b=\"1\"c=\"2\"/>",
                              "<a b=1/>",
                              "<a b/>",
                              "< a/>",
                              "<a></a",
                              "<a/>x",
                              "x<a/>",
                              "<a>&#xD800;</a>",
                              "<a>&#0;</a>",
                              "<a>& b</a>",
                              "<a>&b</a>",
                              "<a><!-- -- --></a>",
                              "<a><!-- ---></a>",
                              "<a><?xml version='1.0'?></a>",
                              " <?xml version='1.0'?><a/>",
                              "<?xml?><a/>",
                              "<!DOCTYPE a [<!ELEMENT \xFF ANY>]><a/>",
                              "<!DOCTYPE a [<!ENTITY e '\x01'>]><a/>",
                              "<?xml encoding='UTF-8'?><a/>",
                              "<?xml version='1.0' standalone='maybe'?><a/>",
                              "<?XML x?><a/>",
                              "<?p",
                              "<1/>",
                              "<a 1='x'/>",
                              "<a\x01/>",
                              "<a>\x01</a>",
                              "<a>\xFF</a>",
                              "<a>\xC0\x80</a>",
                              "<a>\xED\xA0\x80</a>",
                              "<a>\xEF\xBF\xBF</a>",
                              "<![CDATA[x]]><a/>",
                              "<a><!DOCTYPE a></a>",
                              "<a/><a/>",
                              "<a></b>",
                              "</a>",
                              "<a b='&'/>",
                              "<?xml version='1.0'encoding='UTF-8'?><a/>",
                              "<a/ >",
                              "<a / >"}) {
        EXPECT_FALSE(ByExpat(bytes).Accepted) << bytes;
        ExpectSameReading(bytes);
    }
}

/// A DOCTYPE is skipped and never read by the scanner, and names beyond ASCII follow another edition's list.
bool IsComparable(const std::string& bytes)
{
    return bytes.find("<!D") == std::string::npos && bytes.find("encoding") == std::string::npos;
}

TEST(XmlJudge, AgreesOnChangedDocuments)
{
    const std::string document = Root.substr(Root.find("<!--"));
    const std::string pieces[] = {"<",
                                  ">",
                                  "/",
                                  "\"",
                                  "'",
                                  "&",
                                  ";",
                                  "=",
                                  "-",
                                  "--",
                                  "]]>",
                                  "<a>",
                                  "</a>",
                                  "<b/>",
                                  "&lt;",
                                  "&#9;",
                                  "&x;",
                                  "<!--",
                                  "-->",
                                  "<?p",
                                  "?>",
                                  " ",
                                  "\r",
                                  "\t",
                                  ":",
                                  "1",
                                  "\x01",
                                  "<![CDATA[",
                                  "URI",
                                  "\xC3",
                                  "<?xml version='1.0'?>",
                                  "!",
                                  "#x"};
    std::mt19937 random(1);
    const auto below = [&](std::size_t limit) { return std::size_t{random()} % limit; };
    int accepted = 0;
    for (int round = 0; round < 30000; ++round) {
        std::string bytes = document;
        for (std::size_t change = 1 + below(3); change != 0; --change) {
            const std::size_t at = below(bytes.size());
            if (below(3) == 0)
                bytes.erase(at, 1 + below(8));
            else
                bytes.insert(at, pieces[below(std::size(pieces))]);
            if (bytes.empty())
                break;
        }
        if (bytes.empty() || !IsComparable(bytes))
            continue;
        accepted += ByExpat(bytes).Accepted ? 1 : 0;
        ExpectSameReading(bytes);
        if (::testing::Test::HasFailure())
            break;
    }
    EXPECT_GT(accepted, 1000);
}

} // namespace
} // namespace marvane::tool
