// Runs a fuzz target on all files of the given folders, without a fuzzer: its corpus as an ordinary test.
#include <algorithm>
#include <cstdio>

#include "tests/fuzz/fuzz_target.h"

namespace {

/// Returns the number of files.
int Replay(const std::filesystem::path& folder)
{
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    for (const std::filesystem::path& file : files) {
        const std::string bytes = marvane::testing::FileBytes(file);
        // Memory of exactly this size, as the fuzzer allocates it.
        const std::vector<std::uint8_t> data(bytes.begin(), bytes.end());
        std::printf("%s\n", file.string().c_str());
        std::fflush(stdout);
        LLVMFuzzerTestOneInput(data.data(), data.size());
    }
    return static_cast<int>(files.size());
}

} // namespace

int main(int count, char** arguments)
{
    int files = 0;
    for (int i = 1; i < count; ++i)
        files += Replay(arguments[i]);
    std::printf("%d files\n", files);
    // A missing corpus is an error.
    return files > 0 ? 0 : 1;
}
