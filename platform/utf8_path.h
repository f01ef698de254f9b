// Paths of the standard library and their texts, which are UTF-8 on every system; on Linux they are the bytes
// of the path.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace marvane::platform {

inline std::filesystem::path FilePath(std::string_view utf8)
{
    return {std::u8string(utf8.begin(), utf8.end())};
}

inline std::string PathText(const std::filesystem::path& path)
{
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

} // namespace marvane::platform
