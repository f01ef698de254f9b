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
using Crowded = GrowOnlyMap<unsigned, std::atomic<unsigned>, 1>;

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
    EXPECT_EQ(entry.Name, 7u);
    EXPECT_EQ(entry.Held, 0u);
    entry.Held = 70;
    ASSERT_NE(map.Find(7u), nullptr);
    EXPECT_EQ(*map.Find(7u), 70u);
    // The second shares the first one's bucket.
    EXPECT_EQ(map.Find(8u), nullptr);
    EXPECT_EQ(map.Find(7u + 64u), nullptr);
}

TEST(GrowOnlyMap, AKnownKeyGivesTheEntryThatIsThere)
{
    static Numbers map;
    auto& first = map.FindOrInsert(7u);
    first.Held = 70;
    EXPECT_EQ(&map.FindOrInsert(7u), &first);
    EXPECT_EQ(map.Find(7u), &first.Held);
    EXPECT_EQ(first.Held, 70u);
}

TEST(GrowOnlyMap, EntriesOfOneBucketStandSideBySideAndStayWhereTheyAre)
{
    static Crowded map;
    std::vector<std::atomic<unsigned>*> places;
    for (unsigned key = 0; key < 100; ++key) {
        places.push_back(&map.FindOrInsert(key).Held);
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
        map.FindOrInsert(key).Held = key + 1;
        expected[key] = key + 1;
    }
    std::map<unsigned, unsigned> visited;
    unsigned visits = 0;
    map.ForEach([&](Numbers::Entry& entry) {
        visited[entry.Name] = entry.Held;
        ++visits;
    });
    EXPECT_EQ(visited, expected);
    EXPECT_EQ(visits, expected.size());
}

TEST(GrowOnlyMap, ATextKeyIsFoundByAViewOfIt)
{
    static GrowOnlyMap<std::string, std::atomic<unsigned>> map;
    map.FindOrInsert(std::string_view("first")).Held = 1;
    map.FindOrInsert(std::string_view("")).Held = 2;
    ASSERT_NE(map.Find(std::string_view("first")), nullptr);
    EXPECT_EQ(*map.Find(std::string_view("first")), 1u);
    EXPECT_EQ(*map.Find(std::string_view("")), 2u);
    EXPECT_EQ(map.Find(std::string_view("First")), nullptr);
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
                ++map.FindOrInsert(key).Held;
                EXPECT_NE(map.Find(key), nullptr);
            }
        });
    for (std::thread& thread : running)
        thread.join();
    unsigned entries = 0;
    map.ForEach([&](auto& entry) {
        EXPECT_EQ(entry.Held, threads) << entry.Name;
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
