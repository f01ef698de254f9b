// A JSON object on one line, composed fast: it appends to a buffer that is used again and again.
#pragma once

#include "tool/export/record_writer.h"

namespace marvane::tool {

/// Appends a string with its quotes. What is no UTF-8 becomes U+FFFD; false if there was any.
bool AppendJsonString(std::string& out, std::string_view text);

/// Appends an array of strings; an object of strings and numbers. False as above.
bool AppendJsonArray(std::string& out, std::span<const std::string_view> texts);
bool AppendJsonObject(std::string& out, std::span<const NamedValue> values);

/// Appends bytes in lower-case hexadecimal, without blanks.
void AppendHex(std::string& out, std::span<const std::uint8_t> bytes);

/// A record with the key "kind"; "bytes_replaced" if a text was no UTF-8.
class JsonLine : public RecordWriter
{
public:
    bool Takes(std::string_view) const override { return true; }
    void Begin(std::string_view kind) override
    {
        text_ = "{";
        isReplaced_ = false;
        Text("kind", kind);
    }
    void Text(std::string_view key, std::string_view value) override
    {
        Key(key);
        isReplaced_ |= !AppendJsonString(text_, value);
    }
    void Number(std::string_view key, std::int64_t value) override;
    void Flag(std::string_view key, bool value) override
    {
        Key(key);
        text_ += value ? "true" : "false";
    }
    void Hex(std::string_view key, std::span<const std::uint8_t> bytes) override;
    void Texts(std::string_view key, std::span<const std::string_view> texts) override
    {
        Key(key);
        isReplaced_ |= !AppendJsonArray(text_, texts);
    }
    void Values(std::string_view key, std::span<const NamedValue> values) override
    {
        Key(key);
        isReplaced_ |= !AppendJsonObject(text_, values);
    }
    std::string_view End() override
    {
        if (isReplaced_)
            Flag("bytes_replaced", true);
        text_ += "}\n";
        return text_;
    }

private:
    void Key(std::string_view key)
    {
        text_ += text_.size() > 1 ? ",\"" : "\"";
        text_ += key;
        text_ += "\":";
    }

    std::string text_;
    bool isReplaced_ = false;
};

} // namespace marvane::tool
