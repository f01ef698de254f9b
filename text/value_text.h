// Values of the API that a log line shows as a text of their own, as arguments of its statements.
#pragma once

#include <cstddef>
#include <string_view>
#include <type_traits>

#include "pdu/pdu_api.h"
#include "text/text_copy.h"

namespace marvane {

/// "<PDU_HANDLE_UNDEF>", or eight hexadecimal digits behind "0x".
struct HandleText
{
    static constexpr std::string_view Undefined = "<PDU_HANDLE_UNDEF>";
    static constexpr std::size_t Most = Undefined.size();

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

/// "<PDU_ID_UNDEF>", or a response identifier in decimal.
struct UridText
{
    static constexpr std::string_view Undefined = "<PDU_ID_UNDEF>";
    static constexpr std::size_t Most = Undefined.size();

    explicit constexpr UridText(UNUM32 value) : Value(value) {}
    /// Writes the text, at most Most characters. Returns its end.
    char* PutTo(char* out) const
    {
        return Value == PDU_ID_UNDEF ? PutText(out, Undefined) : PutDecimal(out, Value);
    }

    UNUM32 Value;
};

template <class T>
concept ValueText = std::is_same_v<T, HandleText> || std::is_same_v<T, UridText>;

} // namespace marvane
