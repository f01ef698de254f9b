// What became of the requests of a random conversation is what the reader of logs finds: each with its bytes,
// its answers and its end, whatever other calls and threads stand between them.
#include <algorithm>
#include <random>
#include <thread>

#include <gtest/gtest.h>

#include "tests/fuzz/call_facts.h"
#include "tests/support/child_program.h"
#include "tests/support/session.h"
#include "tests/support/trace_checker.h"
#include "tool/read/exchanges.h"
#include "tool/read/log_files.h"

namespace marvane::testing {
namespace {

using namespace marvane::read;
using ByteList = std::vector<std::uint8_t>;

/// A request as the test made it, and what it was told of it.
struct Request
{
    UNUM32 Link;
    UNUM32 Handle;
    ByteList Bytes;
    SNUM32 ReceiveCycles;
    std::vector<ByteList> Answers;
    std::size_t Pending = 0;
    UNUM32 Error = 0;
    bool IsCancelled = false;
    bool HasLastStatus = false;
    bool IsEnded = false; ///< also with its link

    bool IsNegative(const ByteList& answer) const
    {
        return answer.size() == 3 && answer[0] == 0x7F && answer[1] == Bytes[0];
    }
    bool IsPending(const ByteList& answer) const { return IsNegative(answer) && answer[2] == 0x78; }

    std::string Outcome() const
    {
        const auto isPending = [this](const ByteList& answer) { return IsPending(answer); };
        const auto isNegative = [this](const ByteList& answer) { return IsNegative(answer); };
        if (IsCancelled)
            return "cancelled";
        if (!std::ranges::all_of(Answers, isNegative))
            return "answered";
        if (!std::ranges::all_of(Answers, isPending))
            return "refused";
        if (!HasLastStatus)
            return "open";
        const bool isTimeout = Error == 0 || Error == PDU_ERR_EVT_RX_TIMEOUT;
        return ReceiveCycles == 0 && isTimeout ? "sent" : "silent";
    }

    std::string Text() const
    {
        std::string text = "link " + std::to_string(Link) + " #" + std::to_string(Handle) + " " + Hex(Bytes) +
                           ": " + Outcome() + ", " + std::to_string(Answers.size()) + " answers, " +
                           std::to_string(Pending) + " pending, error " + std::to_string(Error);
        bool hasPending = false;
        for (const ByteList& answer : Answers) {
            const bool isFurther = IsPending(answer) && hasPending;
            hasPending |= IsPending(answer);
            text += isFurther ? "" : " " + Hex(answer);
        }
        return text;
    }
};

class Conversation
{
public:
    explicit Conversation(unsigned seed) : random_(seed)
    {
        session_.Fake().Answer = [this](const FakeCall& call) { return Answer(call); };
        session_.Construct();
    }
    ~Conversation() { session_.Fake().Answer = nullptr; }

    void Run(int steps)
    {
        for (int i = 0; i < steps; ++i)
            if (Below(4) == 0)
                std::thread([this] { Step(); }).join();
            else
                Step();
        session_.Api().PDUDestruct();
    }

    std::filesystem::path LogFolder() const { return session_.LogFolder(); }
    std::vector<std::string> Texts() const
    {
        std::vector<std::string> texts;
        for (const Request& request : requests_)
            texts.push_back(request.Text());
        return texts;
    }
    const std::vector<std::string>& Late() const { return late_; }

private:
    UNUM32 Below(UNUM32 end) { return static_cast<UNUM32>(random_() % end); }

    ByteList Bytes(std::size_t size)
    {
        ByteList bytes(size);
        for (std::uint8_t& byte : bytes)
            byte = static_cast<std::uint8_t>(random_());
        return bytes;
    }

    void Step()
    {
        const UNUM32 kind = Below(20);
        if (requests_.empty() || kind < 4)
            Start();
        else if (kind < 15)
            Fetch(Any());
        else if (kind == 15)
            Cancel(Any());
        else if (kind == 16 && Below(4) == 0)
            DestroyLink(1 + Below(3));
        else
            Noise();
    }

    /// The index of a request, a late one more often.
    std::size_t Any()
    {
        const std::size_t last = std::min<std::size_t>(requests_.size(), 6);
        return requests_.size() - 1 - Below(static_cast<UNUM32>(last));
    }

    T_PDU_ERROR Answer(const FakeCall& call)
    {
        const std::string_view name = call.Function;
        const auto output = [&](std::size_t argument) {
            return static_cast<std::uintptr_t>(call.Arguments[argument]);
        };
        if (name == "PDUGetEventItem") {
            *reinterpret_cast<PDU_EVENT_ITEM**>(output(2)) = item_;
            return item_ ? PDU_STATUS_NOERROR : PDU_ERR_EVENT_QUEUE_EMPTY;
        }
        if (name != "PDUStartComPrimitive")
            return PDU_STATUS_NOERROR;
        *reinterpret_cast<UNUM32*>(output(7)) = requests_.back().Handle;
        // An answer may be fetched before the call has returned.
        if (Below(4) == 0)
            std::thread([this] { Fetch(requests_.size() - 1); }).join();
        return PDU_STATUS_NOERROR;
    }

    void Start()
    {
        Request request = {1 + Below(3), 0, Bytes(1 + Below(20)), Below(3) == 0 ? 0 : 1, {}};
        // A handle is used again after its end.
        const std::size_t old = requests_.empty() ? 0 : Any();
        const bool isReuse =
            !requests_.empty() && requests_[old].IsEnded && !IsOpen(requests_[old]) && Below(3) == 0;
        request.Handle = isReuse ? requests_[old].Handle : ++handles_;
        if (isReuse)
            request.Link = requests_[old].Link;
        requests_.push_back(request);
        PDU_COP_CTRL_DATA control = {};
        control.NumSendCycles = 1;
        control.NumReceiveCycles = request.ReceiveCycles;
        UNUM32 handle = 0;
        session_.Api().PDUStartComPrimitive(1, request.Link, PDU_COPT_SENDRECV,
                                            static_cast<UNUM32>(request.Bytes.size()), request.Bytes.data(),
                                            &control, nullptr, &handle);
    }

    /// True if a later request has the handle and is open.
    bool IsOpen(const Request& request) const
    {
        return std::ranges::any_of(requests_, [&](const Request& each) {
            return each.Handle == request.Handle && each.Link == request.Link && !each.IsEnded;
        });
    }

    /// The last request of that link and handle: the one that an item is for.
    Request& Latest(const Request& request)
    {
        return *std::find_if(requests_.rbegin(), requests_.rend(), [&](const Request& each) {
            return each.Handle == request.Handle && each.Link == request.Link;
        });
    }

    void Fetch(std::size_t index)
    {
        Request& request = Latest(requests_[index]);
        const UNUM32 kind = Below(10);
        if (kind < 6)
            FetchResult(request, AnswerOf(request, kind));
        else if (kind == 6)
            FetchCode(request, PDU_IT_STATUS, PDU_COPST_EXECUTING);
        else if (kind == 7)
            FetchCode(request, PDU_IT_ERROR, Below(2) ? PDU_ERR_EVT_RX_TIMEOUT : PDU_ERR_EVT_TX_ERROR);
        else
            FetchCode(request, PDU_IT_STATUS,
                      request.IsCancelled && Below(2) ? PDU_COPST_CANCELLED : PDU_COPST_FINISHED);
    }

    ByteList AnswerOf(const Request& request, UNUM32 kind)
    {
        if (kind == 0)
            return {0x7F, request.Bytes[0], 0x31};
        if (kind == 1)
            return {0x7F, request.Bytes[0], 0x78};
        if (kind == 2) // of another service
            return {0x7F, static_cast<std::uint8_t>(request.Bytes[0] + 1), 0x31};
        return Bytes(1 + Below(40));
    }

    void FetchResult(Request& request, ByteList answer)
    {
        PDU_RESULT_DATA result = {};
        result.UniqueRespIdentifier = PDU_ID_UNDEF;
        result.NumDataBytes = static_cast<UNUM32>(answer.size());
        result.pDataBytes = answer.data();
        FetchItem(request, PDU_IT_RESULT, &result);
        if (request.IsEnded) {
            late_.push_back("#" + std::to_string(request.Handle) + " " + Hex(answer));
            return;
        }
        request.Pending += request.IsPending(answer) ? 1 : 0;
        request.Answers.push_back(std::move(answer));
    }

    void FetchCode(Request& request, T_PDU_IT type, UNUM32 code)
    {
        PDU_ERROR_DATA data = {.ErrorCodeId = code, .ExtraErrorInfoId = 0};
        FetchItem(request, type, &data);
        if (request.IsEnded)
            return;
        if (type == PDU_IT_ERROR && request.Error == 0)
            request.Error = code;
        if (type != PDU_IT_STATUS || code == PDU_COPST_EXECUTING)
            return;
        request.HasLastStatus = request.IsEnded = true;
        request.IsCancelled = code == PDU_COPST_CANCELLED;
    }

    void FetchItem(const Request& request, T_PDU_IT type, void* data)
    {
        PDU_EVENT_ITEM item = {.ItemType = type,
                               .hCop = request.Handle,
                               .pCoPTag = nullptr,
                               .Timestamp = ++time_,
                               .pData = data};
        GetEventItem(request.Link, &item);
    }

    void GetEventItem(UNUM32 link, PDU_EVENT_ITEM* item)
    {
        item_ = item;
        PDU_EVENT_ITEM* fetched = nullptr;
        session_.Api().PDUGetEventItem(1, link, &fetched);
        item_ = nullptr;
        if (fetched && Below(2))
            session_.Api().PDUDestroyItem(fetched);
    }

    void Cancel(std::size_t index)
    {
        Request& request = Latest(requests_[index]);
        session_.Api().PDUCancelComPrimitive(1, request.Link, request.Handle);
        request.IsCancelled |= !request.IsEnded;
    }

    void DestroyLink(UNUM32 link)
    {
        session_.Api().PDUDestroyComLogicalLink(1, link);
        for (Request& request : requests_)
            request.IsEnded |= request.Link == link;
    }

    void Noise()
    {
        UNUM32 number = 0;
        switch (Below(3)) {
        case 0:
            return GetEventItem(1 + Below(3), nullptr);
        case 1:
            session_.Api().PDUGetTimestamp(1, &number);
            return;
        default:
            session_.Api().PDUGetStatus(1, 1, PDU_HANDLE_UNDEF, &number, &number, &number);
        }
    }

    std::mt19937 random_;
    Session session_{{{"LogFnDecodeArgs", "2"}, {"LogFnDecodeRsps", "2"}, {"LogMaxPduBuff", "4096"}}};
    std::vector<Request> requests_;
    std::vector<std::string> late_;
    PDU_EVENT_ITEM* item_ = nullptr; ///< the next one to be handed out
    UNUM32 handles_ = 0;
    UNUM32 time_ = 0;
};

/// What the reader finds, in the form of the expectation.
class FoundRequests : public LogSink, private ExchangeSink
{
public:
    std::vector<std::string> Late;

    void OnEntry(const Call& call, bool isEvent) override { exchanges_.OnEntry(call, isEvent); }
    void OnCall(const Call& call) override { exchanges_.OnCall(call); }
    void OnItem(const Item& item) override { exchanges_.OnItem(item); }
    void OnProblem(const Problem& problem) override { ADD_FAILURE() << problem.Text; }

    std::vector<std::string> Texts()
    {
        exchanges_.Finish();
        std::ranges::sort(found_);
        std::vector<std::string> texts;
        for (const auto& [seq, text] : found_)
            texts.push_back(text);
        return texts;
    }

private:
    void OnExchange(const Exchange& exchange) override
    {
        std::string text = "link " + std::to_string(exchange.On->Handle) + " #" +
                           std::to_string(exchange.Primitive.value_or(UndefinedHandle)) + " " +
                           Hex(exchange.Request) + ": " + std::string(OutcomeName(exchange.Result)) + ", " +
                           std::to_string(exchange.AnswerCount) + " answers, " +
                           std::to_string(exchange.PendingCount) + " pending, error " +
                           std::to_string(exchange.ErrorCode);
        for (const read::Answer& answer : exchange.Answers)
            text += " " + Hex(answer.Data);
        found_.emplace_back(exchange.Seq, std::move(text));
    }
    void OnLateAnswer(const LateAnswer& late) override
    {
        Late.push_back("#" + std::to_string(late.Primitive) + " " + Hex(late.What.Data));
    }

    Exchanges exchanges_{static_cast<ExchangeSink&>(*this)};
    std::vector<std::pair<std::uint64_t, std::string>> found_;
};

class Conversations : public ::testing::TestWithParam<unsigned>
{
};

TEST_P(Conversations, AreReadAsTheyWere)
{
    Conversation conversation(GetParam());
    conversation.Run(400);
    FoundRequests sink;
    LogReader reader(sink);
    for (const LogFile& file : FindLogFiles({conversation.LogFolder().string()}).Files)
        EXPECT_TRUE(ReadLogFile(file, reader)) << file.Begin.Name;
    reader.Finish();
    ASSERT_GT(conversation.Texts().size(), 40u);
    EXPECT_FALSE(conversation.Late().empty());
    EXPECT_EQ(sink.Texts(), conversation.Texts());
    EXPECT_EQ(sink.Late, conversation.Late());
}

TEST_P(Conversations, NestRightInATrace)
{
    Conversation conversation(GetParam() + 100);
    conversation.Run(400);
    const std::string log = Quoted(conversation.LogFolder().string());
    const ProgramResult trace = RunProgram("marvane", "export --format trace " + log);
    ASSERT_EQ(trace.Status, 0) << trace.Errors;
    const TraceCheck check = CheckTrace(trace.Output);
    EXPECT_EQ(check.Faults, "");
    EXPECT_EQ(check.Requests, conversation.Texts().size());
    EXPECT_GT(check.Flows, 10u);
    EXPECT_EQ(check.Open, 0u);
}

INSTANTIATE_TEST_SUITE_P(Seeds, Conversations, ::testing::Range(1u, 9u));

} // namespace
} // namespace marvane::testing
