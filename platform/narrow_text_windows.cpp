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

} // namespace marvane::platform
