#include "tool/setup/surrounding_findings.h"

#include <algorithm>

#include "platform/files.h"
#include "platform/library_users.h"
#include "platform/narrow_text.h"
#include "tool/setup/file_uri.h"
#include "tool/setup/setup_files.h"

namespace marvane::tool {

namespace {

constexpr std::size_t MostRecords = 3;

/// The message of a warning or error, with its time; empty for every other record.
std::string RecordMessage(const std::string& record)
{
    // "09:14:02.123456 WARN    1a2c:FILE:LINE:FUNCTION:MESSAGE", where FUNCTION may hold "::".
    const bool isTrouble = record.size() > 24 &&
                           (record.compare(15, 8, " WARN   ") == 0 || record.compare(15, 8, " ERROR  ") == 0);
    if (!isTrouble || record.ends_with(":Not an attribute"))
        return {};
    std::size_t at = 23;
    for (int column = 0; column < 3 && at != std::string::npos; ++column)
        at = record.find(':', at + 1);
    if (at == std::string::npos)
        return {};
    std::size_t end = at + 1;
    while ((end = record.find(':', end)) != std::string::npos && record.compare(end, 2, "::") == 0)
        end += 2;
    return end == std::string::npos ? std::string() : record.substr(0, 8) + " UTC  " + record.substr(end + 1);
}

} // namespace

CheckFindings OldProcessFindings(const std::string& marvane, const std::string& target)
{
    CheckFindings findings;
    if (target.empty()) // of a configuration that names none
        return findings;
    const std::vector<platform::LibraryUser> ours = platform::LibraryUsers(marvane);
    for (const platform::LibraryUser& user : platform::LibraryUsers(target)) {
        const bool goesThroughUs = std::any_of(
            ours.begin(), ours.end(), [&](const platform::LibraryUser& own) { return own.Id == user.Id; });
        if (!goesThroughUs)
            findings.push_back({FindingLevel::Warning, "old process",
                                user.Name + " (" + std::to_string(user.Id) +
                                    ") has loaded the target library without Marvane: start it again.",
                                0});
    }
    return findings;
}

CheckFindings DiagnosticLogFindings()
{
    const std::string path =
        platform::ExpandUtf8(std::string("%TEMP%") + platform::PathSeparator + "d-pdu-api-logger.log");
    const std::string text = ReadFileBytes(path, 1 << 24).value_or("");
    std::vector<std::string> messages;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find('\n', at), text.size());
        std::string record = text.substr(at, end - at);
        if (record.ends_with('\r'))
            record.pop_back();
        if (std::string message = RecordMessage(record); !message.empty())
            messages.push_back(std::move(message));
        at = end + 1;
    }
    if (messages.empty())
        return {};
    std::string shown = path;
    for (std::size_t i = messages.size() - std::min(messages.size(), MostRecords); i < messages.size(); ++i)
        shown += "\n" + messages[i];
    return {{FindingLevel::Note, "diagnostic log", shown, 0}};
}

CheckFindings SpellingFindings(const RootEntry& entry)
{
    const EntryLibrary library = LibraryOf(entry);
    if (library.Path.empty() || *entry.Uri == UriOfPath(library.Path, platform::PathSeparator))
        return {};
    return {{FindingLevel::Note, "root file",
             "not every application understands the URI \"" + *entry.Uri + "\"; all of them take \"" +
                 UriOfPath(library.Path, platform::PathSeparator) + "\"",
             0}};
}

} // namespace marvane::tool
