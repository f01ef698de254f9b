#include "platform/registry.h"

#include "platform/utf8_windows.h"

namespace marvane::platform {

std::optional<std::string> MachineRegistryText(RegistryView view, const std::string& key,
                                               const std::string& value)
{
    // Expands a REG_EXPAND_SZ too; asking for that type as well is an error unless expansion is declined.
    const DWORD flags =
        RRF_RT_REG_SZ | (view == RegistryView::Bits64 ? RRF_SUBKEY_WOW6464KEY : RRF_SUBKEY_WOW6432KEY);
    const std::wstring wideKey = WideFromUtf8(key);
    const std::wstring wideValue = WideFromUtf8(value);
    DWORD size = 0;
    if (RegGetValueW(HKEY_LOCAL_MACHINE, wideKey.c_str(), wideValue.c_str(), flags, nullptr, nullptr,
                     &size) != ERROR_SUCCESS)
        return std::nullopt;
    // Twice the room: expansion may take more than the size that was reported.
    std::wstring text(size, L'\0');
    size *= static_cast<DWORD>(sizeof(wchar_t));
    if (RegGetValueW(HKEY_LOCAL_MACHINE, wideKey.c_str(), wideValue.c_str(), flags, nullptr, text.data(),
                     &size) != ERROR_SUCCESS)
        return std::nullopt;
    text.resize(wcsnlen(text.c_str(), text.size()));
    return Utf8FromWide(text);
}

} // namespace marvane::platform
