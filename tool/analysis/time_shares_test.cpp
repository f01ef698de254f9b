#include "tool/analysis/time_shares.h"

#include <memory>

#include <gtest/gtest.h>

#include "pdu/pdu_api.h"

namespace marvane::tool {
namespace {

using read::Call;
using read::Function;

/// A log in the making: calls, callbacks and ends of requests at times.
class TimeSharesTest : public ::testing::Test
{
protected:
    Call Enter(Function function, std::int64_t ms, std::string_view arguments = {})
    {
        Call call;
        call.Which = function;
        call.Session = 1;
        call.Link = 1;
        call.Arguments = arguments;
        call.Seq = ++seq_;
        call.Begin.Line = seq_;
        call.BeginTime = {ms};
        shares_.OnEntry(call, function == Function::CallbackTrap);
        return call;
    }
    void Leave(Call call, std::int64_t ms)
    {
        call.State = read::CallState::Returned;
        call.Status = 0;
        call.EndTime = {ms};
        if (call.Which == Function::CallbackTrap) {
            read::Event event;
            static_cast<Call&>(event) = call;
            shares_.OnEvent(event);
        } else
            shares_.OnCall(call);
    }
    void Run(Function function, std::int64_t from, std::int64_t to) { Leave(Enter(function, from), to); }
    std::uint64_t Send(std::int64_t ms, std::string_view type = "CoPType=PDU_COPT_SENDRECV (0x8004)")
    {
        const Call start = Enter(Function::StartComPrimitive, ms, type);
        Leave(start, ms);
        return start.Seq;
    }
    /// The fetch of a request's last status.
    void End(std::uint64_t request, std::int64_t ms)
    {
        const Call fetch = Enter(Function::GetEventItem, ms);
        read::Exchange exchange;
        exchange.Session = 1;
        exchange.Seq = request;
        exchange.On = link_;
        shares_.OnEnded(exchange);
        Leave(fetch, ms);
    }
    void ExpectShares(std::int64_t controlUnit, std::int64_t library, std::int64_t application) const
    {
        EXPECT_EQ(shares_.ControlUnitMs(), controlUnit);
        EXPECT_EQ(shares_.InCallsMs(), library);
        EXPECT_EQ(shares_.ApplicationMs(), application);
    }

    TimeShares shares_;

private:
    static std::shared_ptr<const read::Link> FirstLink()
    {
        read::Link link;
        link.Session = 1;
        link.Handle = 1;
        return std::make_shared<const read::Link>(link);
    }

    std::uint64_t seq_ = 0;
    std::shared_ptr<const read::Link> link_ = FirstLink();
};

TEST_F(TimeSharesTest, CallsAreTheLibrarysAndWhatIsBetweenTheApplications)
{
    Run(Function::Construct, 0, 4);
    Run(Function::GetVersion, 10, 11);
    ExpectShares(0, 5, 6);
}

TEST_F(TimeSharesTest, ARequestIsTheControlUnitsUntilItsEnd)
{
    End(Send(0), 50);
    Run(Function::GetVersion, 70, 70);
    ExpectShares(50, 0, 20);
}

TEST_F(TimeSharesTest, ACallDuringARequestIsTheLibrarys)
{
    const std::uint64_t request = Send(0);
    Run(Function::GetEventItem, 10, 30);
    End(request, 50);
    ExpectShares(30, 20, 0);
}

TEST_F(TimeSharesTest, AnEventThatIsNotFetchedWaitsForTheApplication)
{
    const std::uint64_t request = Send(0);
    Run(Function::CallbackTrap, 10, 12);
    End(request, 50);
    ExpectShares(10, 0, 40);
}

TEST_F(TimeSharesTest, AnEventThatIsFetchedAtOnceDoesNot)
{
    const std::uint64_t request = Send(0);
    const Call callback = Enter(Function::CallbackTrap, 10);
    Run(Function::GetEventItem, 10, 10);
    Leave(callback, 11);
    End(request, 50);
    ExpectShares(49, 0, 1);
}

TEST_F(TimeSharesTest, ADelayIsNoRequest)
{
    End(Send(0, "CoPType=PDU_COPT_DELAY (0x8005)"), 30);
    ExpectShares(0, 0, 30);
}

TEST_F(TimeSharesTest, ADestroyedLinkWaitsForNothing)
{
    Send(0);
    Run(Function::DestroyComLogicalLink, 10, 10);
    Run(Function::GetVersion, 30, 30);
    ExpectShares(10, 0, 20);
}

TEST_F(TimeSharesTest, LinesOutOfOrderCountOnce)
{
    Run(Function::GetVersion, 10, 20);
    Run(Function::GetVersion, 15, 25);
    ExpectShares(0, 15, 0);
}

TEST_F(TimeSharesTest, TheTimeBetweenSessionsDoesNotCount)
{
    Run(Function::Destruct, 0, 1);
    Run(Function::Construct, 5000, 5002);
    ExpectShares(0, 3, 0);
}

TEST_F(TimeSharesTest, AreUnknownWithoutTheLinesOfResults)
{
    read::Session session;
    shares_.OnSession(session);
    EXPECT_TRUE(shares_.AreKnown());
    session.Settings.push_back({"LogFnDecodeRsps", "0", 0});
    shares_.OnSession(session);
    EXPECT_FALSE(shares_.AreKnown());
}

} // namespace
} // namespace marvane::tool
