// The tables of a shared library's file, read from its bytes: a PE or a 64-bit ELF file.
#pragma once

#include <string>
#include <vector>

namespace marvane::testing {

/// Names of the functions that a library defines for others, sorted.
std::vector<std::string> ExportedNames(const std::string& path);

/// Names of the libraries that a PE file imports.
std::vector<std::string> ImportedLibraries(const std::string& path);

/// The guards that a library's file asks the system for, in one text: "dynamic base, no execution, high
/// entropy" of a PE file, "bound at load, read-only relocations, no executable stack" of an ELF file.
std::string LinkerGuards(const std::string& path);

} // namespace marvane::testing
