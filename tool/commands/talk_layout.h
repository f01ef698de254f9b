// The conversation in columns.
#pragma once

#include <string>
#include <string_view>

#include "tool/analysis/talk_rows.h"
#include "tool/console/console.h"
#include "tool/read/log_time.h"

namespace marvane::tool {

/// The columns of the conversation on a screen of so many columns.
class TalkLayout
{
public:
    explicit TalkLayout(const Console& console);

    /// "   time    #  request ..."
    std::string Header() const;
    /// A line of the conversation; `response` may be longer than its column, then it takes lines of its own.
    std::string Row(std::string_view time, std::string_view number, const RequestText& request,
                    const ResponseRow& response, std::string_view line) const;
    /// A line that is about no request: "CP_P2Max 50 -> 5000".
    std::string Remark(std::string_view time, std::string_view text, std::string_view line) const;

private:
    const Console& console_;
    std::size_t extra_; ///< columns beyond the usual width, all for the response
};

/// All lines of a request.
std::string TalkLines(const TalkLayout& layout, const read::Exchange& exchange, read::LogTime begin);

} // namespace marvane::tool
