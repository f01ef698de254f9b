// The interfaces of a capture: one for each ComLogicalLink.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>

#include "tool/export/sink.h"
#include "tool/read/links.h"

namespace marvane::tool::pcapng {

/// Numbers links, and declares each in the file before its first packet can come.
class CaptureLinks
{
public:
    /// Links after so many share one interface.
    static constexpr std::size_t MostInterfaces = 10'000;

    /// `out` outlives it.
    explicit CaptureLinks(Sink& out) : out_(out) {}

    /// The interface of a link; of its module or session for what has none.
    std::uint32_t Of(const read::Link& link);
    /// That of the reports about the library's traffic, which name no link.
    std::uint32_t OfReports();

private:
    std::uint32_t Numbered(const std::string& name, const std::string& description);

    Sink& out_;
    std::map<std::pair<std::string, std::string>, std::uint32_t> numbers_;
};

} // namespace marvane::tool::pcapng
