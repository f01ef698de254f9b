// Values of the API that log lines show as a word or a handle: arguments for "%s".
#pragma once

#include <cstddef>
#include <string_view>
#include <type_traits>

#include "pdu/pdu_api.h"
#include "text/digits.h"
#include "text/text_copy.h"

namespace marvane {

/// A handle: "<PDU_HANDLE_UNDEF>", or "0x" and eight hexadecimal digits.
struct HandleText
{
    static constexpr std::string_view Undefined = "<PDU_HANDLE_UNDEF>";
    static constexpr std::size_t Most = Undefined.size(); ///< characters

    explicit constexpr HandleText(UNUM32 value) : Value(value) {}
    /// Writes the text, at most Most characters. Returns its end.
    char* PutTo(char* out) const
    {
        if (Value == PDU_HANDLE_UNDEF)
            return PutText(out, Undefined);
        out = PutText(out, "0x");
        PutHex(out, Value, UpperCase);
        return out + 8;
    }

    UNUM32 Value;
};

/// A unique response identifier: "<PDU_ID_UNDEF>", or the number in decimal.
struct UridText
{
    static constexpr std::string_view Undefined = "<PDU_ID_UNDEF>";
    static constexpr std::size_t Most = Undefined.size(); ///< characters

    explicit constexpr UridText(UNUM32 value) : Value(value) {}
    /// Writes the text, at most Most characters. Returns its end.
    char* PutTo(char* out) const
    {
        return Value == PDU_ID_UNDEF ? PutText(out, Undefined) : PutDecimal(out, Value);
    }

    UNUM32 Value;
};

/// The types of this header.
template <class T>
concept ValueText = std::is_same_v<T, HandleText> || std::is_same_v<T, UridText>;

} // namespace marvane
