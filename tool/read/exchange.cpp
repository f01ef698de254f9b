#include "tool/read/exchange.h"

#include <algorithm>
#include <iterator>

namespace marvane::read {

std::string_view OutcomeName(Outcome outcome)
{
    constexpr std::string_view names[] = {"answered", "refused", "silent",      "cancelled",
                                          "sent",     "open",    "not_started", "never_returned"};
    static_assert(std::size(names) == OutcomeCount);
    return names[static_cast<std::size_t>(outcome)];
}

const Answer* Exchange::Deciding() const
{
    const auto good = std::ranges::find(Answers, AnswerKind::Good, &Answer::Kind);
    if (good != Answers.end())
        return &*good;
    const auto refusal = std::ranges::find(Answers, AnswerKind::Refusal, &Answer::Kind);
    return refusal == Answers.end() ? nullptr : &*refusal;
}

std::optional<Latency> Exchange::FirstAnswer() const
{
    for (const Answer& answer : Answers)
        if (answer.Kind != AnswerKind::Pending)
            return answer.After;
    return std::nullopt;
}

} // namespace marvane::read
