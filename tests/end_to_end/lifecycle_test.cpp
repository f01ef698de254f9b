// PDUConstruct and PDUDestruct.
#include <gtest/gtest.h>

#include "tests/support/session.h"

namespace marvane::testing {
namespace {

TEST(Lifecycle, DestructWithoutConstructReturnsNotConstructedAndLogsNothing)
{
    Session session;
    EXPECT_EQ(session.Api().PDUDestruct(), PDU_ERR_PDUAPI_NOT_CONSTRUCTED);
    EXPECT_TRUE(session.LogNames().empty());
    EXPECT_EQ(session.Fake().TakeNames(), "");
}

TEST(Lifecycle, EveryCallBeforeConstructReturnsNotConstructed)
{
    Session session;
    EXPECT_EQ(session.Api().PDUModuleConnect(1), PDU_ERR_PDUAPI_NOT_CONSTRUCTED);
    EXPECT_TRUE(session.LogNames().empty());
}

TEST(Lifecycle, ANullOptionStringIsMarkedAndForwarded)
{
    Session session;
    int tag = 0;
    session.Api().PDUConstruct(nullptr, &tag);
    EXPECT_NE(WithoutStamps(session.Log())
                  .find("{stamp} + PDUConstruct(OptionStr= \"<NULL STRING>\", pAPITag= " + PointerText(&tag) +
                        ")\n"),
              std::string::npos);
    const auto calls = session.Fake().TakeCalls();
    ASSERT_FALSE(calls.empty());
    EXPECT_EQ(calls[0].Arguments, (std::vector<std::uint64_t>{0, reinterpret_cast<std::uintptr_t>(&tag)}));
}

TEST(Lifecycle, TheCommsCallbackIsSetAfterASuccessfulConstruct)
{
    Session session;
    session.Construct();
    EXPECT_EQ(session.Fake().TakeNames(), "PDUConstruct PDU_MS_SetLogCallback");
}

TEST(Lifecycle, AFailedConstructSetsNoCommsCallbackAndTheLoggerKeepsRunning)
{
    Session session;
    session.Fake().Answer = [](const FakeCall&) { return PDU_ERR_FCT_FAILED; };
    EXPECT_EQ(session.Construct(), PDU_ERR_FCT_FAILED);
    EXPECT_EQ(session.Fake().TakeNames(), "PDUConstruct");
    EXPECT_TRUE(
        WithoutStamps(session.Log()).ends_with("{stamp} - PDUConstruct<PDU_ERR_FCT_FAILED (0x0001)>\n"));
    session.Fake().Answer = nullptr;
    EXPECT_EQ(session.Construct(), PDU_STATUS_NOERROR);
    EXPECT_EQ(session.LogNames().size(), 1u);
}

TEST(Lifecycle, DestructRemovesTheCommsCallbackFirst)
{
    Session session;
    session.Construct();
    session.Fake().TakeCalls();
    session.Api().PDUDestruct();
    const auto calls = session.Fake().TakeCalls();
    ASSERT_EQ(calls.size(), 2u);
    EXPECT_EQ(calls[0].Function, "PDU_MS_SetLogCallback");
    EXPECT_EQ(calls[0].Arguments, std::vector<std::uint64_t>{0});
    EXPECT_EQ(calls[1].Function, "PDUDestruct");
}

TEST(Lifecycle, TheLastLinesAreThoseOfTheShutdownAndTheClosing)
{
    Session session;
    session.Construct();
    EXPECT_EQ(session.Logged([&] { session.Api().PDUDestruct(); }),
              "{stamp} + PDUDestruct()\n"
              "{stamp} - PDUDestruct<PDU_STATUS_NOERROR (0x0000)>\n"
              "{stamp} + LOGGER_Uninitialise{Loaded=1}\n"
              "{stamp} - LOGGER_Uninitialise<PDU_STATUS_NOERROR (0x0000)>\n"
              "{stamp} # PDUDestruct - Close this log file\n");
}

TEST(Lifecycle, WithLogFnCallsOneTheFileIsClosedWithoutAClosingLine)
{
    Session session({{"LogFnCalls", "1"}});
    session.Construct();
    EXPECT_EQ(session.Logged([&] { session.Api().PDUDestruct(); }),
              "{stamp} + PDUDestruct\n"
              "{stamp} - PDUDestruct<PDU_STATUS_NOERROR (0x0000)>\n"
              "{stamp} + LOGGER_Uninitialise\n"
              "{stamp} - LOGGER_Uninitialise<PDU_STATUS_NOERROR (0x0000)>\n");
}

TEST(Lifecycle, ATargetWithoutTheCommsExtensionWorks)
{
    Session session({}, "fake_target_no_log");
    EXPECT_EQ(session.Construct(), PDU_STATUS_NOERROR);
    EXPECT_EQ(session.Api().PDUDestruct(), PDU_STATUS_NOERROR);
    EXPECT_EQ(session.Fake().TakeNames(), "PDUConstruct PDUDestruct");
}

TEST(Lifecycle, ARefusedDestructIsReturnedAndEndsTheLoggerAnyway)
{
    Session session;
    session.Construct();
    session.Fake().Answer = [](const FakeCall&) { return PDU_ERR_FCT_FAILED; };
    EXPECT_EQ(session.Api().PDUDestruct(), PDU_ERR_FCT_FAILED);
    EXPECT_EQ(session.Api().PDUModuleConnect(1), PDU_ERR_PDUAPI_NOT_CONSTRUCTED);
}

TEST(Lifecycle, DestructWithoutALoadedTargetTearsNothingDown)
{
    Session session({}, "no_such_library");
    EXPECT_EQ(session.Construct(), PDU_ERR_PDUAPI_NOT_CONSTRUCTED);
    EXPECT_EQ(session.Logged([&] { EXPECT_EQ(session.Api().PDUDestruct(), PDU_ERR_PDUAPI_NOT_CONSTRUCTED); }),
              "{stamp} PDUDestruct - Called but library not loaded!\n");
    EXPECT_EQ(session.Logged([&] { session.Api().PDUModuleConnect(1); }),
              "{stamp} PDUModuleConnect - Called but library not loaded!\n");
}

TEST(Lifecycle, ANewConstructAfterDestructBindsTheFunctionsAgainAndLogs)
{
    Session session;
    session.Construct();
    session.Api().PDUDestruct();
    session.Fake().TakeCalls();
    EXPECT_EQ(session.Construct(), PDU_STATUS_NOERROR);
    EXPECT_EQ(session.Fake().TakeNames(), "PDUConstruct PDU_MS_SetLogCallback");
    EXPECT_TRUE(
        WithoutStamps(session.Log()).ends_with("{stamp} - PDUConstruct<PDU_STATUS_NOERROR (0x0000)>\n"));
}

TEST(Lifecycle, AHundredSessionsLeakNothing)
{
    Session session({{"LogFileMaxNum", "0"}, {"LogFnCalls", "1"}});
    for (int i = 0; i < 100; ++i) {
        ASSERT_EQ(session.Construct(), PDU_STATUS_NOERROR);
        ASSERT_EQ(session.Api().PDUDestruct(), PDU_STATUS_NOERROR);
    }
    EXPECT_EQ(session.LogNames().size(), 1u);
}

} // namespace
} // namespace marvane::testing
