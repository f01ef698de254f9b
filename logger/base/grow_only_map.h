// A map that many threads read and extend without a lock.
//
// Names and callbacks are looked up on every decoded line and every event, from any thread, and LogMutex must
// not be held there: the map is read without a lock, and an insertion is one compare-and-swap at the head of
// a bucket's list. There are enough buckets for what a large session learns, and the hash is mixed, since
// handles tend to be multiples of a power of two: with 64 buckets and no mixing, 10,000 links cost 13 to 18
// us an event, now 0.1.
#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <type_traits>

namespace marvane {

/// The number by which a key is spread. Integers are taken whole: with 32 bits, std::hash would cut them.
template <class Key> struct KeyNumber
{
    std::uint64_t operator()(const Key& key) const
    {
        if constexpr (std::is_integral_v<Key>)
            return key;
        else
            return std::hash<Key>()(key);
    }
};

/// Entries are added and, until Clear, never removed, so a value's address stays valid. The value type must
/// be safe for many threads by itself. No destructor on purpose: a thread of the target library may still
/// call while the process ends, and must find the entries.
template <class Key, class Value, unsigned BucketBits = 12> class GrowOnlyMap
{
public:
    struct Entry
    {
        const Key key;
        Value value = {};
    };

    constexpr GrowOnlyMap() = default;
    GrowOnlyMap(const GrowOnlyMap&) = delete;
    GrowOnlyMap& operator=(const GrowOnlyMap&) = delete;

    /// The value of a key, or null. `Like` is anything that compares and hashes as the key does.
    template <class Like> const Value* Find(const Like& key) const
    {
        const Node* const node = Search(Bucket(key).load(std::memory_order_acquire), nullptr, key);
        return node ? &node->entry.value : nullptr;
    }

    /// The entry of a key, which is added with an empty value if it is new.
    template <class Like> Entry& FindOrInsert(const Like& key)
    {
        std::atomic<Node*>& bucket = Bucket(key);
        Node* head = bucket.load(std::memory_order_acquire);
        if (Node* const node = Search(head, nullptr, key))
            return node->entry;
        Node* const added = new Node(key, head);
        while (!bucket.compare_exchange_weak(head, added, std::memory_order_acq_rel)) {
            // Another thread inserted first: only what it put before the old head is new.
            if (Node* const node = Search(head, added->next, key)) {
                delete added;
                return node->entry;
            }
            added->next = head;
        }
        return added->entry;
    }

    /// Calls `visit` with every entry.
    template <class Visit> void ForEach(Visit visit)
    {
        for (std::atomic<Node*>& bucket : buckets_)
            for (Node* node = bucket.load(std::memory_order_acquire); node; node = node->next)
                visit(node->entry);
    }

    /// Removes and frees all entries. No other thread may use the map meanwhile.
    void Clear()
    {
        for (std::atomic<Node*>& bucket : buckets_)
            for (Node* node = bucket.exchange(nullptr); node;) {
                Node* const next = node->next;
                delete node;
                node = next;
            }
    }

private:
    struct Node
    {
        template <class Like> Node(const Like& key, Node* following) : entry{Key(key)}, next(following) {}
        Entry entry;
        Node* next;
    };

    /// Searches the list from `node` on, up to `end`.
    template <class Like> static Node* Search(Node* node, const Node* end, const Like& key)
    {
        while (node != end && !(node->entry.key == key))
            node = node->next;
        return node == end ? nullptr : node;
    }

    /// The highest bits of a product with the golden ratio depend on all bits of the number.
    template <class Like> static std::size_t Index(const Like& key)
    {
        constexpr std::uint64_t goldenRatio = 0x9E3779B97F4A7C15;
        return static_cast<std::size_t>(KeyNumber<Like>()(key) * goldenRatio >> 1 >> (63 - BucketBits));
    }
    template <class Like> const std::atomic<Node*>& Bucket(const Like& key) const
    {
        return buckets_[Index(key)];
    }
    template <class Like> std::atomic<Node*>& Bucket(const Like& key) { return buckets_[Index(key)]; }

    std::array<std::atomic<Node*>, std::size_t{1} << BucketBits> buckets_ = {};
};

} // namespace marvane
