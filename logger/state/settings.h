// The settings store: what the configuration file said, or the defaults, for the whole process.
// Numbers are read by any thread at each test; texts belong to whoever holds LogMutex.
#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>

#include "config/keys.h"
#include "pdu/pdu_api.h"

namespace marvane {

/// The keys 24 and 25 share their storage with the event callback for the whole API: 24 is its low half,
/// 25 its high half. So each start of the logger overwrites the callback, and a header that is written
/// later shows the callback's address under these two keys.
extern std::atomic<std::uint64_t> DefaultEventCallback;

extern std::array<std::atomic<std::uint32_t>, 24> NumericSettings;

/// Guarded by LogMutex; defined in process_texts.cpp with the other strings of the process. A string that a
/// later configuration lacks keeps its former value.
using StringValues = std::array<std::string, 31>;
extern StringValues& StringSettings;

/// The value of a numeric setting now.
std::uint32_t SharedSetting(NumericKey key);
inline std::uint32_t Setting(NumericKey key)
{
    const auto index = static_cast<std::size_t>(key);
    if (index < NumericSettings.size())
        return NumericSettings[index].load(std::memory_order_relaxed);
    return SharedSetting(key);
}

void SetSetting(NumericKey key, std::uint32_t value);

/// True while anything is logged at all. Every log statement tests it; the second setting is read only if the
/// first one does not decide, which saves 18 instructions of a two-line call.
inline bool LoggingActive()
{
    return LoggingActive(Setting(NumericKey::LogEnabled), 0) ||
           LoggingActive(0, Setting(NumericKey::LogNewFileCfg));
}

/// 1 from a good start of the logger to the end of PDUDestruct.
extern std::atomic<std::uint8_t> Loaded;
inline bool IsLoaded()
{
    return Loaded.load(std::memory_order_acquire) != 0;
}

} // namespace marvane
