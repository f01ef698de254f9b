// Ten thousand sessions in one process.
#include <gtest/gtest.h>

#include "platform/files.h"
#include "tests/support/process_state.h"
#include "tests/support/session.h"

namespace marvane::testing {
namespace {

// Fewer where a cycle is many times slower: a leak of each cycle is found there too.
#ifdef MARVANE_SANITIZED
constexpr int Cycles = 1000;
#else
const int Cycles = platform::PathSeparator == '/' ? 10000 : 300;
#endif

void RunCycles(Session& session, int count)
{
    for (int i = 0; i < count; ++i) {
        ASSERT_EQ(session.Construct(), PDU_STATUS_NOERROR);
        CHAR8 name[] = "CP_Baudrate";
        UNUM32 id = 0;
        ASSERT_EQ(session.Api().PDUGetObjectId(PDU_OBJT_COMPARAM, name, &id), PDU_STATUS_NOERROR);
        ASSERT_EQ(session.Api().PDURegisterEventCallback(1, 2, nullptr), PDU_STATUS_NOERROR);
        ASSERT_EQ(session.Api().PDUDestruct(), PDU_STATUS_NOERROR);
        // All cycles append to one log file: removed now and then, its headers do not fill the disk.
        if (i % 500 == 499)
            std::filesystem::remove(session.LogFolder() / session.LogNames().at(0));
    }
}

TEST(FaultCycles, OfConstructAndDestructLeakNoHandleAndNoMemory)
{
    Session session({{"LogFileMaxNum", "0"}});
    session.Fake().Discard();
    RunCycles(session, 200);
    const std::size_t handles = OpenHandles();
    const std::size_t memory = MemoryInUse();
    RunCycles(session, Cycles);
    EXPECT_EQ(OpenHandles(), handles);
#ifndef MARVANE_SANITIZED
    // A sanitizer keeps freed memory, and has a leak check of its own.
    EXPECT_LT(MemoryInUse(), memory + 65536 + 40 * static_cast<std::size_t>(Cycles));
#else
    static_cast<void>(memory);
#endif
}

/// Names of 100 characters each.
void LearnNamesAndCallbacks(Session& session, UNUM32 count)
{
    for (UNUM32 i = 0; i < count; ++i) {
        std::string name = std::string(95, 'n') + std::to_string(10000 + i);
        UNUM32 id = 0;
        ASSERT_EQ(session.Api().PDUGetObjectId(PDU_OBJT_COMPARAM, name.data(), &id), PDU_STATUS_NOERROR);
        ASSERT_EQ(session.Api().PDURegisterEventCallback(1, i, nullptr), PDU_STATUS_NOERROR);
    }
}

void LoadAndUnload(int count)
{
    for (int i = 0; i < count; ++i) {
        Session session({{"ShortName", std::string(900, 'n')}});
        ASSERT_EQ(session.Construct(), PDU_STATUS_NOERROR);
        LearnNamesAndCallbacks(session, 20);
    }
}

TEST(FaultCycles, OfLoadingAndUnloadingLeakNoHandleAndNoMemory)
{
#ifdef MARVANE_SANITIZED
    GTEST_SKIP() << "under a sanitizer the library stays loaded";
#endif
    LoadAndUnload(20);
    const std::size_t handles = OpenHandles();
    const std::size_t memory = MemoryInUse();
    const int loads = platform::PathSeparator == '/' ? 400 : 60;
    LoadAndUnload(loads);
    EXPECT_EQ(OpenHandles(), handles);
    // The C library keeps the texts of the environment that each session sets, some 450 bytes. The long
    // string of each, and its names and callbacks, would show. Under Windows a load alone takes more than
    // that.
    if (platform::PathSeparator == '/') {
        EXPECT_LT(MemoryInUse(), memory + 700 * static_cast<std::size_t>(loads));
    }
}

} // namespace
} // namespace marvane::testing
