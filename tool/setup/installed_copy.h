// The copies of the logger library that install has made: a folder each, with a record of what was changed.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tool/setup/binary_file.h"

namespace marvane::tool {

inline constexpr const char* RecordName = "marvane-install.txt";

struct InstalledCopy
{
    std::string Folder;    ///< where the copy, its configuration and this record are
    std::string Root;      ///< path of the root description file
    std::string Entry;     ///< SHORT_NAME
    std::string OldUri;    ///< as it was written there before, in UTF-8
    std::string NewUri;    ///< as it was written there by install
    std::string Installed; ///< date and time, UTC
    std::string Version;   ///< of the copy
};

/// Text of the record: KEY=VALUE lines.
std::string RecordText(const InstalledCopy& copy);

/// The record in a folder; none if there is none, or if it is not complete.
std::optional<InstalledCopy> ReadRecord(const std::string& folder);

/// Every copy below these folders.
std::vector<InstalledCopy> InstalledCopies(const std::vector<std::string>& folders);

/// Removes the folders below these that hold nothing but libraries of copies that were in use when they were
/// uninstalled, and are no more. Returns those folders.
std::vector<std::string> RemoveLeftCopies(const std::vector<std::string>& folders);

/// The folders for copies by default, one for each machine type where they differ.
std::vector<std::string> DefaultCopyFolders();
std::string DefaultCopyFolder(Machine machine);

/// A name as a folder can have it.
std::string FolderName(const std::string& entry);

/// "2026-11-22T00:31:12Z", and "20261122-003112" in local time.
std::string TimeNow();
std::string StampNow();

} // namespace marvane::tool
