#include "tool/export/link_titles.h"

#include "tool/console/row_text.h"

namespace marvane::tool {

std::string LinkTitle(const read::Link& link)
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

std::string LinkDescription(const read::Link& link)
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

} // namespace marvane::tool
