#include "tool/commands/talk_filter.h"

#include <algorithm>
#include <cctype>
#include <charconv>

#include "tool/analysis/link_words.h"
#include "tool/words/describe.h"

namespace marvane::tool {

namespace {

bool IsPartOf(std::string_view part, std::string_view text)
{
    const auto isSame = [](unsigned char one, unsigned char other) {
        return std::tolower(one) == std::tolower(other);
    };
    return std::search(text.begin(), text.end(), part.begin(), part.end(), isSame) != text.end();
}

/// "F190", "0xF190"; nothing if it is no hexadecimal number up to `most`.
std::optional<std::uint32_t> HexNumber(std::string_view text, std::uint32_t most)
{
    if (text.starts_with("0x") || text.starts_with("0X"))
        text.remove_prefix(2);
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, 16);
    const bool isWhole = error == std::errc() && end == text.data() + text.size();
    return isWhole && number <= most ? std::optional(number) : std::nullopt;
}

std::optional<std::uint32_t> HexOption(const Arguments& arguments, std::string_view option,
                                       std::uint32_t most)
{
    const auto value = arguments.Value(option);
    if (!value)
        return std::nullopt;
    if (const auto number = HexNumber(*value, most))
        return number;
    throw UsageError(std::string(option) + ": '" + *value + "' is no hexadecimal number such as " +
                     (most > 0xFF ? "F190" : "31"));
}

bool IsHandle(std::string_view text, std::uint32_t handle)
{
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() && number == handle;
}

bool IsService(std::string_view asked, const read::Exchange& exchange)
{
    if (exchange.Request.empty())
        return false;
    if (const auto number = HexNumber(asked, 0xFF))
        return exchange.Request[0] == *number;
    const words::RequestWords request = words::DescribeRequest(DialectOf(*exchange.On), exchange.Request);
    return IsPartOf(asked, request.Summary) || (request.What && IsPartOf(asked, request.What->Name));
}

} // namespace

TalkFilter TalkFilter::Of(const Arguments& arguments)
{
    TalkFilter filter;
    filter.Link = arguments.Value("--link");
    filter.Service = arguments.Value("--service");
    if (const auto identifier = HexOption(arguments, "--did", 0xFFFF))
        filter.Identifier = static_cast<std::uint16_t>(*identifier);
    if (const auto code = HexOption(arguments, "--nrc", 0xFF))
        filter.Nrc = static_cast<std::uint8_t>(*code);
    if (const auto slow = arguments.Number("--slow", 0, 1'000'000'000))
        filter.SlowerThanUs = *slow * 1000;
    return filter;
}

bool TalkFilter::Accepts(const read::Link& link) const
{
    if (!Link || IsHandle(*Link, link.Handle))
        return true;
    // A number is a handle and no part of a name.
    const bool isNumber = Link->find_first_not_of("0123456789") == std::string::npos;
    return !isNumber && (IsPartOf(*Link, link.Protocol) || IsPartOf(*Link, link.Resource));
}

bool TalkFilter::Accepts(const read::Exchange& exchange) const
{
    if (!Accepts(*exchange.On) || (Service && !IsService(*Service, exchange)))
        return false;
    if (Identifier) {
        const auto request = words::DescribeRequest(DialectOf(*exchange.On), exchange.Request);
        if (request.Identifier != Identifier && request.Routine != Identifier)
            return false;
    }
    if (Nrc &&
        std::ranges::none_of(exchange.Answers, [&](const read::Answer& answer) { return answer.Nrc == Nrc; }))
        return false;
    if (!SlowerThanUs)
        return true;
    const auto first = exchange.FirstAnswer() ? exchange.FirstAnswer() : exchange.ErrorAfter;
    return first && first->Us > *SlowerThanUs;
}

} // namespace marvane::tool
