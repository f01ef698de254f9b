// A module description file (MDF): the names of the numbers that the API uses, and the defaults of ComParams.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace marvane::words {

/// The kinds of objects that a module description names.
enum class MdfKind : std::uint8_t
{
    PinType,
    ModuleType,
    Resource,
    Protocol,
    BusType,
    IoControl,
    ComParam,
    ErrorCode,
};

struct MdfObject
{
    std::string Name; ///< SHORT_NAME
    std::string Description;
};

struct MdfComParam : MdfObject
{
    std::string DataType;
    std::string Class;
    std::string Layer;
    std::string Default; ///< as the file has it; that of a protocol goes before it
};

class ModuleDescription
{
public:
    /// Reads a file's bytes. Tolerant: what stands before a fault counts, and Fault says what is wrong.
    static ModuleDescription Read(std::string_view bytes);

    /// What is wrong with the file, one line; empty if nothing is.
    const std::string& Fault() const { return fault_; }

    /// The object of a number; null if the file has none.
    const MdfObject* Find(MdfKind kind, std::uint32_t id) const;
    const MdfComParam* FindComParam(std::uint32_t id) const;

    /// The number of the ComParam of that name.
    std::optional<std::uint32_t> ComParamId(std::string_view name) const;

    /// Default of a ComParam on a link: that of the link's protocol or bus, else the ComParam's own. `link`
    /// is the short name of a resource or protocol, and may be unknown.
    std::optional<std::string> DefaultOf(std::string_view link, std::uint32_t comParam) const;

    /// How many objects there are.
    std::size_t Size() const { return objects_.size() + comParams_.size(); }

private:
    friend class MdfCollector;

    /// A resource, and by their identifiers in the file its protocol and bus.
    struct ResourceLinks
    {
        std::string Protocol;
        std::string Bus;
    };

    std::optional<std::string> DefaultIn(const std::string& owner, std::uint32_t comParam) const;

    std::map<std::pair<MdfKind, std::uint32_t>, MdfObject> objects_;
    std::map<std::uint32_t, MdfComParam> comParams_;
    std::map<std::string, ResourceLinks, std::less<>> resources_;     ///< by short name
    std::map<std::string, std::string, std::less<>> protocols_;       ///< short name to identifier
    std::map<std::pair<std::string, std::string>, std::string> refs_; ///< owner and ComParam to default
    std::map<std::uint32_t, std::string> identifiers_;                ///< of ComParams
    std::string fault_;
};

} // namespace marvane::words
