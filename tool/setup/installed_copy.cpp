#include "tool/setup/installed_copy.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <utility>

#include "platform/clock.h"
#include "platform/files.h"
#include "platform/library.h"
#include "platform/narrow_text.h"
#include "tool/setup/file_changes.h"
#include "tool/setup/setup_files.h"

namespace marvane::tool {

namespace {

struct RecordField
{
    const char* Key;
    std::string InstalledCopy::*Member;
};

constexpr std::array<RecordField, 6> Fields = {{
    {"root", &InstalledCopy::Root},
    {"entry", &InstalledCopy::Entry},
    {"old_uri", &InstalledCopy::OldUri},
    {"new_uri", &InstalledCopy::NewUri},
    {"installed", &InstalledCopy::Installed},
    {"version", &InstalledCopy::Version},
}};

/// The value of a key, from after its "=" to the end of the line.
std::optional<std::string> FieldOf(const std::string& text, const std::string& key)
{
    const std::string begin = "\n" + key + "=";
    const std::string lines = "\n" + text;
    const std::size_t at = lines.find(begin);
    if (at == std::string::npos)
        return std::nullopt;
    const std::size_t value = at + begin.size();
    const std::size_t end = lines.find('\n', value);
    if (end == std::string::npos)
        return std::nullopt;
    return lines.substr(value, end - value);
}

} // namespace

std::string RecordText(const InstalledCopy& copy)
{
    std::string text;
    for (const RecordField& field : Fields)
        text += std::string(field.Key) + "=" + copy.*field.Member + "\n";
    return text;
}

std::optional<InstalledCopy> ReadRecord(const std::string& folder)
{
    const auto text = ReadFileBytes(folder + platform::PathSeparator + RecordName, 1 << 20);
    if (!text)
        return std::nullopt;
    InstalledCopy copy;
    copy.Folder = folder;
    for (const RecordField& field : Fields) {
        std::optional<std::string> value = FieldOf(*text, field.Key);
        if (!value)
            return std::nullopt;
        copy.*field.Member = std::move(*value);
    }
    return copy;
}

std::vector<InstalledCopy> InstalledCopies(const std::vector<std::string>& folders)
{
    std::vector<InstalledCopy> copies;
    for (const std::string& folder : folders)
        for (const std::string& name : NamesIn(folder))
            if (std::optional<InstalledCopy> copy = ReadRecord(folder + platform::PathSeparator + name))
                copies.push_back(std::move(*copy));
    return copies;
}

std::vector<std::string> RemoveLeftCopies(const std::vector<std::string>& folders)
{
    std::vector<std::string> removed;
    for (const std::string& folder : folders)
        for (const std::string& name : NamesIn(folder)) {
            const std::string copy = folder + platform::PathSeparator + name;
            const std::vector<std::string> files = NamesIn(copy);
            const bool isLeft =
                !files.empty() && std::all_of(files.begin(), files.end(), [](const std::string& file) {
                    return file.starts_with(platform::OwnLibraryName) && file.ends_with(OldMark);
                });
            if (!isLeft)
                continue;
            RemoveOldFiles(copy);
            std::error_code notEmpty;
            if (std::filesystem::remove(FilePath(copy), notEmpty))
                removed.push_back(copy);
        }
    return removed;
}

std::string DefaultCopyFolder(Machine machine)
{
    if (platform::PathSeparator == '/')
        return "/usr/local/lib/marvane";
    // A 32-bit process sees the folder for 32-bit programs under the first name too.
    const bool isOther = machine == Machine::X86;
    const std::string folder = platform::ExpandUtf8(isOther ? "%ProgramFiles(x86)%" : "%ProgramW6432%");
    return (folder.find('%') == std::string::npos ? folder : platform::ExpandUtf8("%ProgramFiles%")) +
           "\\Marvane\\installed";
}

std::vector<std::string> DefaultCopyFolders()
{
    std::vector<std::string> folders = {DefaultCopyFolder(Machine::X64)};
    if (std::string other = DefaultCopyFolder(Machine::X86); other != folders[0])
        folders.push_back(std::move(other));
    return folders;
}

std::string FolderName(const std::string& entry)
{
    std::string name;
    for (const char character : entry) {
        const bool isSafe = static_cast<unsigned char>(character) >= ' ' &&
                            std::string_view("<>:\"/\\|?*").find(character) == std::string_view::npos;
        name += isSafe ? character : '_';
    }
    // A dot or a blank at its end is no part of a name on Windows; "." and ".." are no names at all.
    while (!name.empty() && (name.back() == '.' || name.back() == ' '))
        name.back() = '_';
    return name.empty() ? "_" : name;
}

std::string TimeNow()
{
    const std::tm now = platform::UtcCalendarTime(platform::Now().Second);
    char text[40];
    return {text, std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &now)};
}

std::string StampNow()
{
    const std::tm now = platform::LocalCalendarTime();
    char text[40];
    return {text, std::strftime(text, sizeof text, "%Y%m%d-%H%M%S", &now)};
}

} // namespace marvane::tool
