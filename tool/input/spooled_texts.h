// Texts that grow side by side and are read one after the other, in bounded memory.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/temporary_file.h"

namespace marvane::tool {

/// Keeps the last pieces in memory and the rest in a temporary file.
class SpooledTexts
{
public:
    static constexpr std::size_t MostHeld = 16 * 1024 * 1024;

    /// `mostHeld` characters stay in memory. Tests want fewer.
    explicit SpooledTexts(std::size_t mostHeld = MostHeld) : mostHeld_(mostHeld) {}

    /// Adds to the text of that number. Throws Trouble if the temporary file can't be written.
    void Add(std::size_t number, std::string_view text);

    /// Gives the text of that number, piece by piece.
    void Read(std::size_t number, const std::function<void(std::string_view)>& give) const;

private:
    struct Part
    {
        std::uint64_t Begin; ///< in the file
        std::uint32_t Size;
    };
    struct Text
    {
        std::vector<Part> Parts;
        std::string Rest;
    };
    void Spool();

    std::vector<Text> texts_;
    std::size_t held_ = 0;
    std::size_t mostHeld_;
    std::unique_ptr<platform::TemporaryFile> file_; ///< made when it is needed
};

} // namespace marvane::tool
