// A request and its answer in words.
//
//     const Dialect dialect = DialectOf("ISO_15765_3_on_ISO_15765_2");
//     const RequestWords asked = DescribeRequest(dialect, request);
//     asked.Summary                                      "read identifier"
//     asked.Detail                                       "VIN"
//     DescribeAnswer(dialect, request, answer).Kind      AnswerKind::Positive
#pragma once

#include <optional>
#include <string>

#include "tool/words/services.h"

namespace marvane::words {

struct RequestWords
{
    const Service* What = nullptr;           ///< null: no words for this one
    std::optional<std::uint8_t> SubFunction; ///< without the bit that suppresses the answer
    std::optional<std::uint16_t> Identifier; ///< the (first) data identifier
    std::optional<std::uint16_t> Routine;
    bool WantsNoAnswer = false; ///< suppressPosRspMsgIndicationBit: silence is right then, no timeout
    std::string Summary;        ///< short words, at most 21 characters; empty: none
    std::string Detail;         ///< the standard's name of sub-function, identifier or routine; may be empty
};

/// The words for a request. `request` may be cut: what is missing is left out.
RequestWords DescribeRequest(Dialect dialect, Bytes request);

enum class AnswerKind : std::uint8_t
{
    Positive,
    Refused, ///< 7F SID NRC
    Pending, ///< 7F SID 78: the answer is still to come
    Other    ///< not an answer to this request, or the dialect is unknown
};

struct AnswerWords
{
    AnswerKind Kind = AnswerKind::Other;
    std::optional<std::uint8_t> Code; ///< NRC of Refused and Pending
    std::string_view CodeName;        ///< empty for a reserved one
    std::string Detail; ///< what the answer's bytes say beyond it: "P2 50 ms, P2* 5000 ms"; may be empty
};

/// The words for an answer to a request. Where the request is not known (empty), any service fits.
AnswerWords DescribeAnswer(Dialect dialect, Bytes request, Bytes answer);

} // namespace marvane::words
