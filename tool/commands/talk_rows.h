// The rows of the conversation: a request with its answers in words.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tool/commands/console.h"
#include "tool/read/exchange.h"
#include "tool/read/log_time.h"
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

/// At least one row.
std::vector<ResponseRow> ResponseRows(const read::Exchange& exchange);

/// The columns of the conversation on a screen of so many columns.
class TalkLayout
{
public:
    explicit TalkLayout(const Console& console);

    /// "   time    #  request ..."
    std::string Header() const;
    /// A line of the conversation; `response` may be longer than its column, then it takes lines of its own.
    std::string Row(std::string_view time, std::string_view number, const RequestText& request,
                    const ResponseRow& response, std::string_view line) const;
    /// A line that is about no request: "CP_P2Max 50 -> 5000".
    std::string Remark(std::string_view time, std::string_view text, std::string_view line) const;

private:
    const Console& console_;
    std::size_t extra_; ///< columns beyond the usual width, all for the response
};

/// All lines of a request.
std::string TalkLines(const TalkLayout& layout, const read::Exchange& exchange, read::LogTime begin);

} // namespace marvane::tool
