// The level file with any contents: which records are enabled, and how the file is changed.
#include "logger/diagnostics/CLog.h"
#include "tests/fuzz/fuzz_target.h"

using namespace marvane;
using namespace marvane::testing;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const std::filesystem::path folder = FuzzFolder().Path() / "Kestrix" / "PDUAPI";
    std::filesystem::create_directories(folder);
    std::string bytes(reinterpret_cast<const char*>(data), size);
    WriteFileBytes(folder / "DEBUG.CFG", bytes);
    Require(CLog::EnsureLevelTable(), "there is a level table");

    // Missing entries are appended, even after an incomplete one.
    constexpr std::int32_t warn = 1;
    for (std::size_t entries = size / sizeof warn; entries < SubsystemCount; ++entries)
        bytes.append(reinterpret_cast<const char*>(&warn), sizeof warn);
    Require(FileBytes(folder / "DEBUG.CFG") == bytes, "the file is as it was, or made long enough");
    for (std::uint32_t subsystem = 0; subsystem < SubsystemCount; ++subsystem) {
        std::int32_t threshold;
        std::memcpy(&threshold, bytes.data() + subsystem * sizeof threshold, sizeof threshold);
        for (std::int32_t level = 0; level < 8; ++level)
            Require(CLog::Wanted(DebugLevel(level), Subsystem(subsystem)) == (level <= threshold),
                    "the file says which records are wanted");
    }
    Diagnose({DebugLevel::Debug, Subsystem::TIMER, "lib/CLog", "LevelFile"}, "one record");
    CLog::ReleaseLevelTable();
    return 0;
}
