// CheckFindings about the texts of a configuration that are paths.
#include <algorithm>

#include "tool/setup/configuration_findings.h"

namespace marvane::tool {

namespace {

constexpr std::string_view Blanks = " \t";

bool IsNameCharacter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

/// The first %NAME% of an expanded text, which the system has left because it does not know it; empty if
/// none.
std::string UnknownReference(const std::string& expanded)
{
    for (std::size_t at = expanded.find('%'); at != std::string::npos; at = expanded.find('%', at + 1)) {
        std::size_t end = at + 1;
        while (end < expanded.size() && IsNameCharacter(expanded[end]))
            ++end;
        if (end < expanded.size() && expanded[end] == '%' && end > at + 1)
            return expanded.substr(at, end - at + 1);
    }
    return {};
}

std::string ShellReference(const std::string& value)
{
    const std::size_t at = value.find('$');
    if (at == std::string::npos || at + 1 == value.size())
        return {};
    const bool hasBrace = value[at + 1] == '{';
    std::size_t end = at + (hasBrace ? 2 : 1);
    const std::size_t begin = end;
    while (end < value.size() && IsNameCharacter(value[end]))
        ++end;
    return value.substr(begin, end - begin);
}

std::string Entity(const std::string& value)
{
    for (const char* const entity : {"&amp;", "&lt;", "&gt;", "&quot;", "&apos;", "&#"})
        if (value.find(entity) != std::string::npos)
            return entity;
    return {};
}

class PathRules
{
public:
    PathRules(const Configuration& configuration, char separator, const Expander& expand)
        : configuration_(configuration), separator_(separator), expand_(expand)
    {
    }

    CheckFindings All()
    {
        for (const char* const key : {"InstalledPath", "PDUAPILibDll", LogFileDirKey.Name})
            Spelling(key);
        LibraryName();
        InstalledFolder();
        LogFolderText();
        return std::move(findings_);
    }

private:
    void Add(FindingLevel level, const std::string& key, const std::string& text)
    {
        const SettingText setting = configuration_.Text(key);
        findings_.push_back({level, key,
                             setting.Line == 0 ? text : key + " = \"" + setting.Value + "\"\n" + text,
                             setting.Line});
    }

    bool IsAbsolute(const std::string& path) const
    {
        if (separator_ == '/')
            return path.starts_with('/');
        return path.starts_with("\\\\") ||
               (path.size() > 2 && path[1] == ':' && (path[2] == '\\' || path[2] == '/'));
    }

    bool HasFolder(const std::string& path) const
    {
        return path.find_first_of(separator_ == '/' ? "/" : "/\\:") != std::string::npos;
    }

    bool EndsWithSeparator(const std::string& path) const
    {
        return path.ends_with(separator_) || (separator_ == '\\' && path.ends_with('/'));
    }

    std::string Expanded(const char* key) const { return expand_(configuration_.Text(key).Value); }

    /// What looks like a reference or an entity and is none to the library.
    void Spelling(const char* key)
    {
        const std::string value = configuration_.Text(key).Value;
        if (value.empty())
            return;
        if (Blanks.find(value.back()) != std::string_view::npos ||
            Blanks.find(value.front()) != std::string_view::npos)
            Add(FindingLevel::Error, key,
                "A blank at the beginning or the end is part of the path. Delete it.");
        if (value.starts_with('~'))
            Add(FindingLevel::Error, key,
                std::string("\"~\" is not replaced. Write ") +
                    (separator_ == '/' ? "%HOME%" : "%USERPROFILE%") + " or the whole path.");
        if (const std::string name = ShellReference(value); !name.empty())
            Add(FindingLevel::Error, key, "\"$\" begins no reference. Write %" + name + "%.");
        if (const std::string entity = Entity(value); !entity.empty())
            Add(FindingLevel::Error, key,
                "\"" + entity +
                    "\" is not replaced: the file is no XML to Marvane. Write the character itself.");
        if (const std::string reference = UnknownReference(expand_(expand_(value))); !reference.empty())
            Add(FindingLevel::Error, key,
                "The environment variable of " + reference + " is not set here: the text stays as it is.");
    }

    void LibraryName()
    {
        const SettingText name = configuration_.Text("PDUAPILibDll");
        if (name.Line == 0 || name.Value.empty())
            return Add(FindingLevel::Error, "PDUAPILibDll",
                       name.Line == 0 ? "is missing: no target library can be loaded. Add " +
                                            AttributeText("PDUAPILibDll", "...") + "."
                                      : "The name of the target library is empty.");
        const std::string path = Expanded("PDUAPILibDll");
        if (!HasFolder(path))
            return;
        if (Expanded("InstalledPath").empty()) {
            if (!IsAbsolute(path))
                Add(FindingLevel::Warning, "PDUAPILibDll",
                    "A relative path: it depends on where the application was started. Write the file name alone, "
                    "and its folder in InstalledPath.");
        } else if (IsAbsolute(path))
            Add(FindingLevel::Error, "PDUAPILibDll",
                "is a whole path, and InstalledPath is put before it. Write the file name alone.");
        else
            Add(FindingLevel::Warning, "PDUAPILibDll",
                "holds a folder, and InstalledPath is put before it. Write the file name alone, and the whole folder "
                "in InstalledPath.");
    }

    void InstalledFolder()
    {
        const SettingText installed = configuration_.Text("InstalledPath");
        const std::string folder = Expanded("InstalledPath");
        if (folder.empty()) {
            if (!HasFolder(Expanded("PDUAPILibDll")))
                Add(FindingLevel::Warning, "InstalledPath",
                    std::string(installed.Line == 0 ? "is missing" : "is empty") +
                        ": the system's search finds some library of that name. Write the folder, or \".\" for the "
                        "folder of Marvane.");
            return;
        }
        if (IsStandAlone(folder))
            return;
        if (folder == "./" || folder == ".\\")
            return Add(
                FindingLevel::Error, "InstalledPath",
                "This is the folder in which the application was started. Write \".\" for the folder of Marvane.");
        if (!EndsWithSeparator(folder))
            Add(FindingLevel::Error, "InstalledPath",
                "The separator is missing at the end. Write \"" + installed.Value + separator_ + "\".");
        if (!IsAbsolute(folder))
            Add(FindingLevel::Warning, "InstalledPath",
                "A relative folder: it depends on where the application was started. Write the whole path.");
    }

    void LogFolderText()
    {
        const char* const key = LogFileDirKey.Name;
        const SettingText setting = configuration_.Text(key);
        if (setting.Line == 0)
            return Add(FindingLevel::Error, key,
                       "is missing: Marvane does not start, and no target library is loaded. Add " +
                           AttributeText(key, separator_ == '/' ? "/var/log/marvane/" : "C:\\Logs\\") + ".");
        const std::string folder = expand_(expand_(setting.Value));
        if (folder.empty())
            return Add(FindingLevel::Error, key, "The folder is empty: files are made in the root folder.");
        if (folder.size() > MadeFolderLimit)
            Add(FindingLevel::Error, key,
                "The path has " + std::to_string(folder.size()) + " bytes; more than 255 are cut.");
        if (!IsAbsolute(folder))
            Add(FindingLevel::Warning, key,
                "A relative folder: it depends on where the application was started. Write the whole path.");
        else if (separator_ == '\\' && folder.starts_with("\\\\"))
            Add(FindingLevel::Warning, key, "A folder on the network: each line of the log waits for it.");
        if (separator_ == '\\' && folder.find('/') != std::string::npos)
            Add(FindingLevel::Warning, key,
                "Forward slashes: only the last folder of the path can be made. Write \"\\\".");
        const bool ownComms = (configuration_.Number(NumericKey::LogCommsFile).Value & 1) != 0 &&
                              configuration_.Number(NumericKey::LogDoIPComms).Value != 0;
        if (ownComms && !EndsWithSeparator(folder))
            Add(FindingLevel::Warning, key,
                std::string(
                    "Without a separator at the end the comms log is made beside the folder. Write \"") +
                    setting.Value + separator_ + "\".");
    }

    const Configuration& configuration_;
    char separator_;
    const Expander& expand_;
    CheckFindings findings_;
};

} // namespace

CheckFindings PathFindings(const Configuration& configuration, char separator, const Expander& expand)
{
    return PathRules(configuration, separator, expand).All();
}

} // namespace marvane::tool
