// `marvane list`: the D-PDU API libraries that the root description files name.
#include "tool/commands/setup_options.h"
#include "tool/commands/unreadable_roots.h"
#include "tool/console/arguments.h"
#include "tool/console/console.h"
#include "tool/console/json_text.h"
#include "tool/setup/library_look.h"
#include "tool/setup/root_sources.h"

namespace marvane::tool {

namespace {

constexpr const char* Indent = "   ";

std::string Row(const char* name, const std::string& text)
{
    std::string row = Indent + std::string(name);
    row.resize(15, ' ');
    return row + text + "\n";
}

std::string BehindText(const LibraryLook& marvane)
{
    const Chain chain = ChainOf(marvane.Path);
    if (!chain.HasConfiguration)
        return Row("", "no configuration beside it: " + chain.Configuration);
    if (chain.Target.empty())
        return Row("", "its configuration names no target library: " + chain.Configuration);
    return Row("target", chain.Target) + Row("", LibrarySummary(LookAtLibrary(chain.Target)));
}

std::string EntryText(const RootFile& file, const RootEntry& entry)
{
    std::string text = entry.ShortName.empty() ? "(no SHORT_NAME)" : entry.ShortName;
    if (!entry.Supplier.empty())
        text += "   " + entry.Supplier;
    text += "\n";
    const EntryLibrary library = LibraryOf(entry);
    if (library.Path.empty())
        return text + Row("library", library.Fault);
    const LibraryLook look = LookAtLibrary(library.Path);
    const bool isMarvane = look.Facts && look.Facts->IsMarvane;
    text += Row("library", library.Path) + Row("", (isMarvane ? "Marvane " : "") + LibrarySummary(look));
    if (isMarvane)
        text += BehindText(look);
    if (const std::string reason = ReasonNotToChange(file, entry); !reason.empty())
        text += Row("note", "can't be changed by install: " + reason);
    return text;
}

std::string RootText(const ReadRoot& root)
{
    std::string text = root.Source.Path + "  (" + root.Source.Origin + ")\n";
    if (!root.File)
        return text + Row("", root.Fault);
    for (const RootEntry& entry : root.File->Entries)
        text += "\n" + EntryText(*root.File, entry);
    if (root.File->Entries.empty())
        text += "\nno entries\n";
    return text;
}

void AddLibrary(JsonObject& object, const LibraryLook& look)
{
    object.Add("library", look.Path).Add("exists", look.Exists);
    if (!look.Facts)
        return;
    object.Add("machine", MachineText(look.Facts->For));
    if (look.Facts->Version)
        object.Add("version", VersionText(*look.Facts->Version));
    JsonArray missing;
    for (const std::string& name : MissingFunctions(*look.Facts))
        missing.Add(name);
    object.AddRaw("missing_functions", missing.Text()).Add("is_marvane", look.Facts->IsMarvane);
}

std::string EntryJson(const RootFile& file, const RootEntry& entry)
{
    JsonObject object;
    object.Add("short_name", entry.ShortName).Add("supplier", entry.Supplier).Add("line", entry.Line);
    const EntryLibrary library = LibraryOf(entry);
    if (library.Path.empty())
        object.Add("fault", library.Fault);
    else {
        const LibraryLook look = LookAtLibrary(library.Path);
        AddLibrary(object, look);
        if (look.Facts && look.Facts->IsMarvane) {
            const Chain chain = ChainOf(look.Path);
            JsonObject behind;
            behind.Add("configuration", chain.Configuration)
                .Add("configuration_exists", chain.HasConfiguration);
            if (!chain.Target.empty())
                AddLibrary(behind, LookAtLibrary(chain.Target));
            object.AddRaw("behind", behind.Text());
        }
    }
    if (const std::string reason = ReasonNotToChange(file, entry); !reason.empty())
        object.Add("not_changeable", reason);
    return object.Text();
}

std::string Json(const std::vector<ReadRoot>& roots)
{
    JsonArray files;
    for (const ReadRoot& root : roots) {
        JsonObject object;
        object.Add("path", root.Source.Path).Add("origin", root.Source.Origin);
        if (!root.File)
            object.Add("fault", root.Fault);
        JsonArray entries;
        if (root.File)
            for (const RootEntry& entry : root.File->Entries)
                entries.AddRaw(EntryJson(*root.File, entry));
        files.AddRaw(object.AddRaw("entries", entries.Text()).Text());
    }
    return JsonObject().Add("schema", "marvane.list/1").AddRaw("root_files", files.Text()).Text() + "\n";
}

int RunList(const Arguments& arguments, Console& console)
{
    const std::vector<ReadRoot> roots = ReadRoots(arguments.Values("--root"));
    if (arguments.Has("--json"))
        console.Write(Json(roots));
    else {
        if (roots.empty())
            throw Trouble(NoRootText());
        for (const ReadRoot& root : roots)
            console.Write((&root == &roots.front() ? "" : "\n") + RootText(root));
    }
    ComplainOfUnreadable(roots, console);
    return 0;
}

constexpr Example Examples[] = {
    {"list", "what this machine's root description files name"},
    {"list --root /opt/vendor/root.xml", "another root description file"},
};

constexpr OptionGroup Groups[] = {RootOptions, JsonOptions};

} // namespace

extern const Command ListCommand;
constinit const Command ListCommand = {
    .Name = "list",
    .Purpose = "List the D-PDU API libraries of this machine, and where Marvane is among them",
    .Takes = {.AreFiles = false},
    .Description =
        "For each entry: short name, supplier, library, version, machine type, and which of the 29 functions it "
        "lacks; where the library is Marvane, the library behind it too. Nothing is loaded and nothing changed.",
    .Examples = Examples,
    .Groups = Groups,
    .Run = RunList,
};

} // namespace marvane::tool
