// A large JSON object, written as it comes.
#pragma once

#include <charconv>
#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "tool/report/packed_text.h"

namespace marvane::tool {

/// One object with objects of columns in it. Keys are plain words.
class JsonStream
{
public:
    /// `out` outlives it.
    explicit JsonStream(PackedText& out) : out_(out) { Begin('{'); }

    /// A member whose value is JSON already.
    void Member(std::string_view key, std::string_view json)
    {
        Key(key);
        text_ += json;
        FlushIfLong();
    }
    void Member(std::string_view key, std::integral auto number) { Member(key, std::to_string(number)); }

    /// An object of columns is begun and ended.
    void BeginColumns(std::string_view key)
    {
        Key(key);
        Begin('{');
    }
    void EndColumns() { End('}'); }

    /// An array of one number a row.
    template <typename Rows, typename Value>
    void Column(std::string_view key, const Rows& rows, const Value& valueOf)
    {
        Key(key);
        Begin('[');
        for (const auto& row : rows)
            Number(static_cast<std::int64_t>(valueOf(row)));
        End(']');
    }

    /// An array of what each number is more than the one before it; the first is itself.
    template <typename Rows, typename Value>
    void Differences(std::string_view key, const Rows& rows, const Value& valueOf)
    {
        std::int64_t last = 0;
        Column(key, rows, [&](const auto& row) {
            const auto value = static_cast<std::int64_t>(valueOf(row));
            return value - std::exchange(last, value);
        });
    }

    void Finish()
    {
        text_ += '}';
        out_.Write(text_);
    }

private:
    void Begin(char bracket)
    {
        text_ += bracket;
        isFirst_ = true;
    }
    void End(char bracket)
    {
        text_ += bracket;
        isFirst_ = false;
    }
    void Key(std::string_view key)
    {
        text_ += isFirst_ ? "\"" : ",\"";
        text_ += key;
        text_ += "\":";
        isFirst_ = false;
    }
    void Number(std::int64_t number)
    {
        char digits[24];
        text_ += isFirst_ ? "" : ",";
        text_.append(digits, std::to_chars(digits, digits + sizeof digits, number).ptr);
        isFirst_ = false;
        FlushIfLong();
    }
    void FlushIfLong()
    {
        constexpr std::size_t longText = 64 * 1024;
        if (text_.size() < longText)
            return;
        out_.Write(text_);
        text_.clear();
    }

    PackedText& out_;
    std::string text_;
    bool isFirst_ = true;
};

} // namespace marvane::tool
