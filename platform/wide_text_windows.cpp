#include "platform/wide_text_windows.h"

#include <algorithm>

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

/// Empty if `flags` refuse what the bytes hold.
std::wstring Wide(const std::string& bytes, UINT codePage, DWORD flags)
{
    const int size = static_cast<int>(bytes.size());
    std::wstring wide(bytes.size(), L'\0');
    wide.resize(static_cast<std::size_t>(MultiByteToWideChar(codePage, flags, bytes.data(), size, wide.data(),
                                                             static_cast<int>(wide.size()))));
    return wide;
}

bool IsAscii(const std::string& bytes)
{
    return std::all_of(bytes.begin(), bytes.end(),
                       [](char byte) { return static_cast<unsigned char>(byte) < 0x80; });
}

} // namespace

std::wstring WideFromNarrow(const std::string& bytes)
{
    const std::wstring wide = Wide(bytes, CP_UTF8, MB_ERR_INVALID_CHARS);
    return wide.empty() && !bytes.empty() ? Wide(bytes, AnsiCodePage(), 0) : wide;
}

std::string NarrowFromWide(const std::wstring& wide)
{
    const int size = static_cast<int>(wide.size());
    std::string bytes(wide.size() * 4, '\0');
    bytes.resize(static_cast<std::size_t>(WideCharToMultiByte(
        CP_ACP, 0, wide.data(), size, bytes.data(), static_cast<int>(bytes.size()), nullptr, nullptr)));
    return WideFromNarrow(bytes) == wide ? bytes : Utf8FromWide(wide);
}

std::string NarrowLike(const std::string& model, const std::wstring& wide)
{
    const bool modelIsUtf8 = !IsAscii(model) && !Wide(model, CP_UTF8, MB_ERR_INVALID_CHARS).empty();
    return modelIsUtf8 ? Utf8FromWide(wide) : NarrowFromWide(wide);
}

std::optional<std::wstring> WideVariable(const std::wstring& name)
{
    std::wstring value(256, L'\0');
    for (;;) {
        SetLastError(ERROR_SUCCESS);
        const DWORD length =
            GetEnvironmentVariableW(name.c_str(), value.data(), static_cast<DWORD>(value.size()));
        if (length == 0 && GetLastError() == ERROR_ENVVAR_NOT_FOUND)
            return std::nullopt;
        const bool fits = length < value.size();
        value.resize(length);
        if (fits)
            return value;
    }
}

std::wstring ExpandWide(const std::wstring& text)
{
    const DWORD size = ExpandEnvironmentStringsW(text.c_str(), nullptr, 0);
    std::wstring expanded(size, L'\0');
    const DWORD length = ExpandEnvironmentStringsW(text.c_str(), expanded.data(), size);
    expanded.resize(length == 0 || length > size ? 0 : length - 1); // without the terminator
    return expanded;
}

} // namespace marvane::platform
