// What the ComParams of each link are known to be, and how they change.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>

#include "tool/read/links.h"
#include "tool/read/records.h"

namespace marvane::read {

/// The value of a ComParam as text: "5000", "3E 80", "session 1, P2Max_high 0" of the first element of a
/// structure; empty if the log does not show it.
std::string ParamValueText(const Param& param);

/// The name of a ComParam, "ComParam 603" where the log has none.
std::string ParamNameText(const Param& param);

/// A PDUSetComParam that gave a ComParam another value than it was known to have.
struct ParamChange
{
    Position At;
    LogTime Time;
    std::uint32_t Session = 0;
    std::shared_ptr<const Link> On;
    std::string Name;
    std::optional<std::string> Before; ///< nothing if it was not known
    std::string After;
};

/// Memory: a text for each ComParam of each link that is open.
class ParamValues
{
public:
    /// To be told every call and every ComParam.
    void OnCall(const Call& call);
    /// The change, if it is one.
    std::optional<ParamChange> OnParam(const Param& param, LinkBook& links);

private:
    struct Key
    {
        std::uint32_t Session;
        std::uint32_t Module;
        std::uint32_t Link;
        std::uint32_t Id;
        friend auto operator<=>(const Key&, const Key&) = default;
    };
    std::map<Key, std::string> values_;
};

} // namespace marvane::read
