// No call reads or writes outside the records, buffers and strings that it is given: all of them end at a
// page without access, and those of the application are read-only during the call.
#include <set>

#include <gtest/gtest.h>

#include "tests/fuzz/call_sequence.h"
#include "tests/support/binary_tables.h"
#include "tests/support/guarded_memory.h"

namespace marvane::testing {
namespace {

TEST(GuardedMemoryDeathTest, AnAccessPastTheEndCrashes)
{
    for (const std::size_t size : {std::size_t{1}, std::size_t{8}, std::size_t{4096}, std::size_t{5000}}) {
        const std::shared_ptr<void> memory = GuardedMemory(size);
        auto* const bytes = static_cast<volatile char*>(memory.get());
        bytes[size - 1] = 1;
        EXPECT_DEATH(static_cast<void>(bytes[size]), "") << size;
        ForbidWriting(memory, size);
        EXPECT_EQ(bytes[size - 1], 1);
        EXPECT_DEATH(bytes[0] = 1, "") << size;
    }
}

TEST(GuardPages, NoCallAccessesMoreThanItsRecordsBuffersAndStrings)
{
    Session session;
    CallSequence sequence(session, 1);
    sequence.RunEachCall(40);
    EXPECT_GT(sequence.Counts().Marks, 0);
    std::set<std::string> called;
    for (const SeenCall& call : session.Fake().TakeCalls())
        called.insert(call.Function);
    const std::vector<std::string> exported = ExportedNames(BuildFolder() + LibraryName("Marvane"));
    EXPECT_EQ(exported.size(), 29u);
    for (const std::string& function : exported)
        EXPECT_TRUE(called.contains(function)) << function;
}

} // namespace
} // namespace marvane::testing
