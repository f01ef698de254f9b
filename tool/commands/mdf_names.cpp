#include "tool/commands/mdf_names.h"

#include <filesystem>
#include <fstream>
#include <iterator>

namespace marvane::tool {

namespace {

words::MdfKind KindOf(read::LinkPart part)
{
    constexpr words::MdfKind kinds[] = {words::MdfKind::Resource, words::MdfKind::Protocol,
                                        words::MdfKind::BusType};
    return kinds[static_cast<std::size_t>(part)];
}

} // namespace

MdfNames MdfNames::Of(const Arguments& arguments, Console& console)
{
    MdfNames names;
    const auto path = arguments.Value("--mdf");
    if (!path)
        return names;
    std::ifstream stream(std::filesystem::path(std::u8string(path->begin(), path->end())), std::ios::binary);
    if (!stream) {
        console.Complain(*path + ": can't be read");
        return names;
    }
    const std::string bytes{std::istreambuf_iterator<char>(stream), {}};
    auto description = std::make_shared<words::ModuleDescription>(words::ModuleDescription::Read(bytes));
    if (!description->Fault().empty())
        console.Complain(*path + ": " + description->Fault());
    names.description_ = std::move(description);
    return names;
}

read::LinkNames MdfNames::Names() const
{
    if (!description_)
        return {};
    return [description = description_](read::LinkPart part, std::uint32_t id) {
        const words::MdfObject* object = description->Find(KindOf(part), id);
        return object ? object->Name : std::string();
    };
}

std::string MdfNames::ParamName(std::uint32_t id, std::string_view name) const
{
    if (!name.empty())
        return std::string(name);
    const words::MdfComParam* parameter = description_ ? description_->FindComParam(id) : nullptr;
    return parameter ? parameter->Name : "ComParam " + std::to_string(id);
}

std::optional<std::string> MdfNames::DefaultOf(const read::Link& link, std::uint32_t id) const
{
    if (!description_)
        return std::nullopt;
    const std::string& name = link.Resource.empty() ? link.Protocol : link.Resource;
    return description_->DefaultOf(name, id);
}

} // namespace marvane::tool
