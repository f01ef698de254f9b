// Puts requests and what became of them together, while a log is read.
//
//     struct Printer : ExchangeSink {
//         void OnExchange(const Exchange& exchange) override { ... }
//     };
//     Exchanges exchanges(printer);     // fed by a LogSink that passes on what it is told
#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "tool/read/exchange.h"
#include "tool/read/links.h"
#include "tool/read/records.h"

namespace marvane::read {

class ExchangeSink
{
public:
    virtual ~ExchangeSink() = default;
    /// A request whose start has returned: nothing is known of its answers yet.
    virtual void OnRequest(const Exchange& request);
    /// A request that the library refused with an error (NotStarted), or whose start never returned, when the
    /// log shows no more of it (NeverReturned). Nothing else is told of it.
    virtual void OnUnstarted(const Exchange& request);
    /// Each answer before the end, also those that the exchange does not keep; it does not hold this one yet.
    virtual void OnAnswer(const Exchange& request, const Answer& answer);
    virtual void OnError(const Exchange& request, const RequestError& error);
    /// When it has ended, or when the log shows no more of it: in the order of ends, not of requests.
    virtual void OnExchange(const Exchange& exchange) = 0;
    virtual void OnLateAnswer(const LateAnswer& answer);
    /// Results and errors of no request that is known: its start is not in the log, or was forgotten.
    virtual void OnStrayAnswer(const Link& link, const Answer& answer);
    virtual void OnStrayError(const Link& link, const RequestError& error);
};

/// Whether a request asks its receiver not to answer if all is well. By the link's protocol.
using SuppressionRule = bool (*)(const Link& link, Bytes request);

/// Memory is bounded: of more than MostOpen requests without an end, the oldest is given up as open.
class Exchanges
{
public:
    static constexpr std::size_t MostOpen = 20'000;

    /// `sink` outlives it. Without a rule no request suppresses its answer.
    explicit Exchanges(ExchangeSink& sink, SuppressionRule rule = nullptr) : sink_(sink), rule_(rule) {}

    void OnEntry(const Call& call, bool isEvent);
    void OnCall(const Call& call);
    void OnItem(const Item& item);
    void OnComms(const Comms& report);
    /// The log ends: gives out what is open.
    void Finish();

    LinkBook& Links() { return links_; }
    /// Where the first request is that has not been given out: of what is before it, nothing new will come.
    std::optional<Position> FirstOpen() const;

private:
    struct LinkKey
    {
        std::uint32_t Session;
        std::uint32_t Module;
        std::uint32_t Link;
        friend auto operator<=>(const LinkKey&, const LinkKey&) = default;
    };
    struct Key
    {
        LinkKey On;
        std::uint32_t Primitive;
        friend auto operator<=>(const Key&, const Key&) = default;
    };
    /// An item that outlives the reader's buffers.
    struct Arrival
    {
        Key Of; ///< primitive UndefinedHandle: of none
        ItemKind Kind;
        Position At;
        LogTime Time;
        std::uint32_t Timestamp;
        std::uint32_t Code;
        std::string CodeName;
        std::optional<std::uint32_t> Extra;
        std::optional<std::uint32_t> AcceptanceId;
        std::optional<std::uint32_t> TransferTime; ///< us, by both stamps of a result
        std::optional<std::uint32_t> TxDone;       ///< those stamps where they are valid
        std::optional<std::uint32_t> Start;
        Answer Result;
    };
    struct OpenExchange
    {
        Exchange What;
        std::optional<std::uint32_t> ExecutingAt;       ///< us, by the library's clock
        std::vector<std::uint32_t> NegativeAcceptances; ///< acceptance ids of negative responses
        bool IsCancelRequested = false;
    };
    struct Ended
    {
        Key Of;
        LateAnswer Late; ///< all but the answer
        LogTime EndTime;
        std::vector<std::uint32_t> NegativeAcceptances;
    };
    struct SentReport
    {
        std::uint32_t Session;
        Position At;
        LogTime Time;
        std::vector<std::uint8_t> Data;
    };
    using Slot = std::map<std::uint64_t, OpenExchange>::iterator;

    static LinkKey LinkOf(const Call& call);
    static Arrival ArrivalOf(const Item& item);
    static RequestError ErrorOf(Arrival&& arrival, LogTime begin, std::optional<std::uint32_t> executingAt);
    OpenExchange Begin(const Call& start);
    void Start(const Call& start);
    void TellRefused(const Call& start);
    void TellUnreturned(const Call& start);
    void EndStarting(const Call& start);
    void Take(Arrival&& arrival);
    void Apply(Slot slot, Arrival&& arrival);
    void AddAnswer(OpenExchange& open, Arrival&& arrival);
    void AddError(OpenExchange& open, Arrival&& arrival);
    void TakeStray(Arrival&& arrival);
    void TakeLate(Arrival&& arrival);
    void TakeHeld(const LinkKey& link);
    void FindSending(Exchange& exchange);
    void End(Slot slot);
    void EndWhere(const auto& isMeant);

    ExchangeSink& sink_;
    SuppressionRule rule_;
    LinkBook links_;
    std::map<std::uint64_t, OpenExchange> open_; ///< by Seq
    std::map<Key, std::uint64_t> openByHandle_;
    std::map<LinkKey, std::vector<Position>> starting_; ///< of starts that have not returned
    std::deque<Arrival> held_; ///< items that came while a start on their link had not returned
    std::deque<Ended> ended_;
    std::deque<SentReport> sent_;
};

} // namespace marvane::read
