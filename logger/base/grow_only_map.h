// A map that many threads read and extend without a lock.
#pragma once

#include <array>
#include <atomic>
#include <functional>
#include <utility>

namespace marvane {

/// Entries are added and never taken away, so a value's address stays good for ever. The value type has to be
/// safe for many threads by itself. It has no destructor on purpose: a thread of the target library may still
/// call while the process ends, and must find the entries.
template <class Key, class Value, std::size_t Buckets = 64> class GrowOnlyMap
{
public:
    struct Entry
    {
        const Key Name;
        Value Held = {};
    };

    constexpr GrowOnlyMap() = default;
    GrowOnlyMap(const GrowOnlyMap&) = delete;
    GrowOnlyMap& operator=(const GrowOnlyMap&) = delete;

    /// The value of a key, or null. `Like` is anything that compares and hashes as the key does.
    template <class Like> const Value* Find(const Like& key) const
    {
        const Node* const node = Search(Bucket(key).load(std::memory_order_acquire), nullptr, key);
        return node ? &node->Kept.Held : nullptr;
    }

    /// The entry of a key, which is added with an empty value if it is new.
    template <class Like> Entry& FindOrInsert(const Like& key)
    {
        std::atomic<Node*>& bucket = Bucket(key);
        Node* head = bucket.load(std::memory_order_acquire);
        if (Node* const node = Search(head, nullptr, key))
            return node->Kept;
        Node* const added = new Node(key, head);
        while (!bucket.compare_exchange_weak(head, added, std::memory_order_acq_rel)) {
            // Others were quicker: only what they put in front is new.
            if (Node* const node = Search(head, added->Next, key)) {
                delete added;
                return node->Kept;
            }
            added->Next = head;
        }
        return added->Kept;
    }

    /// Calls `visit` with every entry.
    template <class Visit> void ForEach(Visit visit)
    {
        for (std::atomic<Node*>& bucket : buckets_)
            for (Node* node = bucket.load(std::memory_order_acquire); node; node = node->Next)
                visit(node->Kept);
    }

private:
    struct Node
    {
        template <class Like> Node(const Like& key, Node* next) : Kept{Key(key)}, Next(next) {}
        Entry Kept;
        Node* Next;
    };

    template <class Like> static Node* Search(Node* node, const Node* end, const Like& key)
    {
        while (node != end && !(node->Kept.Name == key))
            node = node->Next;
        return node == end ? nullptr : node;
    }

    template <class Like> static std::size_t Index(const Like& key)
    {
        return std::hash<Like>()(key) % Buckets;
    }
    template <class Like> const std::atomic<Node*>& Bucket(const Like& key) const
    {
        return buckets_[Index(key)];
    }
    template <class Like> std::atomic<Node*>& Bucket(const Like& key) { return buckets_[Index(key)]; }

    std::array<std::atomic<Node*>, Buckets> buckets_ = {};
};

} // namespace marvane
