// The items that the simulated interface hands out: each is one piece of memory, counted until it is
// destroyed.
#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <mutex>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "pdu/pdu_api.h"

namespace sim {

/// Memory of one item in the making: records, arrays and texts that live and die together.
class Item
{
public:
    /// Zeroed records, one after the other; null for none.
    template <class Record> Record* New(std::size_t count = 1)
    {
        if (count == 0)
            return nullptr;
        blocks_.push_back(std::make_unique<std::byte[]>(count * sizeof(Record)));
        return reinterpret_cast<Record*>(blocks_.back().get());
    }

    UNUM8* Bytes(const std::vector<UNUM8>& bytes)
    {
        UNUM8* const copy = New<UNUM8>(bytes.size());
        if (copy)
            std::memcpy(copy, bytes.data(), bytes.size());
        return copy;
    }

    CHAR8* Text(std::string_view text)
    {
        CHAR8* const copy = New<CHAR8>(text.size() + 1);
        std::memcpy(copy, text.data(), text.size());
        return copy;
    }

private:
    std::vector<std::unique_ptr<std::byte[]>> blocks_;
};

/// The items that are in the application's hands.
class Items
{
public:
    /// Hands an item out under the address of its first record, which it returns.
    template <class Record> Record* Publish(Item&& item, Record* root)
    {
        const std::lock_guard hold(mutex_);
        open_.emplace(root, std::move(item));
        return root;
    }

    /// False if there is no such item.
    bool Destroy(void* root)
    {
        const std::lock_guard hold(mutex_);
        return open_.erase(root) != 0;
    }

    std::size_t Open() const
    {
        const std::lock_guard hold(mutex_);
        return open_.size();
    }

private:
    mutable std::mutex mutex_;
    std::unordered_map<void*, Item> open_;
};

} // namespace sim
