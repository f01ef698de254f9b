// Errors: a target that can't be loaded, failing calls, null pointers everywhere, unknown values, and calls
// before PDUConstruct and after PDUDestruct.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/golden/error_steps.h"

namespace marvane::testing {
namespace {

using ::testing::Each;

/// Every call is refused by the logger library itself, including PDUDestruct.
void ExpectAllRefused(Stage& stage)
{
    EXPECT_THAT(CallAllWithNulls(stage.api), Each(PDU_ERR_PDUAPI_NOT_CONSTRUCTED));
    EXPECT_EQ(stage.api.PDUDestruct(), PDU_ERR_PDUAPI_NOT_CONSTRUCTED);
    EXPECT_EQ(stage.session.Fake().TakeNames(), "");
}

/// A start without a log file, and one without a target library.
void FailToStart(Stage& stage)
{
    stage.session.Configure({{"LogFileDir", "-"}});
    EXPECT_EQ(stage.session.Construct(), PDU_ERR_PDUAPI_NOT_CONSTRUCTED);
    ExpectAllRefused(stage);
    stage.session.Configure({{"PDUAPILibDll", LibraryName("no_such_target")}});
    EXPECT_EQ(stage.session.Construct(), PDU_ERR_PDUAPI_NOT_CONSTRUCTED);
    ExpectAllRefused(stage);
}

/// Null for every pointer, first refused by the target and then accepted.
void CallWithNulls(Stage& stage)
{
    stage.session.Fake().Answer = [](const FakeCall&) { return PDU_ERR_INVALID_PARAMETERS; };
    EXPECT_THAT(CallAllWithNulls(stage.api), Each(PDU_ERR_INVALID_PARAMETERS));
    stage.session.Fake().Answer = [](const FakeCall&) { return PDU_STATUS_NOERROR; };
    auto& code = stage.log.Keep<UNUM32>("code", 0);
    EXPECT_THAT(CallAllWithNulls(stage.api, &code), Each(PDU_STATUS_NOERROR));
}

TEST(GoldenSession, ErrorsOfAllKinds)
{
    Stage stage({});
    ExpectAllRefused(stage);
    FailToStart(stage);

    stage.session.Configure({{"LogFnDecodeArgs", "2"}, {"LogFnDecodeRsps", "2"}});
    EXPECT_EQ(stage.session.Construct(), PDU_STATUS_NOERROR);
    CallWithNulls(stage);
    stage.script.Begin(stage.session);
    GetNothing(stage);
    FailWithValues(stage);
    UseUnknownValues(stage);
    UseUnknownParameters(stage);
    UseWrongLists(stage);
    UseWrongItems(stage);

    stage.script.Fail("PDUDestruct", PDU_ERR_FCT_FAILED);
    EXPECT_EQ(stage.api.PDUDestruct(), PDU_ERR_FCT_FAILED);
    stage.session.Fake().TakeCalls();
    ExpectAllRefused(stage);
    stage.log.ExpectEqual("error_session");
}

} // namespace
} // namespace marvane::testing
