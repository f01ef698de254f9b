// What an install is to do: read, decided and checked before anything is written.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "tool/setup/install.h"
#include "tool/setup/installed_copy.h"
#include "tool/setup/root_sources.h"

namespace marvane::tool {

/// What is to be done for one entry.
struct EntryPlan
{
    std::size_t Root = 0;
    std::size_t Entry = 0;
    std::string Name;
    std::string Vendor;      ///< path of the vendor's library
    std::string Copy;        ///< path of the copy of the logger library
    std::string CopiedBytes; ///< bytes of the copy
    std::string Configuration;
    bool WritesRecord = true;
    bool WritesLibrary = true;
    bool WritesConfiguration = true;
    bool ChangesUri = true;
    InstalledCopy Record;
};

/// A root description file that gets other bytes.
struct RootChange
{
    std::string Target; ///< its path without links
    std::string Bytes;  ///< its new ones
};

struct InstallPlan
{
    std::vector<ReadRoot> Roots;
    std::vector<EntryPlan> Entries;
    std::map<std::size_t, RootChange> Changes; ///< by the index of the root description file
    std::string Notes;                         ///< lines for the report
};

/// Throws InstallRefused for what can't be done.
InstallPlan PlanInstall(const InstallOptions& options);

/// A name in quotes, as messages have it.
std::string Quoted(const std::string& name);

} // namespace marvane::tool
