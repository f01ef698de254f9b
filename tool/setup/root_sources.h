// Where the root description files of this machine are.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "tool/setup/binary_file.h"
#include "tool/setup/root_file.h"

namespace marvane::tool {

struct RootSource
{
    std::string Path;
    std::string Origin;           ///< who names it: "HKLM\SOFTWARE\D-PDU API", "--root"
    std::optional<Machine> Width; ///< of the libraries, where the registry view says so
};

/// The files given, else those of this machine: both views of the registry, /etc/pdu_api_root.xml on Linux. A
/// file that both views name is there once, without a width.
std::vector<RootSource> RootSources(const std::vector<std::string>& given);

/// A root description file as it was read, or why it was not.
struct ReadRoot
{
    RootSource Source;
    std::optional<RootFile> File;
    std::string Fault;
};
std::vector<ReadRoot> ReadRoots(const std::vector<std::string>& given);

/// Throws Trouble if one of the files can't be read.
void RequireReadable(const std::vector<ReadRoot>& roots);

/// Passes on the entries of a name, in order, until one is taken. False if none was. Throws Trouble if a
/// given file can't be read, or if it comes to one of the machine's that can't.
bool FindEntry(const std::vector<std::string>& given, const std::string& name,
               const std::function<bool(const RootSource&, const RootEntry&)>& isTaken);
/// What the user is told if there is no entry of a name: which there are.
std::string NoEntryText(const std::vector<ReadRoot>& roots, const std::string& name);

/// What the user is told if this machine names no root description file: where it was looked for.
std::string NoRootText();

/// What an entry leads to.
struct EntryLibrary
{
    std::string Path;  ///< empty if the URI is no usable one
    std::string Fault; ///< then: what is wrong with it
};
EntryLibrary LibraryOf(const RootEntry& entry);

/// Path of its module description file; empty if it names none by a usable URI.
std::string ModuleDescriptionOf(const RootEntry& entry);

} // namespace marvane::tool
