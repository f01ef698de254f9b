#include "tool/export/clean_text.h"

#include "tool/console/row_text.h"

namespace marvane::tool {

bool AppendClean(std::string& out, std::string_view text, char quote)
{
    bool isClean = true;
    while (!text.empty()) {
        const char first = text.front();
        const std::size_t length = first == 0 ? 0 : Utf8Length(text);
        if (length == 0)
            out += "\xEF\xBF\xBD";
        else if (first == quote)
            out.append(2, quote);
        else
            out += text.substr(0, length);
        isClean &= length != 0;
        text.remove_prefix(length == 0 ? 1 : length);
    }
    return isClean;
}

} // namespace marvane::tool
