#include "tool/export/json_line.h"

#include <array>
#include <charconv>

#include "tool/console/row_text.h"

namespace marvane::tool {

namespace {

constexpr std::string_view Replacement = "\xEF\xBF\xBD";
constexpr char Digits[] = "0123456789abcdef";

/// True for the bytes that stand for themselves in a JSON string, whatever is beside them.
constexpr std::array<bool, 256> Plain = [] {
    std::array<bool, 256> plain{};
    for (unsigned i = 0x20; i < 0x7F; ++i)
        plain[i] = i != '"' && i != '\\';
    return plain;
}();

std::size_t PlainLength(std::string_view text)
{
    std::size_t length = 0;
    while (length < text.size() && Plain[static_cast<unsigned char>(text[length])])
        ++length;
    return length;
}

void AppendEscaped(std::string& out, char letter)
{
    const std::string_view letters = "\"\\\n\r\t\b\f";
    const std::size_t place = letters.find(letter);
    out += '\\';
    if (place != std::string_view::npos) {
        out += "\"\\nrtbf"[place];
        return;
    }
    out += "u00";
    out += Digits[static_cast<unsigned char>(letter) >> 4];
    out += Digits[static_cast<unsigned char>(letter) & 15];
}

/// Appends one character that is not plain, and takes it from the text. False if it was no UTF-8.
bool AppendOther(std::string& out, std::string_view& text)
{
    const std::size_t length = Utf8Length(text);
    if (length > 1)
        out += text.substr(0, length);
    else if (length == 1)
        AppendEscaped(out, text.front());
    else
        out += Replacement;
    text.remove_prefix(length == 0 ? 1 : length);
    return length != 0;
}

} // namespace

bool AppendJsonString(std::string& out, std::string_view text)
{
    bool isUtf8 = true;
    out += '"';
    while (!text.empty()) {
        const std::size_t plain = PlainLength(text);
        out += text.substr(0, plain);
        text.remove_prefix(plain);
        if (!text.empty())
            isUtf8 &= AppendOther(out, text);
    }
    out += '"';
    return isUtf8;
}

void AppendHex(std::string& out, std::span<const std::uint8_t> bytes)
{
    const std::size_t begin = out.size();
    out.resize(begin + bytes.size() * 2);
    char* place = out.data() + begin;
    for (const std::uint8_t byte : bytes) {
        *place++ = Digits[byte >> 4];
        *place++ = Digits[byte & 15];
    }
}

bool AppendJsonArray(std::string& out, std::span<const std::string_view> texts)
{
    bool isUtf8 = true;
    out += '[';
    for (std::size_t i = 0; i < texts.size(); ++i) {
        out += i == 0 ? "" : ",";
        isUtf8 &= AppendJsonString(out, texts[i]);
    }
    out += ']';
    return isUtf8;
}

bool AppendJsonObject(std::string& out, std::span<const NamedValue> values)
{
    bool isUtf8 = true;
    out += '{';
    for (std::size_t i = 0; i < values.size(); ++i) {
        out += i == 0 ? "" : ",";
        isUtf8 &= AppendJsonString(out, values[i].Key);
        out += ':';
        if (values[i].IsNumber)
            out += values[i].Text;
        else
            isUtf8 &= AppendJsonString(out, values[i].Text);
    }
    out += '}';
    return isUtf8;
}

void JsonLine::Number(std::string_view key, std::int64_t value)
{
    Key(key);
    char digits[24];
    text_.append(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
}

void JsonLine::Hex(std::string_view key, std::span<const std::uint8_t> bytes)
{
    Key(key);
    text_ += '"';
    AppendHex(text_, bytes);
    text_ += '"';
}

} // namespace marvane::tool
