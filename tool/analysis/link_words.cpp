#include "tool/analysis/link_words.h"

#include "tool/console/row_text.h"
#include "tool/words/describe.h"
#include "tool/words/negative_codes.h"

namespace marvane::tool {

words::Dialect DialectOf(const read::Link& link)
{
    const words::Dialect dialect = words::DialectOf(link.Protocol);
    return dialect == words::Dialect::Unknown ? words::DialectOf(link.Resource) : dialect;
}

bool SuppressesAnswer(const read::Link& link, read::Bytes request)
{
    return words::DescribeRequest(DialectOf(link), request).WantsNoAnswer;
}

std::string NrcText(words::Dialect dialect, std::uint8_t code)
{
    const std::string_view name = words::NegativeCodeName(dialect, code);
    return name.empty() ? "0x" + ByteText(code) : std::string(name);
}

std::string LinkText(const read::Link& link)
{
    const bool hasModule = link.Module != read::UndefinedHandle;
    std::string text;
    if (link.Handle != read::UndefinedHandle)
        text = "link " + std::to_string(link.Handle);
    else if (hasModule)
        return "module " + std::to_string(link.Module);
    if (!text.empty() && hasModule && link.Module != 1)
        text += " of module " + std::to_string(link.Module);
    return text;
}

} // namespace marvane::tool
