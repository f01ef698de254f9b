// Wide strings of Windows and the narrow ones of narrow_text.h, for the sources of this folder that call the
// system.
#pragma once

#include <optional>
#include <string>

#include "platform/utf8_windows.h"

namespace marvane::platform {

/// The wide form of a narrow string.
std::wstring WideFromNarrow(const std::string& bytes);

/// A narrow form that WideFromNarrow turns back: in the process's code page, as the system's narrow functions
/// have it, where that is possible, else in UTF-8.
std::string NarrowFromWide(const std::wstring& wide);

/// As NarrowFromWide, but UTF-8 if `model` shows that it is, by holding other characters than ASCII.
std::string NarrowLike(const std::string& model, const std::wstring& wide);

std::optional<std::wstring> WideVariable(const std::wstring& name);

/// Replaces each %NAME%. Empty if the system refuses.
std::wstring ExpandWide(const std::wstring& text);

} // namespace marvane::platform
