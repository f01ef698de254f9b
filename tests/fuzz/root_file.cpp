// The reader of root description files over any bytes: the parts of a document follow each other, and a path
// that is put into the file and taken out again leaves the bytes that were there.
#include "tool/setup/root_file.h"
#include "tests/fuzz/fuzz_target.h"
#include "tool/setup/root_sources.h"

using namespace marvane::testing;
using namespace marvane::tool;

namespace {

void RequireInside(XmlRange inner, XmlRange outer)
{
    Require(outer.Begin <= inner.Begin && inner.Begin <= inner.End && inner.End <= outer.End,
            "a part is inside what holds it");
}

/// The scanner: its parts are in order and inside the text, and each end tag has its start tag.
void Scan(std::string_view bytes)
{
    const XmlText text(bytes);
    const XmlRange whole = {0, text.Utf8().size()};
    Require(text.FileOffset(whole.End) == bytes.size(), "the end of the text is that of the file");
    XmlScanner scanner(text.Utf8());
    std::size_t begin = 0;
    std::size_t open = 0;
    while (const std::optional<XmlEvent> event = scanner.Next()) {
        RequireInside(event->Range, whole);
        Require(event->Range.Begin >= begin, "parts follow each other");
        begin = event->Range.Begin;
        for (const XmlAttribute& attribute : event->Attributes)
            RequireInside(attribute.Value, event->Range);
        if (event->Part == XmlPart::StartTag)
            Require(event->Depth == open++ && open <= XmlDepthLimit, "a start tag goes one deeper");
        if (event->Part == XmlPart::EndTag)
            Require(open != 0 && event->Depth == --open, "an end tag goes one back");
    }
    Require(open == 0, "every element is closed");
    Require(IsUtf8(text.Utf8()), "what was accepted is UTF-8");
}

/// An entry's path is changed as by install and put back as by uninstall.
void ChangeAndRestore(const RootFile& file, std::size_t index)
{
    const RootEntry& entry = file.Entries[index];
    const XmlRange range = entry.UriBytes;
    RequireInside(range, {0, file.Bytes.size()});
    Require(file.Text.Encoded(entry.RawUri) == file.Bytes.substr(range.Begin, range.End - range.Begin),
            "the value of the URI is where it was found");
    const UriChange change[] = {{index, EscapeXmlAttribute("file:///m & \"<'>/x.so", entry.Quote)}};
    const std::string changed = WithUris(file, change);
    const std::string rest = file.Bytes.substr(range.End);
    Require(changed.substr(0, range.Begin) == file.Bytes.substr(0, range.Begin) && changed.ends_with(rest) &&
                changed.size() >= range.Begin + rest.size(),
            "every other byte stays");
    const RootFile after = ParseRootFile(changed);
    Require(after.Entries[index].Uri == "file:///m & \"<'>/x.so", "the new value is read as it was meant");
    const UriChange back[] = {{index, entry.RawUri}};
    Require(WithUris(after, back) == file.Bytes, "the old bytes come back");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    std::optional<RootFile> file;
    try {
        Scan(bytes);
        file = ParseRootFile(bytes);
    } catch (const XmlError& refused) {
        Require(*refused.what() != '\0' && refused.Offset <= 4 * size + 16,
                "a refusal has words and a place");
        return 0;
    }
    for (std::size_t i = 0; i < file->Entries.size() && i < 8; ++i) {
        LibraryOf(file->Entries[i]);
        if (ReasonNotToChange(*file, file->Entries[i]).empty())
            ChangeAndRestore(*file, i);
    }
    return 0;
}
