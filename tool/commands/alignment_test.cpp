#include "tool/commands/alignment.h"

#include <algorithm>
#include <string>

#include <gtest/gtest.h>

namespace marvane::tool {
namespace {

/// A letter is the key; a capital letter is of another kind.
std::vector<AlignedElement> Elements(const std::string& letters)
{
    std::vector<AlignedElement> elements;
    for (const char letter : letters) {
        const bool isCapital = letter >= 'A' && letter <= 'Z';
        elements.push_back({static_cast<std::uint32_t>(isCapital ? letter - 'A' + 'a' : letter), isCapital});
    }
    return elements;
}

/// "0-0 2-1": the pairs.
std::string Aligned(const std::string& first, const std::string& second)
{
    std::string text;
    for (const auto& [i, j] : AlignSequences(Elements(first), Elements(second)))
        text += (text.empty() ? "" : " ") + std::to_string(i) + "-" + std::to_string(j);
    return text;
}

TEST(Alignment, PairsWhatIsEqual)
{
    EXPECT_EQ(Aligned("abc", "abc"), "0-0 1-1 2-2");
    EXPECT_EQ(Aligned("", "abc"), "");
    EXPECT_EQ(Aligned("abc", "xyz"), "");
}

TEST(Alignment, LeavesOutWhatWasInsertedOrDeleted)
{
    EXPECT_EQ(Aligned("abc", "abxc"), "0-0 1-1 2-3");
    EXPECT_EQ(Aligned("xabc", "abc"), "1-0 2-1 3-2");
    EXPECT_EQ(Aligned("abcd", "axyd"), "0-0 3-3");
    EXPECT_EQ(Aligned("abcabba", "cbabac"), "2-0 4-1 5-3 6-4");
}

TEST(Alignment, TakesOfRepeatedElementsThatOfTheSameKind)
{
    EXPECT_EQ(Aligned("xay", "xAay"), "0-0 1-2 2-3");
    EXPECT_EQ(Aligned("xAy", "xAay"), "0-0 1-1 2-3");
    EXPECT_EQ(Aligned("xaay", "xay"), "0-0 1-1 3-2");
}

TEST(Alignment, PrefersMorePairsToPairsOfTheSameKind)
{
    EXPECT_EQ(Aligned("abc", "ABCa"), "0-0 1-1 2-2");
}

/// `count` elements of few keys, which differ from run to run.
std::vector<AlignedElement> Noise(std::size_t count, std::uint32_t seed, std::uint32_t keys)
{
    std::vector<AlignedElement> elements;
    for (std::size_t i = 0; i < count; ++i) {
        seed = seed * 1'664'525 + 1'013'904'223;
        elements.push_back({seed >> 16 & (keys - 1), 0});
    }
    return elements;
}

TEST(Alignment, SplitsLongSequencesAtKeysThatAreThereOnce)
{
    constexpr std::size_t count = 20'000;
    std::vector<AlignedElement> first = Noise(count, 1, 64);
    std::vector<AlignedElement> second = Noise(count, 2, 64);
    for (std::size_t i = 0; i < count; i += 500) {
        first[i] = {static_cast<std::uint32_t>(1'000 + i), 0};
        second[count - 1 - i] = {static_cast<std::uint32_t>(1'000 + count - 500 - i), 0};
    }
    const auto pairs = AlignSequences(first, second);
    std::size_t anchors = 0;
    for (const auto& [i, j] : pairs) {
        EXPECT_EQ(first[i].Key, second[j].Key);
        anchors += first[i].Key >= 1'000;
    }
    EXPECT_TRUE(std::is_sorted(pairs.begin(), pairs.end()));
    EXPECT_EQ(anchors, count / 500);
    EXPECT_GT(pairs.size(), count / 5);
}

TEST(Alignment, GivesUpOnLongSequencesWithoutSuchKeys)
{
    EXPECT_LT(AlignSequences(Noise(20'000, 1, 4), Noise(20'000, 2, 4)).size(), 100u);
}

} // namespace
} // namespace marvane::tool
