#include "tool/console/arguments.h"

#include <charconv>

namespace marvane::tool {

bool Arguments::Has(std::string_view option) const
{
    return values_.contains(option);
}

std::optional<std::string> Arguments::Value(std::string_view option) const
{
    const std::vector<std::string>& values = Values(option);
    return values.empty() ? std::nullopt : std::optional(values.back());
}

const std::vector<std::string>& Arguments::Values(std::string_view option) const
{
    static const std::vector<std::string> none;
    const auto found = values_.find(option);
    return found == values_.end() ? none : found->second;
}

std::optional<std::uint64_t> Arguments::Number(std::string_view option, std::uint64_t least,
                                               std::uint64_t most) const
{
    const std::optional<std::string> text = Value(option);
    if (!text)
        return std::nullopt;
    std::uint64_t number = 0;
    const auto [end, error] = std::from_chars(text->data(), text->data() + text->size(), number);
    if (error == std::errc() && end == text->data() + text->size() && number >= least && number <= most)
        return number;
    std::string range =
        most == UINT64_MAX ? "a whole number" : "a whole number up to " + std::to_string(most);
    if (least > 0)
        range += " from " + std::to_string(least) + " on";
    throw UsageError(std::string(option) + " takes " + range + ", not '" + *text + "'");
}

void Arguments::Set(std::string_view option, std::vector<std::string> values)
{
    values_.insert_or_assign(std::string(option), std::move(values));
}

std::string_view LongName(const Option& option)
{
    const std::size_t comma = option.Names.rfind(',');
    return comma == std::string_view::npos ? option.Names : option.Names.substr(comma + 1);
}

} // namespace marvane::tool
