#include "platform/environment.h"

#include "platform/wide_text_windows.h"

namespace marvane::platform {

std::optional<std::string> EnvironmentVariable(const char* name)
{
    const std::optional<std::wstring> value = WideVariable(WideFromUtf8(name));
    return value ? std::optional(NarrowFromWide(*value)) : std::nullopt;
}

std::string ExpandEnvironment(const std::string& text)
{
    // Bytes that make no characters stay as they are where there is nothing to replace.
    if (text.find('%') == std::string::npos)
        return text.c_str();
    return NarrowLike(text, ExpandWide(WideFromNarrow(text.c_str())));
}

std::string HostName()
{
    wchar_t name[256];
    DWORD size = 256;
    return GetComputerNameExW(ComputerNameDnsHostname, name, &size) && size > 0 ? Utf8FromWide({name, size})
                                                                                : "localhost";
}

} // namespace marvane::platform
