#include "platform/narrow_text.h"

#include "platform/utf8_windows.h"

namespace marvane::platform {

namespace {

/// That of the system: the code page of a process that asks for UTF-8 in its manifest is UTF-8.
UINT AnsiCodePage()
{
    DWORD page = CP_ACP;
    GetLocaleInfoW(LOCALE_SYSTEM_DEFAULT, LOCALE_IDEFAULTANSICODEPAGE | LOCALE_RETURN_NUMBER,
                   reinterpret_cast<wchar_t*>(&page), sizeof page / sizeof(wchar_t));
    return page;
}

std::wstring Wide(const std::string& bytes, UINT codePage, DWORD flags)
{
    const int size = static_cast<int>(bytes.size());
    std::wstring wide(bytes.size(), L'\0');
    wide.resize(static_cast<std::size_t>(MultiByteToWideChar(codePage, flags, bytes.data(), size, wide.data(),
                                                             static_cast<int>(wide.size()))));
    return wide;
}

} // namespace

std::string Utf8FromNarrow(const std::string& bytes)
{
    const bool isUtf8 = bytes.empty() || !Wide(bytes, CP_UTF8, MB_ERR_INVALID_CHARS).empty();
    return isUtf8 ? bytes : Utf8FromWide(Wide(bytes, AnsiCodePage(), 0));
}

std::optional<std::string> Utf8Variable(const std::string& name)
{
    const std::wstring wideName = WideFromUtf8(name);
    std::wstring value(256, L'\0');
    for (;;) {
        SetLastError(ERROR_SUCCESS);
        const DWORD length =
            GetEnvironmentVariableW(wideName.c_str(), value.data(), static_cast<DWORD>(value.size()));
        if (length == 0 && GetLastError() == ERROR_ENVVAR_NOT_FOUND)
            return std::nullopt;
        const bool fits = length < value.size();
        value.resize(length);
        if (fits)
            return Utf8FromWide(value);
    }
}

std::string ExpandUtf8(const std::string& text)
{
    const std::wstring wide = WideFromUtf8(text);
    const DWORD size = ExpandEnvironmentStringsW(wide.c_str(), nullptr, 0);
    std::wstring expanded(size, L'\0');
    const DWORD length = ExpandEnvironmentStringsW(wide.c_str(), expanded.data(), size);
    expanded.resize(length == 0 ? 0 : length - 1); // without the terminator
    return Utf8FromWide(expanded);
}

} // namespace marvane::platform
