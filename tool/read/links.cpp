#include "tool/read/links.h"

#include <string_view>

#include "tool/read/call_text.h"

namespace marvane::read {

namespace {

/// "X (1)" of "... NAME = X (1), ...".
std::string_view FieldOf(std::string_view text, std::string_view name)
{
    const std::size_t at = text.find(name);
    if (at == std::string_view::npos)
        return {};
    const std::string_view rest = text.substr(at + name.size());
    return rest.substr(0, rest.find(','));
}

} // namespace

/// "CAN" of "CAN (200)"; "200" where nothing has a name for it; empty for PDU_ID_UNDEF.
std::string LinkBook::NameOrNumber(std::uint32_t session, LinkPart part, std::string_view value) const
{
    const auto number = NumberInValue(value);
    if (number == UndefinedId)
        return {};
    const std::string_view name = NameInValue(value);
    if (!name.empty() && name.front() != '<')
        return std::string(name);
    std::string known = number ? NameOf(session, part, *number) : std::string();
    return known.empty() && number ? std::to_string(*number) : known;
}

void LinkBook::ReadResourceData(const Call& create, Link& link) const
{
    for (const CallLine& line : create.LinesIn) {
        if (line.Text.find("pRscData ") != std::string_view::npos) {
            link.Bus = NameOrNumber(link.Session, LinkPart::Bus, FieldOf(line.Text, "BusTypeId = "));
            link.Protocol =
                NameOrNumber(link.Session, LinkPart::Protocol, FieldOf(line.Text, "ProtocolId = "));
        } else if (line.Text.find("pDLCPinData[") != std::string_view::npos) {
            if (const auto pin = NumberInValue(FieldOf(line.Text, "Num =")))
                link.Pins.push_back(*pin);
        }
    }
}

void LinkBook::OnCall(const Call& call)
{
    if (call.State != CallState::Returned || call.Status != 0u)
        return;
    if (call.Which == Function::CreateComLogicalLink) {
        const auto value = ValueOf(call.LinesOut, "phCLL");
        const auto handle = value ? NumberInValue(*value) : std::nullopt;
        if (!handle)
            return;
        auto link = std::make_shared<Link>();
        link->Session = call.Session;
        link->Module = call.Module.value_or(UndefinedHandle);
        link->Handle = *handle;
        if (const auto resource = Argument(call.Arguments, "resourceId"))
            link->Resource = NameOrNumber(link->Session, LinkPart::Resource, *resource);
        ReadResourceData(call, *link);
        link->IsCreated = true;
        link->CreatedAt = call.Begin;
        link->CreatedTime = call.BeginTime;
        links_[{link->Session, link->Module, link->Handle}] = std::move(link);
    } else if (call.Which == Function::DestroyComLogicalLink && call.Link) {
        links_.erase({call.Session, call.Module.value_or(UndefinedHandle), *call.Link});
    } else if (call.Which == Function::Destruct) {
        std::erase_if(links_, [&](const auto& entry) { return entry.first.Session == call.Session; });
    }
}

std::shared_ptr<const Link> LinkBook::Find(std::uint32_t session, std::uint32_t module, std::uint32_t handle)
{
    std::shared_ptr<const Link>& link = links_[{session, module, handle}];
    if (!link) {
        auto unknown = std::make_shared<Link>();
        unknown->Session = session;
        unknown->Module = module;
        unknown->Handle = handle;
        link = std::move(unknown);
    }
    return link;
}

std::shared_ptr<const Link> LinkBook::Find(const Call& call)
{
    return Find(call.Session, call.Module.value_or(UndefinedHandle), call.Link.value_or(UndefinedHandle));
}

} // namespace marvane::read
