// Random sequences of calls with fixed seeds. MARVANE_SEQUENCE_SEED and MARVANE_SEQUENCE_STEPS take others.
#include <cstdio>
#include <string>

#include <gtest/gtest.h>

#include "platform/environment.h"
#include "platform/files.h"
#include "tests/fuzz/call_sequence.h"
#include "tests/fuzz/odd_lines.h"

namespace marvane::testing {
namespace {

unsigned FromEnvironment(const char* name, unsigned otherwise)
{
    const auto value = platform::EnvironmentVariable(name);
    return value ? static_cast<unsigned>(std::stoul(*value)) : otherwise;
}

/// Closes a file that may still be open: only a start and an end of active logging are sure to do so.
void CloseTheLog(Session& session)
{
    session.Api().PDUDestruct();
    session.Configure({});
    session.Construct();
    session.Api().PDUDestruct();
}

class CallSequences : public ::testing::TestWithParam<unsigned>
{
};

TEST_P(CallSequences, AgreeWithTheModelOfTheLogger)
{
    const unsigned seed = FromEnvironment("MARVANE_SEQUENCE_SEED", 0) + GetParam();
    RecordProperty("seed", static_cast<int>(seed));
    Session session;
    {
        CallSequence sequence(session, seed);
        sequence.Run(static_cast<int>(FromEnvironment("MARVANE_SEQUENCE_STEPS", 400)));
        const CheckCounts& done = sequence.Counts();
        EXPECT_GT(done.Marks, 0);
        EXPECT_GT(done.Trimmings, 0);
        std::printf("seed %u: %d marks, %d changes of file, %d trimmings, %d doubtful steps\n", seed,
                    done.Marks, done.Changes, done.Trimmings, done.DoubtfulSteps);
    }
    CloseTheLog(session);
    for (const auto& entry : std::filesystem::recursive_directory_iterator(session.Folder().Path()))
        if (entry.is_regular_file() && entry.path().extension() == ".LGR") {
            std::string text = FileText(entry.path());
            text.erase(0, text.starts_with("planted\n") ? 8 : 0);
            EXPECT_EQ(FirstOddLine(text), "") << entry.path();
            EXPECT_EQ(FirstDamagedLine(text), "") << entry.path();
            EXPECT_TRUE(text.empty() || text.ends_with('\n')) << entry.path();
        }
}

class FileFaultSequences : public ::testing::TestWithParam<unsigned>
{
};

TEST_P(FileFaultSequences, AgreeWithTheModelOfTheLogger)
{
    if (platform::PathSeparator != '/')
        GTEST_SKIP() << "the faults are those of Linux system calls";
    const unsigned seed = FromEnvironment("MARVANE_SEQUENCE_SEED", 0) + GetParam();
    Session session({}, "fake_target", "MarvaneWithFileFaults");
    {
        RandomFileFaults faults(session, seed);
        CallSequence sequence(session, seed, &faults);
        sequence.Run(static_cast<int>(FromEnvironment("MARVANE_SEQUENCE_STEPS", 400)));
        const CheckCounts& done = sequence.Counts();
        EXPECT_GT(done.Marks, 0);
        EXPECT_GT(done.DoubtfulSteps, 0);
        int injected = 0;
        for (const auto& [fault, count] : faults.Counts()) {
            std::printf("%s: %d\n", fault.c_str(), count);
            injected += count;
        }
        EXPECT_GT(injected, 100);
        std::printf("seed %u: %d faults, %d marks, %d doubtful steps\n", seed, injected, done.Marks,
                    done.DoubtfulSteps);
    }
    CloseTheLog(session);
    for (const auto& entry : std::filesystem::recursive_directory_iterator(session.Folder().Path()))
        if (entry.is_regular_file() && entry.path().extension() == ".LGR") {
            std::string text = FileText(entry.path());
            text.erase(0, text.starts_with("planted\n") ? 8 : 0);
            EXPECT_EQ(FirstOddBeginning(text), "") << entry.path();
        }
}

INSTANTIATE_TEST_SUITE_P(Seeds, FileFaultSequences, ::testing::Range(1u, 9u));
INSTANTIATE_TEST_SUITE_P(Seeds, CallSequences, ::testing::Range(1u, 9u));

} // namespace
} // namespace marvane::testing
