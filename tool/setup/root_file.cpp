#include "tool/setup/root_file.h"

#include <algorithm>

namespace marvane::tool {

namespace {

constexpr std::string_view Blanks = " \t\r\n";

std::string Trimmed(const std::string& text)
{
    const std::size_t begin = text.find_first_not_of(Blanks);
    return begin == std::string::npos ? std::string()
                                      : text.substr(begin, text.find_last_not_of(Blanks) - begin + 1);
}

/// Collects the entries while the scanner walks the document.
class EntryCollector
{
public:
    explicit EntryCollector(const XmlText& text) : text_(text) {}

    void Take(const XmlEvent& event)
    {
        switch (event.Part) {
        case XmlPart::StartTag:
            return Open(event);
        case XmlPart::EndTag:
            return Close(event);
        case XmlPart::Text:
            return Add(DecodeXmlText(Source(event.Range)).value_or(std::string(Source(event.Range))));
        case XmlPart::CData:
            return Add(DecodeXmlCData(Source(event.Range)));
        case XmlPart::Comment:
            return;
        }
    }

    std::vector<RootEntry> Entries;

private:
    std::string_view Source(XmlRange range) const
    {
        return std::string_view(text_.Utf8()).substr(range.Begin, range.End - range.Begin);
    }

    void Open(const XmlEvent& tag)
    {
        const std::string_view name = LocalName(tag.Name);
        if (tag.Depth == 0 && name != "MVCI_PDU_API_ROOT")
            throw XmlError("is no root description file: its root element is " + std::string(tag.Name),
                           tag.Range.Begin);
        if (name == "MVCI_PDU_API") {
            field_ = nullptr; // It points into an entry, and the entries move.
            Entries.emplace_back();
            Entries.back().Line = LineOf(text_.Utf8(), tag.Range.Begin);
            Entries.back().Nested = tag.Depth != 1;
            entryDepth_ = tag.Depth;
        } else if (entryDepth_ && tag.Depth == *entryDepth_ + 1) {
            field_ = FieldOf(name);
            if (name == "LIBRARY_FILE")
                TakeLibrary(tag);
            else if (name == "MODULE_DESCRIPTION_FILE")
                TakeModuleDescription(tag);
        }
    }

    std::string* FieldOf(std::string_view name)
    {
        RootEntry& entry = Entries.back();
        if (name == "SHORT_NAME")
            return &entry.ShortName;
        if (name == "SUPPLIER_NAME")
            return &entry.Supplier;
        return name == "DESCRIPTION" ? &entry.Description : nullptr;
    }

    static const XmlAttribute* UriOf(const XmlEvent& tag)
    {
        const auto uri =
            std::find_if(tag.Attributes.begin(), tag.Attributes.end(),
                         [](const XmlAttribute& attribute) { return LocalName(attribute.Name) == "URI"; });
        return uri == tag.Attributes.end() ? nullptr : &*uri;
    }

    void TakeModuleDescription(const XmlEvent& tag)
    {
        const XmlAttribute* const uri = UriOf(tag);
        if (uri && !Entries.back().ModuleDescription)
            Entries.back().ModuleDescription = DecodeXmlAttribute(Source(uri->Value));
    }

    void TakeLibrary(const XmlEvent& tag)
    {
        RootEntry& entry = Entries.back();
        if (++entry.FileElements > 1)
            return;
        const XmlAttribute* const uri = UriOf(tag);
        if (!uri)
            return;
        entry.HasUri = true;
        entry.RawUri = Source(uri->Value);
        entry.Uri = DecodeXmlAttribute(entry.RawUri);
        entry.Quote = text_.Utf8()[uri->Value.End];
        entry.UriText = uri->Value;
        entry.UriBytes = {text_.FileOffset(uri->Value.Begin), text_.FileOffset(uri->Value.End)};
    }

    void Close(const XmlEvent& tag)
    {
        if (entryDepth_ && tag.Depth == *entryDepth_) {
            RootEntry& entry = Entries.back();
            for (std::string* text : {&entry.ShortName, &entry.Supplier, &entry.Description})
                *text = Trimmed(*text);
            entryDepth_.reset();
        }
        if (!entryDepth_ || tag.Depth == *entryDepth_ + 1)
            field_ = nullptr;
    }

    void Add(const std::string& text)
    {
        if (field_)
            *field_ += text;
    }

    const XmlText& text_;
    std::optional<std::size_t> entryDepth_;
    std::string* field_ = nullptr;
};

std::vector<RootEntry> EntriesOf(const XmlText& text)
{
    EntryCollector collector(text);
    XmlScanner scanner(text.Utf8());
    try {
        while (const std::optional<XmlEvent> event = scanner.Next())
            collector.Take(*event);
    } catch (const XmlError& error) {
        throw XmlError("line " + std::to_string(LineOf(text.Utf8(), error.Offset)) + ": " + error.what(),
                       error.Offset);
    }
    return std::move(collector.Entries);
}

/// True if two readings of a file differ in nothing but the URIs of the entries in `changes`.
bool DiffersInUrisOnly(const RootFile& before, const RootFile& after, std::span<const UriChange> changes)
{
    if (before.Entries.size() != after.Entries.size())
        return false;
    for (std::size_t i = 0; i < before.Entries.size(); ++i) {
        const RootEntry& one = before.Entries[i];
        const RootEntry& other = after.Entries[i];
        const auto change = std::find_if(changes.begin(), changes.end(),
                                         [i](const UriChange& candidate) { return candidate.Entry == i; });
        const std::string& expected = change == changes.end() ? one.RawUri : change->RawUri;
        if (other.RawUri != expected || one.ShortName != other.ShortName || one.HasUri != other.HasUri ||
            one.FileElements != other.FileElements || one.Line != other.Line || one.Nested != other.Nested)
            return false;
    }
    return true;
}

} // namespace

RootFile ParseRootFile(std::string bytes)
{
    if (bytes.size() > RootFileLimit)
        throw XmlError("is larger than 16 MB", 0);
    XmlText text(bytes);
    std::vector<RootEntry> entries = EntriesOf(text);
    return {std::move(bytes), std::move(text), std::move(entries)};
}

std::string WithUris(const RootFile& file, std::span<const UriChange> changes)
{
    std::vector<UriChange> ordered(changes.begin(), changes.end());
    std::sort(ordered.begin(), ordered.end(),
              [](const UriChange& one, const UriChange& other) { return one.Entry > other.Entry; });
    std::string bytes = file.Bytes;
    // From the last to the first, so that the earlier ranges stay valid.
    for (const UriChange& change : ordered) {
        const XmlRange range = file.Entries[change.Entry].UriBytes;
        bytes.replace(range.Begin, range.End - range.Begin, file.Text.Encoded(change.RawUri));
    }
    if (!DiffersInUrisOnly(file, ParseRootFile(bytes), changes))
        throw XmlError("can't be changed: the result would differ in more than the library's path", 0);
    return bytes;
}

std::string ReasonNotToChange(const RootFile& file, const RootEntry& entry)
{
    const auto isSame = [&](const RootEntry& other) { return other.ShortName == entry.ShortName; };
    if (std::count_if(file.Entries.begin(), file.Entries.end(), isSame) > 1)
        return "there are two entries of this name";
    if (entry.ShortName.find_first_of("\r\n") != std::string::npos)
        return "its SHORT_NAME goes over several lines";
    if (entry.Nested)
        return "it is nested deeper than the root element's children";
    if (entry.FileElements > 1)
        return "it has two LIBRARY_FILE elements";
    if (!entry.HasUri)
        return "it has no LIBRARY_FILE with a URI";
    if (entry.RawUri.find_first_of("\r\n") != std::string::npos)
        return "its URI goes over several lines";
    if (!entry.Uri)
        return "its URI holds an entity other than the five predefined ones";
    return {};
}

} // namespace marvane::tool
