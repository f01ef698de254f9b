#include "tool/export/capture_links.h"

#include "tool/commands/row_text.h"
#include "tool/export/pcapng_blocks.h"

namespace marvane::tool::pcapng {

namespace {

/// "hMod 1 hCLL 1", with the session if it is not the first.
std::string NameOf(const read::Link& link)
{
    std::string name = link.Session > 1 ? "session " + std::to_string(link.Session) + " " : "";
    if (link.Module == read::UndefinedHandle && link.Handle == read::UndefinedHandle)
        return name + "API";
    if (link.Module != read::UndefinedHandle)
        name += "hMod " + std::to_string(link.Module);
    if (link.Handle != read::UndefinedHandle)
        name += (name.empty() || name.ends_with(' ') ? "hCLL " : " hCLL ") + std::to_string(link.Handle);
    return name;
}

/// "ISO_15765_3_on_ISO_15765_2, pins 6/14"
std::string DescriptionOf(const read::Link& link)
{
    if (link.Handle == read::UndefinedHandle)
        return "what belongs to no link";
    std::string description = Printable(link.Name());
    if (!link.Protocol.empty() && !link.Resource.empty())
        description += ", " + Printable(link.Resource);
    if (!link.Bus.empty())
        description += ", " + Printable(link.Bus);
    for (std::size_t i = 0; i < link.Pins.size(); ++i)
        description += (i > 0 ? "/" : ", pins ") + std::to_string(link.Pins[i]);
    return description;
}

} // namespace

std::uint32_t CaptureLinks::Numbered(const std::string& name, const std::string& description)
{
    const auto known = numbers_.find({name, description});
    if (known != numbers_.end())
        return known->second;
    const auto next = static_cast<std::uint32_t>(numbers_.size());
    out_.Write(InterfaceDescription(name, description));
    return numbers_[{name, description}] = next;
}

std::uint32_t CaptureLinks::Of(const read::Link& link)
{
    const std::string name = NameOf(link);
    const std::string description = DescriptionOf(link);
    const bool isTooMany = numbers_.size() >= MostInterfaces && !numbers_.contains({name, description});
    return isTooMany ? Numbered("further links", "links after the first " + std::to_string(MostInterfaces))
                     : Numbered(name, description);
}

std::uint32_t CaptureLinks::OfReports()
{
    return Numbered("reports", "traffic as the library reports it (comms log)");
}

} // namespace marvane::tool::pcapng
