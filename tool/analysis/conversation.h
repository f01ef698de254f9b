// A log as a conversation: requests with what became of them, and what changed between, in the order in which
// they were begun.
#pragma once

#include <map>
#include <string>
#include <variant>
#include <vector>

#include "tool/analysis/mdf_names.h"
#include "tool/read/exchanges.h"
#include "tool/read/log_reader.h"
#include "tool/read/param_values.h"

namespace marvane::tool {

/// One entry of the conversation.
using Utterance = std::variant<read::Exchange, read::LateAnswer, read::ParamChange>;

read::Position PositionOf(const Utterance& utterance);

/// A sink that gathers the conversation and gives it out in order. An entry waits until those before it are
/// complete, but no longer than MostWaiting others: then what waits is given out, and a request that ends
/// later comes after requests that were begun after it.
class Conversation : public read::LogSink, private read::ExchangeSink
{
public:
    static constexpr std::size_t MostWaiting = 20'000;
    static constexpr std::size_t MostWaitingBytes = 32'000'000;
    static constexpr read::Wants Wants =
        read::Wants::Calls | read::Wants::Comms | read::Wants::Items | read::Wants::Params;

    Conversation();

    /// One after the other, in order.
    virtual void OnUtterance(const Utterance& utterance) = 0;

    /// Where the log has no names. To be called first.
    void UseNames(const MdfNames& names);

    /// Gives out what is complete, although something before it is not: for one who follows a log.
    void GiveOutComplete() { GiveOut(true); }
    /// To be called after LogReader::Finish.
    void FinishConversation();

    void OnSession(const read::Session& session) override { names_.OnSession(session); }
    void OnEntry(const read::Call& call, bool isEvent) override;
    void OnCall(const read::Call& call) override;
    void OnItem(const read::Item& item) override;
    void OnComms(const read::Comms& report) override;
    void OnParam(const read::Param& param) override;

protected:
    read::LinkBook& Links() { return exchanges_.Links(); }

private:
    void OnExchange(const read::Exchange& exchange) override;
    void OnUnstarted(const read::Exchange& request) override { OnExchange(request); }
    void OnLateAnswer(const read::LateAnswer& answer) override;
    void Put(read::Position at, Utterance&& utterance, std::size_t bytes);
    void GiveOut(bool isForced);

    struct Waiting
    {
        Utterance What;
        std::size_t Bytes;
    };

    MdfNames names_;
    read::Exchanges exchanges_;
    read::ParamValues params_;
    std::multimap<read::Position, Waiting> waiting_;
    std::size_t waitingBytes_ = 0;
};

} // namespace marvane::tool
