#include "tool/setup/binary_file.h"

#include <algorithm>
#include <random>

#include <gtest/gtest.h>

#include "pdu/functions.h"
#include "tests/support/session.h"

namespace marvane::tool {
namespace {

std::string LibraryBytes(const std::string& name)
{
    return testing::FileBytes(testing::BuildFolder() + testing::LibraryName(name));
}

BinaryFacts Inspected(const std::string& name)
{
    const auto facts = InspectBinary(LibraryBytes(name));
    EXPECT_TRUE(facts.has_value()) << name;
    return facts.value_or(BinaryFacts{});
}

TEST(BinaryFile, OfALibraryTellsAllThatCounts)
{
    const BinaryFacts facts = Inspected("fake_target");
    EXPECT_TRUE(facts.IsLibrary);
    EXPECT_EQ(facts.For, sizeof(void*) == 8 ? Machine::X64 : Machine::X86);
    EXPECT_EQ(VersionText(facts.Version.value()), "4.3.2.1");
    EXPECT_EQ(MissingFunctions(facts), std::vector<std::string>{});
    EXPECT_FALSE(facts.IsMarvane);
}

TEST(BinaryFile, NamesTheFunctionsThatAreMissing)
{
    EXPECT_EQ(MissingFunctions(Inspected("fake_target_no_lock")),
              std::vector<std::string>{"PDULockResource"});
    EXPECT_EQ(MissingFunctions(BinaryFacts{}).size(), FunctionNames.size());
}

TEST(BinaryFile, KnowsTheLoggerLibraryFromItsTarget)
{
    const BinaryFacts own = Inspected("Marvane");
    EXPECT_TRUE(own.IsMarvane);
    EXPECT_EQ(own.Exports, std::set<std::string>(FunctionNames.begin(), FunctionNames.end()));
    EXPECT_FALSE(Inspected("SimVci").IsMarvane);
}

TEST(BinaryFile, NeedsTheLibrariesThatItWasLinkedWith)
{
    const std::string extension = std::filesystem::path(testing::LibraryName("x")).extension().string();
    const auto facts = InspectBinary(
        testing::FileBytes(testing::BuildFolder() + "dependent/fake_target_dependent" + extension));
    const std::vector<std::string> needed = facts.value().Needed;
    EXPECT_NE(std::find_if(
                  needed.begin(), needed.end(),
                  [](const std::string& name) { return name.find("fake_dependency") != std::string::npos; }),
              needed.end());
}

TEST(BinaryFile, IsNoneIfItIsAText)
{
    EXPECT_FALSE(InspectBinary("a text"));
    EXPECT_FALSE(InspectBinary(""));
    EXPECT_FALSE(InspectBinary("MZ"));
}

TEST(BinaryFile, IsReadWithinItsBoundsWhateverItHolds)
{
    const std::string bytes = LibraryBytes("fake_target");
    std::mt19937 random(1);
    int inspected = 0;
    for (int round = 0; round < 300; ++round) {
        std::string changed = bytes.substr(0, round % 3 == 0 ? random() % bytes.size() : bytes.size());
        for (int change = 0; change < 200 && !changed.empty(); ++change)
            changed[random() % std::min<std::size_t>(changed.size(), 4096)] = static_cast<char>(random());
        inspected += InspectBinary(changed).has_value() ? 1 : 0;
        for (int change = 0; change < 20 && changed.size() > 4; ++change)
            changed[4 + random() % (changed.size() - 4)] = static_cast<char>(random());
        changed.replace(0, std::min<std::size_t>(4, changed.size()), bytes, 0,
                        std::min<std::size_t>(4, changed.size()));
        inspected += InspectBinary(changed).has_value() ? 1 : 0;
    }
    EXPECT_GT(inspected, 0);
}

} // namespace
} // namespace marvane::tool
