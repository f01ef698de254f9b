// Formatting with formats that are not literals.
#pragma once

#include <vector>

#include "text/format.h"

namespace marvane::testing {

/// Formats into [out, end), and cuts what does not fit. Returns the end of the text.
inline char* FormatAtRunTime(char* out, char* end, std::string_view format, const FormatArgument* arguments)
{
    std::vector<FormatPiece> pieces;
    std::string_view rest = format;
    for (FormatPiece piece; (piece = NextPiece(rest)).Conversion != 0;) {
        pieces.push_back(piece);
        rest.remove_prefix(static_cast<std::size_t>(piece.Literal + piece.Length));
    }
    return FormatText(out, end, FormattedText{format, pieces.data(), arguments, pieces.size()});
}

} // namespace marvane::testing
