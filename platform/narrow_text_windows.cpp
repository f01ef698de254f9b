#include "platform/narrow_text.h"

#include "platform/wide_text_windows.h"

namespace marvane::platform {

std::string Utf8FromNarrow(const std::string& bytes)
{
    return Utf8FromWide(WideFromNarrow(bytes));
}

void MatchEncodings(std::string& first, std::string& second)
{
    if (WideFromNarrow(first + second) == WideFromNarrow(first) + WideFromNarrow(second))
        return;
    first = Utf8FromNarrow(first);
    second = Utf8FromNarrow(second);
}

std::optional<std::string> Utf8Variable(const std::string& name)
{
    const std::optional<std::wstring> value = WideVariable(WideFromUtf8(name));
    return value ? std::optional(Utf8FromWide(*value)) : std::nullopt;
}

std::string ExpandUtf8(const std::string& text)
{
    return Utf8FromWide(ExpandWide(WideFromNarrow(text)));
}

} // namespace marvane::platform
