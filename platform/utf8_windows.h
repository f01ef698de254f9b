// UTF-8 and the wide strings of Windows, for the sources of this folder that call it.
#pragma once

#include <string>

#include <windows.h>

namespace marvane::platform {

inline std::wstring WideFromUtf8(const std::string& text)
{
    const int size = static_cast<int>(text.size());
    std::wstring wide(text.size(), L'\0');
    wide.resize(static_cast<std::size_t>(
        MultiByteToWideChar(CP_UTF8, 0, text.data(), size, wide.data(), static_cast<int>(wide.size()))));
    return wide;
}

inline std::string Utf8FromWide(const std::wstring& wide)
{
    const int size = static_cast<int>(wide.size());
    std::string text(wide.size() * 3, '\0');
    text.resize(static_cast<std::size_t>(WideCharToMultiByte(
        CP_UTF8, 0, wide.data(), size, text.data(), static_cast<int>(text.size()), nullptr, nullptr)));
    return text;
}

/// The system's message for an error code, without its line end.
inline std::string SystemMessage(DWORD error)
{
    wchar_t* text = nullptr;
    const DWORD length = FormatMessageW(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM |
                                            FORMAT_MESSAGE_IGNORE_INSERTS,
                                        nullptr, error, 0, reinterpret_cast<wchar_t*>(&text), 0, nullptr);
    std::string message = length == 0 ? "error " + std::to_string(error) : Utf8FromWide({text, length});
    LocalFree(text);
    while (!message.empty() && (message.back() == '\n' || message.back() == '\r' || message.back() == ' '))
        message.pop_back();
    return message;
}

} // namespace marvane::platform
