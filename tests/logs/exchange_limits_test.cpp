// Requests that never end, answers without number: what is kept stays small, and what is given up is said.
#include <gtest/gtest.h>

#include "tests/logs/log_text.h"
#include "tool/analysis/conversation.h"
#include "tool/read/exchanges.h"
#include "tool/read/log_reader.h"

namespace marvane::testing {
namespace {

using namespace marvane::read;

void ReadText(LogReader& reader, const LogText& log)
{
    reader.BeginFile({});
    reader.Feed(log.Text());
    reader.EndFile();
    reader.Finish();
}

class Gathered : public LogSink, private ExchangeSink
{
public:
    std::vector<Exchange> Found;
    std::uint64_t Late = 0;

    void OnEntry(const Call& call, bool isEvent) override { exchanges_.OnEntry(call, isEvent); }
    void OnCall(const Call& call) override { exchanges_.OnCall(call); }
    void OnItem(const Item& item) override { exchanges_.OnItem(item); }

    explicit Gathered(const LogText& log)
    {
        LogReader reader(*this);
        ReadText(reader, log);
        exchanges_.Finish();
    }

private:
    void OnExchange(const Exchange& exchange) override { Found.push_back(exchange); }
    void OnLateAnswer(const LateAnswer&) override { ++Late; }

    Exchanges exchanges_{static_cast<ExchangeSink&>(*this)};
};

TEST(ExchangeLimits, TheDecidingAnswerIsKeptAmongThousands)
{
    LogText log;
    log.Start(0, 1, "22F190");
    for (std::uint64_t i = 0; i < 1000; ++i)
        log.Result(i, 1, "7F2211");
    log.Result(1001, 1, "62F19041");
    log.Finished(1002, 1);
    const Gathered gathered(log);
    ASSERT_EQ(gathered.Found.size(), 1u);
    const Exchange& exchange = gathered.Found[0];
    EXPECT_EQ(exchange.Result, Outcome::Answered);
    EXPECT_EQ(exchange.AnswerCount, 1001u);
    EXPECT_EQ(exchange.Answers.size(), Exchange::MostAnswers);
    EXPECT_EQ(exchange.Deciding()->Data, (std::vector<std::uint8_t>{0x62, 0xF1, 0x90, 0x41}));
}

TEST(ExchangeLimits, PendingAnswersAreCountedAndTheFirstIsKept)
{
    LogText log;
    log.Start(0, 1, "3101FF00");
    for (std::uint64_t i = 1; i <= 100; ++i)
        log.Result(i, 1, "7F3178");
    log.Result(101, 1, "7101FF00");
    const Gathered gathered(log);
    ASSERT_EQ(gathered.Found.size(), 1u);
    EXPECT_EQ(gathered.Found[0].PendingCount, 100u);
    EXPECT_EQ(gathered.Found[0].Answers.size(), 2u);
    EXPECT_EQ(gathered.Found[0].FirstAnswer()->Us, 101'000u);
}

TEST(ExchangeLimits, TheOldestOfTooManyOpenRequestsIsGivenUp)
{
    LogText log;
    for (std::uint32_t i = 0; i <= Exchanges::MostOpen; ++i)
        log.Start(i, i + 1, "22F190");
    log.Result(30'000, 1, "62F19041");
    const Gathered gathered(log);
    ASSERT_EQ(gathered.Found.size(), Exchanges::MostOpen + 1);
    EXPECT_EQ(gathered.Found[0].Primitive, 1u);
    EXPECT_EQ(gathered.Found[0].Result, Outcome::Open);
    EXPECT_EQ(gathered.Late, 1u);
}

TEST(ExchangeLimits, AHandleThatIsUsedAgainBelongsToTheNewRequest)
{
    LogText log;
    log.Start(0, 1, "22F190");
    log.Start(10, 1, "22F187");
    log.Result(12, 1, "62F18741");
    log.Finished(13, 1);
    const Gathered gathered(log);
    ASSERT_EQ(gathered.Found.size(), 2u);
    EXPECT_EQ(gathered.Found[0].Result, Outcome::Open);
    EXPECT_EQ(gathered.Found[1].Result, Outcome::Answered);
}

TEST(ExchangeLimits, ALinkThatIsDestroyedLeavesItsRequestsOpen)
{
    LogText log;
    log.Start(0, 1, "22F190");
    log.Call(5, "PDUDestroyComLogicalLink", "hMod=0x00000001, hCLL=0x00000001");
    log.Start(10, 2, "22F187");
    log.Finished(11, 2);
    const Gathered gathered(log);
    ASSERT_EQ(gathered.Found.size(), 2u);
    EXPECT_EQ(gathered.Found[0].Result, Outcome::Open);
    EXPECT_EQ(gathered.Found[1].Result, Outcome::Silent);
}

TEST(ExchangeLimits, ACancelWithoutItsStatusIsACancelAllTheSame)
{
    LogText log;
    log.Start(0, 1, "3E80", false);
    log.Call(5, "PDUCancelComPrimitive", "hMod=0x00000001, hCLL=0x00000001, hCoP=0x00000001");
    const Gathered gathered(log);
    ASSERT_EQ(gathered.Found.size(), 1u);
    EXPECT_EQ(gathered.Found[0].Result, Outcome::Cancelled);
}

/// The handles of the requests in the order in which a conversation gives them out.
class Order : public tool::Conversation
{
public:
    std::vector<std::uint32_t> Handles;

    explicit Order(const LogText& log)
    {
        LogReader reader(*this, Wants);
        ReadText(reader, log);
        FinishConversation();
    }

    void OnUtterance(const tool::Utterance& utterance) override
    {
        Handles.push_back(*std::get<Exchange>(utterance).Primitive);
    }
};

TEST(ConversationOrder, IsThatOfTheRequestsNotOfTheirEnds)
{
    LogText log;
    log.Start(0, 1, "3E80", false);
    for (std::uint32_t i = 2; i < 5; ++i) {
        log.Start(i, i, "22F190");
        log.Finished(i, i);
    }
    log.Status(9, 1, "PDU_COPST_CANCELLED (0x8013)");
    EXPECT_EQ(Order(log).Handles, (std::vector<std::uint32_t>{1, 2, 3, 4}));
}

TEST(ConversationOrder, ARequestThatDoesNotEndHoldsUpNoMoreThanItsLimit)
{
    LogText log;
    log.Start(0, 1, "3E80", false);
    const auto last = static_cast<std::uint32_t>(tool::Conversation::MostWaiting + 3);
    for (std::uint32_t i = 2; i <= last; ++i) {
        log.Start(i, i, "22F190");
        log.Finished(i, i);
    }
    log.Finished(last + 1, 1);
    const std::vector<std::uint32_t> handles = Order(log).Handles;
    ASSERT_EQ(handles.size(), last);
    EXPECT_EQ(handles.front(), 2u);
    EXPECT_EQ(handles[tool::Conversation::MostWaiting + 1], 1u);
    EXPECT_EQ(handles.back(), last);
}

} // namespace
} // namespace marvane::testing
