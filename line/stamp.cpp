#include "line/stamp.h"

#include "text/digits.h"
#include "text/read_digits.h"
#include "text/text_copy.h"

namespace marvane {

namespace {

constexpr std::string_view Template = "{00:00:00.000 - 00000000} ";
static_assert(Template.size() == StampLength);

// Columns of the numbers.
constexpr std::size_t Hour = 1;
constexpr std::size_t Minute = 4;
constexpr std::size_t Second = 7;
constexpr std::size_t Milliseconds = 10;
constexpr std::size_t Thread = 16;

/// True if all that is no number is as in the template.
bool HasFrame(const char* text)
{
    return text[0] == '{' && text[3] == ':' && text[6] == ':' && text[9] == '.' && text[13] == ' ' &&
           text[14] == '-' && text[15] == ' ' && text[24] == '}' && text[25] == ' ';
}

} // namespace

char* PutStamp(char* out, Stamp stamp)
{
    PutText(out, Template);
    PutTwoDigits(out + Hour, stamp.Hour);
    PutTwoDigits(out + Minute, stamp.Minute);
    PutTwoDigits(out + Second, stamp.Second);
    PutStampMilliseconds(out, stamp.Milliseconds);
    PutHex(out + Thread, stamp.Thread, UpperCase);
    return out + StampLength;
}

std::optional<Stamp> ParseStamp(std::string_view text)
{
    if (text.size() < StampLength || !HasFrame(text.data()))
        return std::nullopt;
    const char* const at = text.data();
    Stamp stamp;
    const bool isNumbers =
        ReadDecimal<2>(at + Hour, stamp.Hour) && ReadDecimal<2>(at + Minute, stamp.Minute) &&
        ReadDecimal<2>(at + Second, stamp.Second) && ReadDecimal<3>(at + Milliseconds, stamp.Milliseconds) &&
        ReadHex<8>(at + Thread, stamp.Thread);
    if (!isNumbers || stamp.Hour > 23 || stamp.Minute > 59 || stamp.Second > 60)
        return std::nullopt;
    return stamp;
}

} // namespace marvane
