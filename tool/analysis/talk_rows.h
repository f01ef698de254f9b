// The rows of the conversation: a request with its answers in words.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tool/read/exchange.h"
#include "tool/read/param_values.h"
#include "tool/words/dialect.h"

namespace marvane::tool {

/// What one row says on its right side.
struct ResponseRow
{
    char Mark = ' ';  ///< 'X' gone wrong, '!' remarkable, '.' by the way
    std::string Text; ///< "62 F1 90 WSIMVC1E2F3000042"
    std::optional<read::Latency> After;
};

/// The request as the rows show it: bytes, and beside them words.
struct RequestText
{
    std::string Bytes; ///< "22 F1 90", "3E 00  3 cycles", empty without bytes
    std::string Words; ///< "read identifier", "start communication"
};

RequestText RequestTextOf(const read::Exchange& exchange);

/// An answer in one line: bytes, a readable text in place of its printable bytes, the name of a code.
std::string AnswerText(const read::Answer& answer, words::Dialect dialect);

/// ComPrimitives that say nothing to the control unit and show only if something went wrong.
bool IsByTheWay(const read::Exchange& exchange);

/// "CP_P2Max 50 -> 5000", "CP_P2Max = 5000".
std::string ChangeText(const read::ParamChange& change);

/// "late answer, 20 ms after the end"
std::string LateText(const read::LateAnswer& late);

/// At least one row.
std::vector<ResponseRow> ResponseRows(const read::Exchange& exchange);

} // namespace marvane::tool
