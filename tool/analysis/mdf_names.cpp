#include "tool/analysis/mdf_names.h"

#include <map>
#include <vector>

#include "tool/console/row_text.h"
#include "tool/setup/library_look.h"
#include "tool/setup/root_sources.h"
#include "tool/setup/setup_files.h"

namespace marvane::tool {

namespace {

constexpr std::size_t MdfLimit = 64u << 20;

/// A file that was read; nothing is in it if that failed.
struct Mdf
{
    std::string Path;
    words::ModuleDescription Content;
};
using SharedMdf = std::shared_ptr<const Mdf>;

words::MdfKind KindOf(read::LinkPart part)
{
    constexpr words::MdfKind kinds[] = {words::MdfKind::Resource, words::MdfKind::Protocol,
                                        words::MdfKind::BusType, words::MdfKind::ComParam};
    return kinds[static_cast<std::size_t>(part)];
}

/// Whether a path of this machine is that of a log. A path on the network is compared by its text alone: a
/// log of a stranger must not lead anybody to a stranger's server.
bool IsSamePath(const std::string& own, const std::string& logged)
{
    const bool isOnNetwork = logged.find_first_of("/\\") == 0 && logged.find_first_of("/\\", 1) == 1;
    return !own.empty() && (own == logged || (!isOnNetwork && IsSameFile(own, logged)));
}

/// Whether an entry leads to a target library, be it through a copy of Marvane.
bool LeadsTo(const RootEntry& entry, const std::string& target)
{
    const std::string library = LibraryOf(entry).Path;
    return IsSamePath(library, target) || (!library.empty() && IsSamePath(ChainOf(library).Target, target));
}

/// Path of the module description of the entry of that name, or that leads to that library.
std::string MdfOfEntry(const std::vector<std::string>& roots, const std::optional<std::string>& name,
                       const std::string& target)
{
    for (const ReadRoot& root : ReadRoots(roots)) {
        if (!root.File)
            continue;
        for (const RootEntry& entry : root.File->Entries)
            if (name ? entry.ShortName == *name : LeadsTo(entry, target))
                return ModuleDescriptionOf(entry);
    }
    return {};
}

} // namespace

struct MdfNames::Knowledge
{
    SharedMdf Given; ///< by --mdf
    std::vector<std::string> Roots;
    std::optional<std::string> Entry;
    Console* Messages = nullptr;
    std::map<std::string, SharedMdf> ByTarget; ///< null where there is none
    std::map<std::uint32_t, SharedMdf> BySession;
    std::string Source;

    const words::ModuleDescription* Of(std::uint32_t session) const
    {
        const auto found = BySession.find(session);
        const SharedMdf& mdf = found == BySession.end() ? Given : found->second;
        return mdf ? &mdf->Content : nullptr;
    }

    void Use(std::uint32_t session, const std::string& target)
    {
        const auto [place, isNew] = ByTarget.try_emplace(target);
        if (isNew)
            place->second = Read(MdfOfEntry(Roots, Entry, target));
        if (!place->second)
            return;
        BySession[session] = place->second;
        if (Source.empty())
            Source = place->second->Path;
    }

    /// Nobody asked for this very file, so a fault is worth a remark and no more.
    SharedMdf Read(const std::string& path) const
    {
        const auto bytes = path.empty() ? std::nullopt : ReadFileBytes(path, MdfLimit);
        if (!bytes)
            return nullptr;
        auto mdf = std::make_shared<const Mdf>(Mdf{path, words::ModuleDescription::Read(*bytes)});
        if (!mdf->Content.Fault().empty())
            Messages->Note(path + ": " + mdf->Content.Fault());
        return mdf;
    }
};

MdfNames MdfNames::Of(const Arguments& arguments, Console& console)
{
    MdfNames names;
    names.knowledge_ = std::make_shared<Knowledge>();
    Knowledge& knowledge = *names.knowledge_;
    knowledge.Roots = arguments.Values("--root");
    knowledge.Entry = arguments.Value("--entry");
    knowledge.Messages = &console;
    const auto path = arguments.Value("--mdf");
    if (!path)
        return names;
    const auto bytes = ReadFileBytes(*path, MdfLimit);
    auto given = std::make_shared<const Mdf>(
        Mdf{*path, bytes ? words::ModuleDescription::Read(*bytes) : words::ModuleDescription()});
    if (!bytes)
        console.Complain(*path + ": can't be read");
    else if (!given->Content.Fault().empty())
        console.Complain(*path + ": " + given->Content.Fault());
    knowledge.Given = std::move(given);
    knowledge.Source = *path;
    return names;
}

void MdfNames::OnSession(const read::Session& session) const
{
    if (knowledge_ && !knowledge_->Given)
        knowledge_->Use(session.Number, session.Target);
}

MdfNames MdfNames::ForAnotherLog() const
{
    MdfNames other;
    other.knowledge_ = std::make_shared<Knowledge>(*knowledge_);
    other.knowledge_->BySession.clear();
    return other;
}

std::string MdfNames::Source() const
{
    return knowledge_ ? knowledge_->Source : std::string();
}

read::LinkNames MdfNames::Names() const
{
    return [knowledge = knowledge_](std::uint32_t session, read::LinkPart part, std::uint32_t id) {
        const words::ModuleDescription* description = knowledge ? knowledge->Of(session) : nullptr;
        const words::MdfObject* object = description ? description->Find(KindOf(part), id) : nullptr;
        return object ? object->Name : std::string();
    };
}

std::string MdfNames::ParamName(std::uint32_t session, std::uint32_t id, std::string_view name) const
{
    std::string known = name.empty() ? Names()(session, read::LinkPart::ComParam, id) : std::string(name);
    return known.empty() ? "ComParam " + std::to_string(id) : known;
}

std::optional<std::string> MdfNames::ErrorText(std::uint32_t session, std::uint32_t number) const
{
    const words::ModuleDescription* description = knowledge_ ? knowledge_->Of(session) : nullptr;
    const words::MdfObject* error =
        description ? description->Find(words::MdfKind::ErrorCode, number) : nullptr;
    if (!error || (error->Name.empty() && error->Description.empty()))
        return std::nullopt;
    const bool hasBoth = !error->Name.empty() && !error->Description.empty();
    return Printable(error->Name + (hasBoth ? ", " : "") + error->Description);
}

std::optional<std::string> MdfNames::DefaultOf(const read::Link& link, std::uint32_t id) const
{
    const words::ModuleDescription* description = knowledge_ ? knowledge_->Of(link.Session) : nullptr;
    if (!description)
        return std::nullopt;
    return description->DefaultOf(link.Resource.empty() ? link.Protocol : link.Resource, id);
}

} // namespace marvane::tool
