// pthread_cancel: a logged call is a cancellation point only if the target library's function is one.
#include <pthread.h>

#include <gtest/gtest.h>

#include "tests/support/session.h"

namespace marvane::testing {
namespace {

/// Performs calls in a thread whose cancellation is pending. True if all of them return.
bool ReturnsWithPendingCancellation(const std::function<void()>& calls)
{
    struct Part
    {
        const std::function<void()>& Calls;
        bool Returned = false;
    } part{calls};
    pthread_t thread;
    pthread_create(
        &thread, nullptr,
        [](void* argument) -> void* {
            auto& own = *static_cast<Part*>(argument);
            pthread_cancel(pthread_self());
            own.Calls();
            own.Returned = true;
            pthread_testcancel();
            return nullptr;
        },
        &part);
    void* result = nullptr;
    pthread_join(thread, &result);
    return part.Returned && result == PTHREAD_CANCELED;
}

TEST(Cancellation, TakesEffectInNoLoggedCall)
{
    Session session({{"LogFlush", "1"}});
    session.Construct();
    EXPECT_EQ(session.Logged([&] {
        EXPECT_TRUE(ReturnsWithPendingCancellation([&] { session.Api().PDUConnect(1, 2); }));
    }),
              "{stamp} + PDUConnect(hMod=0x00000001, hCLL=0x00000002)\n"
              "{stamp} - PDUConnect<PDU_STATUS_NOERROR (0x0000)>\n");
}

TEST(Cancellation, TakesEffectInNoChangeOfTheLogFile)
{
    Session session({{"LogFileMaxSize", "1"}, {"LogFileMaxNum", "2"}});
    session.Construct();
    EXPECT_TRUE(ReturnsWithPendingCancellation([&] { session.Api().PDUConnect(1, 2); }));
    EXPECT_NE(session.Logged([&] { session.Api().PDUConnect(3, 4); }), "");
}

TEST(Cancellation, TakesEffectNeitherInConstructNorInDestruct)
{
    Session session({{"DbgAPP", "DEBUG"}});
    EXPECT_TRUE(ReturnsWithPendingCancellation([&] {
        session.Construct();
        session.Api().PDUDestruct();
    }));
    EXPECT_TRUE(WithoutStamps(session.Log()).ends_with("{stamp} # PDUDestruct - Close this log file\n"));
}

} // namespace
} // namespace marvane::testing
