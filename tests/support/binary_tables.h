// Reads the tables of a shared library's file, PE or 64-bit ELF.
#pragma once

#include <string>
#include <vector>

namespace marvane::testing {

/// Names of the functions that a library exports, sorted.
std::vector<std::string> ExportedNames(const std::string& path);

/// Names of the libraries that a PE file imports.
std::vector<std::string> ImportedLibraries(const std::string& path);

/// The hardening flags of a library's file, as one text: "dynamic base, no execution, high entropy" for a PE
/// file, "bound at load, read-only relocations, no executable stack" for an ELF file, if all are set.
std::string LinkerGuards(const std::string& path);

} // namespace marvane::testing
