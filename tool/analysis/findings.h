// What went wrong in a log, each with its why where the log has it.
#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "tool/analysis/ecu_state.h"
#include "tool/analysis/item_balance.h"
#include "tool/analysis/link_history.h"
#include "tool/analysis/mdf_names.h"
#include "tool/analysis/settings_hints.h"
#include "tool/read/exchanges.h"
#include "tool/read/log_reader.h"

namespace marvane::tool {

enum class FindingKind : std::uint8_t
{
    FailedCall,
    Refused,
    Silent,
    Late,
    DataLost,
    InFlight,
    Cut,
    Damaged,
    NotLoaded,
    ItemLeak,
    // Normal, and shown on demand only.
    EmptyQueue,
    Pending,
};

/// "failed_call", ...
std::string_view FindingName(FindingKind kind);
constexpr bool IsNormal(FindingKind kind)
{
    return kind == FindingKind::EmptyQueue || kind == FindingKind::Pending;
}

struct Finding
{
    FindingKind Kind = FindingKind::Damaged;
    read::Position At;
    read::LogTime Time{};
    std::uint32_t Session = 0;
    std::uint64_t Seq = 0;          ///< of the call; 0 if it is about none
    std::string Subject{};          ///< "PDULockResource, link 2"
    std::string Text{};             ///< "RSC_LOCKED_BY_OTHER_CLL (0x00A1)"
    std::vector<std::string> Why{}; ///< "link 1 holds the lock since line 510"
    std::uint64_t Count = 1;        ///< how many of its kind it stands for
};

/// A sink that finds what went wrong. It gives out each finding when it is known, which is not always in the
/// order of lines.
class Findings : public read::LogSink, private read::ExchangeSink
{
public:
    static constexpr read::Wants Wants = read::Wants::Calls | read::Wants::Comms | read::Wants::Items;

    Findings();

    virtual void OnFinding(const Finding& finding) = 0;
    /// To be overridden by one who also wants the exchanges.
    virtual void OnEnded(const read::Exchange&) {}

    /// To be called after LogReader::Finish.
    void FinishFindings();

    void OnSession(const read::Session& session) override;
    void OnEntry(const read::Call& call, bool isEvent) override;
    void OnCall(const read::Call& call) override;
    void OnEvent(const read::Event& event) override;
    void OnItem(const read::Item& item) override;
    void OnComms(const read::Comms& report) override;
    void OnProblem(const read::Problem& problem) override;

    /// Of all sessions together.
    std::uint64_t ItemsGiven() const;
    std::uint64_t ItemsDestroyed() const;
    read::LinkBook& Links() { return exchanges_.Links(); }
    /// Names for what the log shows as numbers. To be called first.
    void UseNames(const MdfNames& names);
    /// Requests and answers of which the log shows a part only. Those without a byte are not among them.
    std::uint64_t CutPayloads() const { return cutPayloads_; }
    const SettingsHints& Hints() const { return hints_; }

private:
    struct LongCallback
    {
        std::uint32_t Session;
        read::Position At;
        read::LogTime Begin;
        read::LogTime End;
    };

    struct Loss
    {
        std::uint32_t Session;
        std::optional<std::uint32_t> Link; ///< none: of the module's queue
        read::Position At;
        read::LogTime Time;
    };

    struct NotLoaded
    {
        std::uint32_t Process = 0;
        read::Position First;
        read::LogTime FirstTime;
        std::uint64_t More = 0; ///< calls since it, and since they were put
    };

    void OnExchange(const read::Exchange& exchange) override;
    void OnLateAnswer(const read::LateAnswer& answer) override;
    void Put(FindingKind kind, const read::Call& call, std::string text, std::vector<std::string> why = {});
    void PutErrorItem(const read::Item& item);
    std::vector<std::string> ExtraErrorText(std::uint32_t session, std::optional<std::uint32_t> number) const;
    void PutFailed(const read::Call& call);
    void PutMoreNotLoaded(std::uint32_t session, NotLoaded& calls);
    void PutUnfinished(const read::Call& call);
    std::vector<std::string> WhatIsInFlight(const read::Call& call);
    std::vector<std::string> WhySilent(const read::Exchange& exchange) const;
    std::string WhySentLate(const read::Exchange& exchange, std::int64_t sentAfterMs) const;
    std::vector<std::string> WhyRefused(const read::Exchange& exchange) const;
    std::string RefusalText(const read::Exchange& exchange) const;
    void FindRefused(const read::Exchange& exchange, Finding finding);
    std::string ErrorText(std::uint32_t session, std::string_view name, std::uint32_t code) const;
    void FindSilent(const read::Exchange& exchange, Finding finding);
    void PutLeak(const read::Call& destruct);

    read::Exchanges exchanges_;
    LinkHistory history_;
    EcuStates states_;
    std::map<std::uint32_t, ItemBalance> items_;                     ///< by session
    std::map<std::uint32_t, std::uint32_t> processOf_;               ///< by session
    std::map<std::uint32_t, NotLoaded> notLoaded_;                   ///< by session
    std::map<std::uint32_t, std::vector<std::string>> whyNotLoaded_; ///< by session
    std::map<std::uint32_t, SettingsHints> hintsOf_;                 ///< by session
    SettingsHints hints_;                                            ///< of all sessions
    MdfNames names_;
    std::uint64_t cutPayloads_ = 0;
    std::deque<LongCallback> callbacks_;
    std::deque<Loss> losses_;
};

} // namespace marvane::tool
