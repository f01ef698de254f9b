#include "logger/base/grow_only_map.h"

#include <map>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace marvane {
namespace {

// The maps keep their entries for good, so these stay reachable to the end too.
using Numbers = GrowOnlyMap<unsigned, std::atomic<unsigned>>;
using Crowded = GrowOnlyMap<unsigned, std::atomic<unsigned>, 0>;

TEST(GrowOnlyMap, FindsNothingInAnEmptyMap)
{
    static Numbers map;
    EXPECT_EQ(map.Find(0u), nullptr);
    EXPECT_EQ(map.Find(7u), nullptr);
}

TEST(GrowOnlyMap, ANewEntryIsEmptyAndIsFoundUnderItsKeyAlone)
{
    static Numbers map;
    auto& entry = map.FindOrInsert(7u);
    EXPECT_EQ(entry.key, 7u);
    EXPECT_EQ(entry.value, 0u);
    entry.value = 70;
    ASSERT_NE(map.Find(7u), nullptr);
    EXPECT_EQ(*map.Find(7u), 70u);
    EXPECT_EQ(map.Find(8u), nullptr);
    EXPECT_EQ(map.Find(7u + 4096u), nullptr);
}

TEST(GrowOnlyMap, AKnownKeyGivesTheEntryThatIsThere)
{
    static Numbers map;
    auto& first = map.FindOrInsert(7u);
    first.value = 70;
    EXPECT_EQ(&map.FindOrInsert(7u), &first);
    EXPECT_EQ(map.Find(7u), &first.value);
    EXPECT_EQ(first.value, 70u);
}

TEST(GrowOnlyMap, EntriesOfOneBucketStandSideBySideAndStayWhereTheyAre)
{
    static Crowded map;
    std::vector<std::atomic<unsigned>*> places;
    for (unsigned key = 0; key < 100; ++key) {
        places.push_back(&map.FindOrInsert(key).value);
        *places.back() = key * 2;
    }
    for (unsigned key = 0; key < 100; ++key) {
        EXPECT_EQ(map.Find(key), places[key]);
        EXPECT_EQ(*places[key], key * 2);
    }
    EXPECT_EQ(map.Find(100u), nullptr);
}

TEST(GrowOnlyMap, EveryEntryIsVisitedOnce)
{
    static Numbers map;
    std::map<unsigned, unsigned> expected;
    for (unsigned key = 0; key < 1000; key += 7) {
        map.FindOrInsert(key).value = key + 1;
        expected[key] = key + 1;
    }
    std::map<unsigned, unsigned> visited;
    unsigned visits = 0;
    map.ForEach([&](Numbers::Entry& entry) {
        visited[entry.key] = entry.value;
        ++visits;
    });
    EXPECT_EQ(visited, expected);
    EXPECT_EQ(visits, expected.size());
}

TEST(GrowOnlyMap, ATextKeyIsFoundByAViewOfIt)
{
    static GrowOnlyMap<std::string, std::atomic<unsigned>> map;
    map.FindOrInsert(std::string_view("first")).value = 1;
    map.FindOrInsert(std::string_view("")).value = 2;
    ASSERT_NE(map.Find(std::string_view("first")), nullptr);
    EXPECT_EQ(*map.Find(std::string_view("first")), 1u);
    EXPECT_EQ(*map.Find(std::string_view("")), 2u);
    EXPECT_EQ(map.Find(std::string_view("First")), nullptr);
}

TEST(GrowOnlyMap, AfterClearItIsEmptyAndUsable)
{
    static Crowded map;
    for (unsigned key = 0; key < 10; ++key)
        map.FindOrInsert(key).value = 1;
    map.Clear();
    EXPECT_EQ(map.Find(7u), nullptr);
    EXPECT_EQ(map.FindOrInsert(7u).value, 0u);
    map.Clear();
}

/// A key that counts how often it is compared.
struct CountingKey
{
    std::uint64_t Number;
    inline static std::size_t Comparisons = 0;
    bool operator==(const CountingKey& other) const
    {
        ++Comparisons;
        return Number == other.Number;
    }
};

} // namespace

template <> struct KeyNumber<CountingKey>
{
    std::uint64_t operator()(const CountingKey& key) const { return KeyNumber<std::uint64_t>()(key.Number); }
};

namespace {

TEST(GrowOnlyMap, TenThousandHandlesThatAreMultiplesOfAPowerOfTwoAreSpreadOut)
{
    for (const std::uint64_t step : {1u, 64u, 4096u, 65536u, 1u << 24}) {
        GrowOnlyMap<CountingKey, char> map;
        constexpr std::size_t count = 10000;
        for (std::uint64_t i = 0; i < count; ++i)
            map.FindOrInsert(CountingKey{i * step});
        CountingKey::Comparisons = 0;
        for (std::uint64_t i = 0; i < count; ++i)
            EXPECT_NE(map.Find(CountingKey{i * step}), nullptr);
        // On average a list is two and a half entries long.
        EXPECT_LT(CountingKey::Comparisons, 5 * count) << step;
        map.Clear();
    }
}

/// Eight threads insert the same keys at once and count each in its entry; none may be lost or doubled.
template <class Map> void CountAtOnce(Map& map, unsigned keys)
{
    constexpr unsigned threads = 8;
    std::atomic<unsigned> waiting = threads;
    std::vector<std::thread> running;
    for (unsigned thread = 0; thread < threads; ++thread)
        running.emplace_back([&, thread] {
            --waiting;
            while (waiting != 0)
                std::this_thread::yield();
            for (unsigned i = 0; i < keys; ++i) {
                // Half of them come from the other end.
                const unsigned key = thread % 2 == 0 ? i : keys - 1 - i;
                ++map.FindOrInsert(key).value;
                EXPECT_NE(map.Find(key), nullptr);
            }
        });
    for (std::thread& thread : running)
        thread.join();
    unsigned entries = 0;
    map.ForEach([&](auto& entry) {
        EXPECT_EQ(entry.value, threads) << entry.key;
        ++entries;
    });
    EXPECT_EQ(entries, keys);
}

TEST(GrowOnlyMap, ThreadsThatInsertAtOnceAgreeOnOneEntryForAKey)
{
    static Numbers map;
    CountAtOnce(map, 2000);
}

TEST(GrowOnlyMap, ThreadsThatMeetInOneBucketAgreeToo)
{
    static Crowded map;
    CountAtOnce(map, 300);
}

} // namespace
} // namespace marvane
