// The rules by which items become answers, latencies and an outcome.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "tool/read/exchange.h"

namespace marvane::read {

/// From one moment of a clock that wraps around to another; nothing if the other was not after it.
std::optional<std::uint32_t> Elapsed(std::uint32_t from, std::uint32_t to);

/// By the library's clock if it is known, else by the log's.
Latency Passed(std::optional<std::uint32_t> byLibrary, LogTime from, LogTime to);

/// What an answer is; sets its negative response code. `negative` are the acceptance ids of the negative
/// responses that the request expected: they decide where the log shows no bytes.
AnswerKind KindOf(Answer& answer, const std::vector<std::uint8_t>& request,
                  std::optional<std::uint32_t> acceptanceId, const std::vector<std::uint32_t>& negative);

/// Adds an answer, but not those of no interest, so that a request with thousands of them stays small.
void KeepAnswer(Exchange& exchange, Answer&& answer);

/// Cycles of a PDUStartComPrimitive into the exchange, acceptance ids of negative responses into `negative`.
void ReadControlData(const Call& start, Exchange& exchange, std::vector<std::uint32_t>& negative);

Outcome OutcomeOf(const Exchange& exchange, bool isCancelled);

} // namespace marvane::read
