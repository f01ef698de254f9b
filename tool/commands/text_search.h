// A text that is searched for in very many others.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace marvane::tool {

class TextSearch
{
public:
    explicit TextSearch(std::string text);

    bool IsIn(std::string_view text) const;

private:
    std::string text_;
    std::size_t rarest_ = 0; ///< place of the character of the text that logs hold least often
};

} // namespace marvane::tool
