// The ComLogicalLinks of a log: what each handle stood for while it was good.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tool/read/records.h"

namespace marvane::read {

/// A ComLogicalLink, as far as its creation is in the log.
struct Link
{
    std::uint32_t Session = 0;
    std::uint32_t Module = 0;
    std::uint32_t Handle = 0;
    std::string Resource; ///< name or, if the log has none, number; empty if none was named
    std::string Protocol; ///< likewise
    std::string Bus;      ///< likewise
    std::vector<std::uint32_t> Pins;
    bool IsCreated = false; ///< its creation is in the log
    Position CreatedAt;
    LogTime CreatedTime;

    /// Protocol, else resource: what decides which service numbers its bytes are read by. May be empty.
    const std::string& Name() const { return Protocol.empty() ? Resource : Protocol; }
};

/// What a number of a link stands for.
enum class LinkPart : std::uint8_t
{
    Resource,
    Protocol,
    Bus,
    ComParam
};

/// Names for numbers that the log shows without a name; an empty one for those it does not know.
using LinkNames = std::function<std::string(std::uint32_t session, LinkPart part, std::uint32_t id)>;

/// Learns links from PDUCreateComLogicalLink and forgets them with PDUDestroyComLogicalLink and PDUDestruct.
/// What it gave out stays good.
class LinkBook
{
public:
    /// Where the log has no name.
    void SetNames(LinkNames names) { names_ = std::move(names); }
    /// A name by that; empty if there is none.
    std::string NameOf(std::uint32_t session, LinkPart part, std::uint32_t id) const
    {
        return names_ ? names_(session, part, id) : std::string();
    }

    /// To be told every call.
    void OnCall(const Call& call);

    /// The link of that handle; one without names if its creation is not in the log. Never null.
    std::shared_ptr<const Link> Find(std::uint32_t session, std::uint32_t module, std::uint32_t handle);
    std::shared_ptr<const Link> Find(const Call& call);

private:
    struct Key
    {
        std::uint32_t Session;
        std::uint32_t Module;
        std::uint32_t Handle;
        friend auto operator<=>(const Key&, const Key&) = default;
    };
    std::string NameOrNumber(std::uint32_t session, LinkPart part, std::string_view value) const;
    void ReadResourceData(const Call& create, Link& link) const;

    std::map<Key, std::shared_ptr<const Link>> links_;
    LinkNames names_;
};

} // namespace marvane::read
