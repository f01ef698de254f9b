// A JSON object on one line, composed fast: it appends to a buffer that is used again and again.
#pragma once

#include <charconv>
#include <concepts>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace marvane::tool {

/// Appends a string with its quotes. What is no UTF-8 becomes U+FFFD; false if there was any.
bool AppendJsonString(std::string& out, std::string_view text);

/// Appends bytes in lower-case hexadecimal, without blanks.
void AppendHex(std::string& out, std::span<const std::uint8_t> bytes);

class JsonLine
{
public:
    /// Begins a new object; the last one is forgotten.
    void Begin()
    {
        text_ = "{";
        isReplaced_ = false;
    }

    // Keys are plain: they are not escaped.
    void Text(std::string_view key, std::string_view value)
    {
        Key(key);
        isReplaced_ |= !AppendJsonString(text_, value);
    }
    /// Leaves the key out if there is no text.
    void TextIfAny(std::string_view key, std::string_view value)
    {
        if (!value.empty())
            Text(key, value);
    }
    void Number(std::string_view key, std::integral auto value)
    {
        Key(key);
        char digits[24];
        text_.append(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
    }
    void True(std::string_view key)
    {
        Key(key);
        text_ += "true";
    }
    void False(std::string_view key)
    {
        Key(key);
        text_ += "false";
    }
    void Hex(std::string_view key, std::span<const std::uint8_t> bytes)
    {
        Key(key);
        text_ += '"';
        AppendHex(text_, bytes);
        text_ += '"';
    }

    /// Appends a key, and gives out the line for the caller to append the value.
    std::string& Key(std::string_view key)
    {
        if (text_.size() > 1)
            text_ += ',';
        text_ += '"';
        text_ += key;
        text_ += "\":";
        return text_;
    }
    /// To be told if a value that was appended by the caller was no UTF-8.
    void MarkReplaced() { isReplaced_ = true; }

    /// Ends the object, with "bytes_replaced" if it applies, and the line.
    std::string_view End()
    {
        if (isReplaced_)
            True("bytes_replaced");
        text_ += "}\n";
        return text_;
    }

private:
    std::string text_;
    bool isReplaced_ = false;
};

} // namespace marvane::tool
