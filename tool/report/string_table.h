// Strings that repeat, each written once.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

#include "tool/export/json_line.h"

namespace marvane::tool {

class StringTable
{
public:
    /// The empty string has the number 0.
    StringTable() { Number({}); }

    /// The number of a string, which is added if it is new.
    std::uint32_t Number(std::string_view text)
    {
        const auto [place, isNew] =
            numbers_.try_emplace(std::string(text), static_cast<std::uint32_t>(numbers_.size()));
        if (isNew) {
            json_ += json_.empty() ? "" : ",";
            AppendJsonString(json_, text);
        }
        return place->second;
    }

    /// All of them as a JSON array, in the order of their numbers.
    std::string Json() const { return "[" + json_ + "]"; }

private:
    std::unordered_map<std::string, std::uint32_t> numbers_;
    std::string json_;
};

} // namespace marvane::tool
