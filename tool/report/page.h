// The page of a report: a skeleton with places for its style, its script and the data.
#pragma once

#include <string>
#include <string_view>

#include "tool/export/sink.h"

namespace marvane::tool {

// The files of the page; the scripts are joined.
std::string_view ReportPage();
std::string_view ReportStyle();
std::string_view ReportScript();

/// What the page is about. The data are PackedText.
struct PageContent
{
    std::string Title; ///< any text
    std::string Model;
    std::string Lines;
    std::string Raw; ///< empty: the page has no such block
};

/// Writes the page. Nothing of the content but the title can be anything but plain characters to a browser,
/// and the page's policy lets it run its own script alone.
void WritePage(const PageContent& content, Sink& sink);

/// A text with nothing in it that a browser takes for markup.
std::string HtmlText(std::string_view text);

} // namespace marvane::tool
