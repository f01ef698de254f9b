// A D-PDU API library, loaded by path.
#pragma once

#include <stdexcept>
#include <string>

#include "pdu/functions.h"

namespace diag {

/// An error with a message for the user.
struct Failure : std::runtime_error
{
    using std::runtime_error::runtime_error;
};

/// The functions of a loaded library. None is null but that of the extension, which is not used here.
using Api = marvane::FunctionTable;

/// Loads a library and finds its functions. Throws Failure if it can't be loaded or lacks one. The library is
/// never unloaded.
Api LoadApi(const std::string& path);

/// Name of a common status, else its number in hexadecimal.
std::string StatusName(T_PDU_ERROR status);

// One source file per system.

/// Loads a library. On failure returns null and sets `error` to the system's message.
void* OpenLibrary(const std::string& path, std::string& error);
/// Address of a function, or null.
void* FunctionAddress(void* library, const char* name);

} // namespace diag
