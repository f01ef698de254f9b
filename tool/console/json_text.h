// JSON objects and arrays as text, for `--json`.
#pragma once

#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>

namespace marvane::tool {

/// A string with its quotes. What is no UTF-8 becomes U+FFFD.
std::string JsonString(std::string_view text);

class JsonObject
{
public:
    JsonObject& Add(std::string_view key, std::string_view text) { return AddRaw(key, JsonString(text)); }
    JsonObject& Add(std::string_view key, const char* text) { return Add(key, std::string_view(text)); }
    JsonObject& Add(std::string_view key, std::integral auto number)
    {
        return AddRaw(key, std::to_string(number));
    }
    JsonObject& Add(std::string_view key, bool flag) { return AddRaw(key, flag ? "true" : "false"); }
    /// A value that is JSON already.
    JsonObject& AddRaw(std::string_view key, std::string_view json);
    std::string Text() const { return "{" + members_ + "}"; }

private:
    std::string members_;
};

class JsonArray
{
public:
    JsonArray& Add(std::string_view text) { return AddRaw(JsonString(text)); }
    JsonArray& AddRaw(std::string_view json);
    std::string Text() const { return "[" + elements_ + "]"; }

private:
    std::string elements_;
};

/// An array of what `toJson` makes of each element.
template <typename List, typename ToJson> std::string ListJson(const List& list, const ToJson& toJson)
{
    JsonArray array;
    for (const auto& each : list)
        array.AddRaw(toJson(each));
    return array.Text();
}

} // namespace marvane::tool
