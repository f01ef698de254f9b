// The items that the simulated interface gives to the application, counted until it destroys them.
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

/// Memory of one item: records, arrays and strings that are freed together.
class Item
{
public:
    /// An array of zeroed records; null for a count of 0.
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

/// The items that the application has not destroyed yet. Thread-safe.
class Items
{
public:
    /// Takes ownership of an item and registers it by the address of its first record, which it returns.
    template <class Record> Record* Publish(Item&& item, Record* root)
    {
        const std::lock_guard hold(mutex_);
        open_.emplace(root, std::move(item));
        return root;
    }

    /// Frees an item. False if there is none at that address.
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
