// Formatting with formats that are not literals.
#pragma once

#include <vector>

#include "text/format.h"

namespace marvane::testing {

/// Formats into [out, end), and cuts what does not fit. Returns the end of the text.
inline char* FormatAtRunTime(char* out, char* end, std::string_view format, const FormatArgument* arguments)
{
    std::vector<FormatConversion> conversions;
    std::string_view rest = format;
    for (FormatConversion conversion; (conversion = NextConversion(rest)).Specifier != 0;) {
        conversions.push_back(conversion);
        rest.remove_prefix(static_cast<std::size_t>(conversion.Literal + conversion.Length));
    }
    return FormatText(out, end, FormattedText{format, conversions.data(), arguments, conversions.size()});
}

} // namespace marvane::testing
