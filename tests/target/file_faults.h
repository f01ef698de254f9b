// Faults of the file system for MarvaneWithFileFaults, the logger library linked with wrappers of the system
// calls on files. Linux only.
#pragma once

namespace marvane::testing {

/// Result of FileFaults::Choose besides an error number: nothing, or only a part of the text is written.
inline constexpr int NoFault = 0;
inline constexpr int ShortWrite = -1;

/// Shared by the test and the library. Change it only while the library runs no call.
struct FileFaults
{
    void* Context = nullptr;
    /// True for the files and folders whose calls may fail. Null: none.
    bool (*Concerns)(void* context, const char* path) = nullptr;
    /// Chooses the fault of one system call on such a file: NoFault, an error number, or ShortWrite.
    int (*Choose)(void* context, const char* call) = nullptr;
};

/// Exported as "PDUFileFaults".
using GetFileFaults_t = FileFaults* (*)();

} // namespace marvane::testing
