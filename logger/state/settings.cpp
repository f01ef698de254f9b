#include "logger/state/settings.h"

#include <algorithm>

namespace marvane {

std::atomic<std::uint64_t> DefaultEventCallback = 0;
std::array<std::atomic<std::uint32_t>, 24> NumericSettings = {};
std::atomic<std::uint8_t> Loaded = 0;

namespace {

// A further key without a place of its own would overwrite the callback.
static_assert(std::ranges::all_of(NumericKeyNames, [](const NumericKeyName& key) {
    return static_cast<std::size_t>(key.Key) < NumericSettings.size() ||
           key.Key == NumericKey::DoIPTlsRecordSizeLimit || key.Key == NumericKey::LogTlsSessionKey;
}));

int HalfShift(NumericKey key)
{
    return key == NumericKey::DoIPTlsRecordSizeLimit ? 0 : 32;
}

} // namespace

std::uint32_t SharedSetting(NumericKey key)
{
    return static_cast<std::uint32_t>(DefaultEventCallback.load(std::memory_order_acquire) >> HalfShift(key));
}

void SetSetting(NumericKey key, std::uint32_t value)
{
    const auto index = static_cast<std::size_t>(key);
    if (index < NumericSettings.size()) {
        NumericSettings[index].store(value, std::memory_order_relaxed);
        return;
    }
    const std::uint64_t half = std::uint64_t{0xFFFFFFFF} << HalfShift(key);
    const std::uint64_t bits = std::uint64_t{value} << HalfShift(key);
    std::uint64_t whole = DefaultEventCallback.load(std::memory_order_relaxed);
    while (!DefaultEventCallback.compare_exchange_weak(whole, (whole & ~half) | bits,
                                                       std::memory_order_acq_rel)) {
    }
}

} // namespace marvane
