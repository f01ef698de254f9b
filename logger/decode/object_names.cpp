// Short names of objects.
#include "logger/decode/object_names.h"

#include <array>
#include <atomic>
#include <string>

#include "logger/base/grow_only_map.h"
#include "logger/state/at_unloading.h"

namespace marvane {

namespace {

using NameSlot = std::atomic<const std::string*>;

constinit std::array<GrowOnlyMap<UNUM32, NameSlot>, 7> ObjectNameMaps;

// Each name is stored once, until the library is unloaded. So a name that a thread is reading outlives
// ClearObjectNames, and learning the same names in session after session takes no more memory.
constinit GrowOnlyMap<std::string, char> KeptTexts;

const AtUnloading FreeNames([] {
    for (auto& map : ObjectNameMaps)
        map.Clear();
    KeptTexts.Clear();
});

ObjectNameMap MapOf(T_PDU_OBJT objectType)
{
    const UNUM32 index = objectType - PDU_OBJT_PROTOCOL;
    const auto others = static_cast<UNUM32>(ObjectNameMap::OtherObjectNames);
    return static_cast<ObjectNameMap>(index < others ? index : others);
}

} // namespace

std::string_view ObjectName(ObjectNameMap map, UNUM32 id, std::string_view notFound)
{
    const NameSlot* const slot = ObjectNameMaps[static_cast<std::size_t>(map)].Find(id);
    const std::string* const name = slot ? slot->load(std::memory_order_acquire) : nullptr;
    return name ? *name : notFound;
}

void RecordObjectName(T_PDU_OBJT objectType, UNUM32 id, std::string_view shortName)
{
    const std::string& kept = KeptTexts.FindOrInsert(shortName).key;
    NameSlot& slot = ObjectNameMaps[static_cast<std::size_t>(MapOf(objectType))].FindOrInsert(id).value;
    const std::string* none = nullptr;
    slot.compare_exchange_strong(none, &kept, std::memory_order_acq_rel);
}

void ClearObjectNames()
{
    for (auto& map : ObjectNameMaps)
        map.ForEach([](auto& entry) { entry.value.store(nullptr, std::memory_order_release); });
}

} // namespace marvane
