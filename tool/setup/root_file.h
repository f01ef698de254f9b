// The root description file: the list of the D-PDU API libraries of a machine. Read as it is; changed in the
// bytes of a LIBRARY_FILE URI and nowhere else.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "tool/xml/xml_scanner.h"

namespace marvane::tool {

inline constexpr std::size_t RootFileLimit = 16u << 20;

/// One MVCI_PDU_API element.
struct RootEntry
{
    std::string ShortName; ///< without blanks around it
    std::string Supplier;
    std::string Description;
    std::size_t Line = 0;
    std::size_t FileElements = 0; ///< how many LIBRARY_FILE elements it has
    bool Nested = false;          ///< not a child of the root element
    bool HasUri = false;
    std::string RawUri;                           ///< as it is written, in UTF-8
    std::optional<std::string> Uri;               ///< decoded; none if it holds an unknown entity
    std::optional<std::string> ModuleDescription; ///< decoded URI of MODULE_DESCRIPTION_FILE
    char Quote = '"';
    XmlRange UriText;  ///< of RawUri in the text
    XmlRange UriBytes; ///< of RawUri in the file
};

struct RootFile
{
    std::string Bytes;
    XmlText Text;
    std::vector<RootEntry> Entries;
};

/// Reads the bytes of a root description file. Throws XmlError with the line in its message if they are none.
RootFile ParseRootFile(std::string bytes);

/// A new value for the URI of an entry, already escaped for its quotes.
struct UriChange
{
    std::size_t Entry = 0; ///< index in RootFile::Entries
    std::string RawUri;    ///< UTF-8
};

/// The bytes of the file with those values in place. The result is read again: it differs in these values
/// alone, or XmlError is thrown.
std::string WithUris(const RootFile& file, std::span<const UriChange> changes);

/// Why the URI of an entry can't be changed, as a sentence about the entry; empty if it can.
std::string ReasonNotToChange(const RootFile& file, const RootEntry& entry);

} // namespace marvane::tool
