// The frame of a call: its lines, its gates, and that nothing of the call is changed.
#include <gtest/gtest.h>

#include "tests/support/session.h"

namespace marvane::testing {
namespace {

TEST(CallFrame, ACallIsOneEntryLineAndOneExitLine)
{
    Session session;
    session.Construct();
    EXPECT_EQ(session.Logged([&] { session.Api().PDULockResource(1, 0x2A, 3); }),
              "{stamp} + PDULockResource(hMod=0x00000001, hCLL=0x0000002A, LockMask=3)\n"
              "{stamp} - PDULockResource<PDU_STATUS_NOERROR (0x0000)>\n");
}

} // namespace
} // namespace marvane::testing
