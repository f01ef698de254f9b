#include "tool/export/capture_links.h"

#include "tool/export/link_titles.h"
#include "tool/export/pcapng_blocks.h"

namespace marvane::tool::pcapng {

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
    const std::string name = LinkTitle(link);
    const std::string description = LinkDescription(link);
    const bool isTooMany = numbers_.size() >= MostInterfaces && !numbers_.contains({name, description});
    return isTooMany ? Numbered("further links", "links after the first " + std::to_string(MostInterfaces))
                     : Numbered(name, description);
}

std::uint32_t CaptureLinks::OfReports()
{
    return Numbered("reports", "traffic as the library reports it (comms log)");
}

} // namespace marvane::tool::pcapng
