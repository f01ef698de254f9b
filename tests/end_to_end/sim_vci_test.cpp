// The simulated target library by itself: what an application that is not careful does to it.
#include <gtest/gtest.h>

#include "pdu/pdu_api.h"
#include "platform/library.h"
#include "tests/support/session.h"

namespace marvane::testing {
namespace {

/// SimVci, loaded and not yet constructed.
platform::Library LoadSimVci()
{
    return platform::LoadTargetLibrary(BuildFolder() + LibraryName("SimVci")).Handle;
}

template <class Function> Function* FunctionOf(platform::Library library, const char* name)
{
    return reinterpret_cast<Function*>(platform::FindFunction(library, name));
}

T_PDU_ERROR Construct(platform::Library library)
{
    return FunctionOf<decltype(PDUConstruct)>(library, "PDUConstruct")(nullptr, nullptr);
}

TEST(SimVci, CanBeUnloadedWithoutDestructAndLoadedAnew)
{
    for (int round = 0; round < 3; ++round) {
        const platform::Library library = LoadSimVci();
        ASSERT_NE(library, nullptr);
        EXPECT_EQ(Construct(library), PDU_STATUS_NOERROR) << "round " << round;
        platform::UnloadLibrary(library);
    }
}

TEST(SimVci, CanBeUnloadedInTheMiddleOfAComPrimitive)
{
    const platform::Library library = LoadSimVci();
    ASSERT_NE(library, nullptr);
    ASSERT_EQ(Construct(library), PDU_STATUS_NOERROR);
    ASSERT_EQ(FunctionOf<decltype(PDUModuleConnect)>(library, "PDUModuleConnect")(1), PDU_STATUS_NOERROR);
    UNUM32 link = 0, primitive = 0;
    ASSERT_EQ(FunctionOf<decltype(PDUCreateComLogicalLink)>(library, "PDUCreateComLogicalLink")(
                  1, nullptr, 400, nullptr, &link, nullptr),
              PDU_STATUS_NOERROR);
    ASSERT_EQ(FunctionOf<decltype(PDUConnect)>(library, "PDUConnect")(1, link), PDU_STATUS_NOERROR);
    PDU_COP_CTRL_DATA aMinute = {};
    aMinute.Time = 60000;
    ASSERT_EQ(FunctionOf<decltype(PDUStartComPrimitive)>(library, "PDUStartComPrimitive")(
                  1, link, PDU_COPT_DELAY, 0, nullptr, &aMinute, nullptr, &primitive),
              PDU_STATUS_NOERROR);
    platform::UnloadLibrary(library);
}

} // namespace
} // namespace marvane::testing
