#include "tests/support/plain_append.h"

#include <cstdio>

#ifdef _WIN32
#include <windows.h>
#endif

namespace marvane::testing {

#ifdef _WIN32

void AppendPlainly(const std::filesystem::path& path, std::string_view line, unsigned count)
{
    const HANDLE file = CreateFileW(path.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                    nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    DWORD written = 0;
    for (unsigned i = 0; i < count; ++i)
        WriteFile(file, line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
    CloseHandle(file);
}

#else

void AppendPlainly(const std::filesystem::path& path, std::string_view line, unsigned count)
{
    std::FILE* const file = std::fopen(path.c_str(), "a");
    for (unsigned i = 0; i < count; ++i) {
        std::fwrite(line.data(), 1, line.size(), file);
        std::fflush(file);
    }
    std::fclose(file);
}

#endif

} // namespace marvane::testing
