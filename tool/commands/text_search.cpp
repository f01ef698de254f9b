#include "tool/commands/text_search.h"

#include <cstring>

namespace marvane::tool {

namespace {

/// The characters that are frequent in logs, the most frequent first. All others are rare.
constexpr std::string_view Frequent = "0 41:et-8275DPa.=U{}TpC<IEm_os>xrSR,()On93d\t6LiFcAlNhuyMgGBvb|+kjf";

} // namespace

TextSearch::TextSearch(std::string text) : text_(std::move(text))
{
    const auto rank = [](char character) { return Frequent.find(character); }; // npos is the rarest
    for (std::size_t i = 1; i < text_.size(); ++i)
        if (rank(text_[i]) > rank(text_[rarest_]))
            rarest_ = i;
}

bool TextSearch::IsIn(std::string_view text) const
{
    if (text_.empty())
        return true;
    // memchr looks at many characters at a time, so the fewer it finds the better.
    for (std::size_t at = rarest_; at < text.size(); ++at) {
        const void* const found = std::memchr(text.data() + at, text_[rarest_], text.size() - at);
        if (!found)
            return false;
        at = static_cast<std::size_t>(static_cast<const char*>(found) - text.data());
        if (text.substr(at - rarest_).starts_with(text_))
            return true;
    }
    return false;
}

} // namespace marvane::tool
