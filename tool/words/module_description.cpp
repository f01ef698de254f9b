#include "tool/words/module_description.h"

#include <algorithm>
#include <charconv>
#include <vector>

#include "tool/xml/xml_scanner.h"

namespace marvane::words {

namespace {

using tool::XmlEvent;
using tool::XmlPart;

struct ElementKind
{
    std::string_view Element;
    MdfKind Kind;
};

constexpr ElementKind Kinds[] = {
    {"PINTYPE", MdfKind::PinType},   {"MODULETYPE", MdfKind::ModuleType}, {"RESOURCE", MdfKind::Resource},
    {"PROTOCOL", MdfKind::Protocol}, {"BUSTYPE", MdfKind::BusType},       {"IO_CTRL", MdfKind::IoControl},
    {"COMPARAM", MdfKind::ComParam}, {"ERROR_CODE", MdfKind::ErrorCode},
};

std::optional<MdfKind> KindOf(std::string_view element)
{
    const auto found = std::ranges::find(Kinds, element, &ElementKind::Element);
    return found == std::end(Kinds) ? std::nullopt : std::optional(found->Kind);
}

std::string Trimmed(const std::string& text)
{
    constexpr std::string_view blanks = " \t\r\n";
    const std::size_t begin = text.find_first_not_of(blanks);
    return begin == std::string::npos ? std::string()
                                      : text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

/// A whole number, decimal or with 0x.
std::optional<std::uint32_t> NumberOf(std::string_view text)
{
    const bool hexadecimal = text.starts_with("0x") || text.starts_with("0X");
    if (hexadecimal)
        text.remove_prefix(2);
    std::uint32_t number = 0;
    const auto [end, error] =
        std::from_chars(text.data(), text.data() + text.size(), number, hexadecimal ? 16 : 10);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

/// An object, or a COMPARAM_REF, whose end tag has not come yet.
struct Open
{
    std::optional<MdfKind> Kind; ///< none for a COMPARAM_REF
    std::size_t Depth = 0;
    std::string Identifier;                                ///< EID
    std::map<std::string, std::string, std::less<>> Texts; ///< of its child elements
    std::map<std::string, std::string, std::less<>> Refs;  ///< IDREF of its child elements
};

} // namespace

/// Fills a description while the scanner walks the file.
class MdfCollector
{
public:
    MdfCollector(ModuleDescription& out, std::string_view text) : out_(out), text_(text) {}

    void Take(const XmlEvent& event)
    {
        if (event.Part == XmlPart::StartTag)
            TakeStart(event);
        else if (event.Part == XmlPart::EndTag)
            TakeEnd(event);
        else if (field_ && event.Part == XmlPart::Text)
            *field_ += tool::DecodeXmlText(Source(event.Range)).value_or(std::string(Source(event.Range)));
        else if (field_ && event.Part == XmlPart::CData)
            *field_ += Source(event.Range);
    }

private:
    std::string_view Source(tool::XmlRange range) const
    {
        return text_.substr(range.Begin, range.End - range.Begin);
    }

    std::optional<std::string> AttributeOf(const XmlEvent& tag, std::string_view name) const
    {
        for (const tool::XmlAttribute& attribute : tag.Attributes)
            if (tool::LocalName(attribute.Name) == name)
                return tool::DecodeXmlAttribute(Source(attribute.Value));
        return std::nullopt;
    }

    void TakeStart(const XmlEvent& tag)
    {
        const std::string_view name = tool::LocalName(tag.Name);
        const std::optional<std::string> reference = AttributeOf(tag, "IDREF");
        if (reference && !open_.empty()) {
            open_.back().Refs.insert_or_assign(std::string(name), *reference);
        } else if (const std::optional<MdfKind> kind = KindOf(name); kind || name == "COMPARAM_REF") {
            open_.push_back({kind, tag.Depth, AttributeOf(tag, "EID").value_or(""), {}, {}});
            field_ = nullptr;
        } else if (!open_.empty() && tag.Depth == open_.back().Depth + 1) {
            field_ = &open_.back().Texts[std::string(name)];
        }
    }

    void TakeEnd(const XmlEvent& tag)
    {
        field_ = nullptr;
        if (open_.empty() || open_.back().Depth != tag.Depth)
            return;
        Open done = std::move(open_.back());
        open_.pop_back();
        for (auto& [name, text] : done.Texts)
            text = Trimmed(text);
        if (!done.Kind)
            AddReference(done);
        else if (const std::optional<std::uint32_t> id = NumberOf(done.Texts["ID"]))
            AddObject(*id, done);
    }

    void AddReference(Open& done)
    {
        if (!open_.empty() && !open_.back().Identifier.empty())
            out_.refs_.insert_or_assign({open_.back().Identifier, done.Refs["COMPARAM"]},
                                        done.Texts["DEFAULT_VALUE"]);
    }

    void AddObject(std::uint32_t id, Open& done)
    {
        const MdfObject object = {done.Texts["SHORT_NAME"], done.Texts["DESCRIPTION"]};
        if (*done.Kind == MdfKind::ComParam) {
            out_.comParams_.insert_or_assign(id,
                                             MdfComParam{object, done.Texts["DATA_TYPE"], done.Texts["CLASS"],
                                                         done.Texts["LAYER"], done.Texts["DEFAULT_VALUE"]});
            out_.identifiers_.insert_or_assign(id, done.Identifier);
            return;
        }
        if (*done.Kind == MdfKind::Resource)
            out_.resources_.insert_or_assign(
                object.Name, ModuleDescription::ResourceLinks{done.Refs["PROTOCOL"], done.Refs["BUSTYPE"]});
        if (*done.Kind == MdfKind::Protocol)
            out_.protocols_.insert_or_assign(object.Name, done.Identifier);
        out_.objects_.insert_or_assign({*done.Kind, id}, object);
    }

    ModuleDescription& out_;
    std::string_view text_;
    std::vector<Open> open_;
    std::string* field_ = nullptr;
};

ModuleDescription ModuleDescription::Read(std::string_view bytes)
{
    ModuleDescription description;
    try {
        const tool::XmlText text(bytes);
        MdfCollector collector(description, text.Utf8());
        tool::XmlScanner scanner(text.Utf8());
        while (const std::optional<XmlEvent> event = scanner.Next())
            collector.Take(*event);
        if (description.Size() == 0)
            description.fault_ = "names nothing that a module description names";
    } catch (const tool::XmlError& error) {
        description.fault_ = error.what();
    }
    return description;
}

const MdfObject* ModuleDescription::Find(MdfKind kind, std::uint32_t id) const
{
    if (kind == MdfKind::ComParam)
        return FindComParam(id);
    const auto found = objects_.find({kind, id});
    return found == objects_.end() ? nullptr : &found->second;
}

const MdfComParam* ModuleDescription::FindComParam(std::uint32_t id) const
{
    const auto found = comParams_.find(id);
    return found == comParams_.end() ? nullptr : &found->second;
}

std::optional<std::uint32_t> ModuleDescription::ComParamId(std::string_view name) const
{
    for (const auto& [id, comParam] : comParams_)
        if (comParam.Name == name)
            return id;
    return std::nullopt;
}

std::optional<std::string> ModuleDescription::DefaultIn(const std::string& owner,
                                                        std::uint32_t comParam) const
{
    const auto identifier = identifiers_.find(comParam);
    if (owner.empty() || identifier == identifiers_.end())
        return std::nullopt;
    const auto found = refs_.find({owner, identifier->second});
    return found == refs_.end() || found->second.empty() ? std::nullopt : std::optional(found->second);
}

std::optional<std::string> ModuleDescription::DefaultOf(std::string_view link, std::uint32_t comParam) const
{
    std::vector<std::string> owners;
    if (const auto resource = resources_.find(link); resource != resources_.end())
        owners = {resource->second.Protocol, resource->second.Bus};
    else if (const auto protocol = protocols_.find(link); protocol != protocols_.end())
        owners = {protocol->second};
    for (const std::string& owner : owners)
        if (std::optional<std::string> value = DefaultIn(owner, comParam))
            return value;
    const MdfComParam* const own = FindComParam(comParam);
    return own && !own->Default.empty() ? std::optional(own->Default) : std::nullopt;
}

} // namespace marvane::words
