// Secrets in the texts of a log.
#include <algorithm>
#include <optional>

#include "tool/export/redactor.h"

namespace marvane::tool {

namespace {

read::Bytes BytesOf(std::string_view text)
{
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

int DigitOf(std::uint8_t letter)
{
    if (letter >= '0' && letter <= '9')
        return letter - '0';
    const int upper = letter & ~0x20;
    return upper >= 'A' && upper <= 'F' ? upper - 'A' + 10 : -1;
}

/// Bytes in hexadecimal, and where each stands. They are next to each other or a blank apart.
struct HexRun
{
    std::vector<std::uint8_t> Bytes;
    std::vector<std::size_t> Places;
};

HexRun HexAt(read::Bytes text, std::size_t at)
{
    HexRun run;
    constexpr std::size_t longest = 512; // in bytes; longer secrets are no words of a text
    while (at + 1 < text.size() && run.Bytes.size() < longest) {
        const int high = DigitOf(text[at]);
        const int low = DigitOf(text[at + 1]);
        if (high < 0 || low < 0)
            break;
        run.Bytes.push_back(static_cast<std::uint8_t>(high << 4 | low));
        run.Places.push_back(at);
        at += 2;
        if (at < text.size() && text[at] == ' ')
            ++at;
    }
    return run;
}

bool IsDigitOrLetter(std::uint8_t letter)
{
    return IsWordLetter(letter) && letter != '_';
}

/// Where the number begins that follows "serial number" and the like at the beginning of a text.
std::optional<std::size_t> SerialNumberIn(std::string_view text)
{
    constexpr std::string_view words[] = {"serial number", "serial no", "serialnumber", "serial_number"};
    for (const std::string_view word : words) {
        const auto isSame = [](char one, char other) { return (one | 0x20) == other || one == other; };
        if (text.size() <= word.size() || !std::ranges::equal(text.substr(0, word.size()), word, isSame))
            continue;
        const std::size_t begin = text.find_first_not_of(" .:=#\"'\t", word.size());
        return begin == std::string_view::npos || begin == word.size() ? std::nullopt : std::optional(begin);
    }
    return std::nullopt;
}

} // namespace

/// A text that is no listing: secrets stand in it as they are, or in hexadecimal.
void Redactor::RedactText(std::uint32_t number, std::uint64_t line, File& file, std::size_t begin,
                          std::size_t end)
{
    const std::string old = file.Text.substr(begin, end - begin);
    const read::Bytes bytes = BytesOf(old);
    auto* const out = reinterpret_cast<std::uint8_t*>(file.Text.data() + begin);
    RedactKnown(bytes, out);
    for (std::size_t at = 0; !values_.IsEmpty() && at < bytes.size();)
        at += std::max<std::size_t>(RedactHex(bytes, at, out), 1);
    if (Takes(words::Secret::Serial))
        RedactSerial(bytes, out);
    if (std::string_view(file.Text).substr(begin, end - begin) != old)
        marks_.AddLine(number, line);
}

/// Replaces a known secret that stands at a place in hexadecimal; returns how many characters it takes.
/// Numbers with 0x before them are handles, addresses and codes.
std::size_t Redactor::RedactHex(read::Bytes bytes, std::size_t at, std::uint8_t* out)
{
    if (at > 0 && (IsDigitOrLetter(bytes[at - 1]) && DigitOf(bytes[at - 1]) < 0))
        return 0;
    const HexRun run = HexAt(bytes, at);
    const read::Bytes found = values_.FindAt(run.Bytes);
    if (found.empty())
        return 0;
    const bool isSmall =
        std::ranges::any_of(bytes.subspan(at), [](auto letter) { return letter >= 'a' && letter <= 'f'; });
    const char* const digits = isSmall ? "0123456789abcdef" : "0123456789ABCDEF";
    const std::vector<std::uint8_t> other = values_.Replacement(found);
    for (std::size_t i = 0; i < other.size(); ++i) {
        out[run.Places[i]] = static_cast<std::uint8_t>(digits[other[i] >> 4]);
        out[run.Places[i] + 1] = static_cast<std::uint8_t>(digits[other[i] & 15]);
    }
    return run.Places[other.size() - 1] + 2 - at;
}

/// Replaces what follows the words "serial number".
void Redactor::RedactSerial(read::Bytes bytes, std::uint8_t* out)
{
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    for (std::size_t at = text.find_first_of("sS"); at != std::string_view::npos;
         at = text.find_first_of("sS", at + 1)) {
        const std::optional<std::size_t> number = SerialNumberIn(text.substr(at));
        if (!number)
            continue;
        const std::size_t begin = at + *number;
        std::size_t end = begin;
        while (end < text.size() && (IsDigitOrLetter(bytes[end]) || text[end] == '-'))
            ++end;
        const read::Bytes serial = bytes.subspan(begin, end - begin);
        if (std::ranges::none_of(serial, [](auto letter) { return letter >= '0' && letter <= '9'; }))
            continue;
        values_.Learn(serial);
        Replace(serial, out + begin);
    }
}

} // namespace marvane::tool
