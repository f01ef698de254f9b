#include "tool/console/json_text.h"

#include "tool/console/row_text.h"

namespace marvane::tool {

namespace {

constexpr std::string_view Replacement = "\xEF\xBF\xBD";

std::string Escaped(char letter)
{
    switch (letter) {
    case '"':
        return "\\\"";
    case '\\':
        return "\\\\";
    case '\n':
        return "\\n";
    case '\r':
        return "\\r";
    case '\t':
        return "\\t";
    default:
        return "\\u00" + ByteText(static_cast<std::uint8_t>(letter));
    }
}

} // namespace

std::string JsonString(std::string_view text)
{
    std::string json = "\"";
    while (!text.empty()) {
        const std::size_t length = Utf8Length(text);
        const char first = text.front();
        if (length == 0)
            json += Replacement;
        else if (static_cast<unsigned char>(first) < 0x20 || first == '"' || first == '\\')
            json += Escaped(first);
        else
            json += text.substr(0, length);
        text.remove_prefix(length == 0 ? 1 : length);
    }
    return json += '"';
}

JsonObject& JsonObject::AddRaw(std::string_view key, std::string_view json)
{
    members_.append(members_.empty() ? "" : ",").append(JsonString(key)).append(":").append(json);
    return *this;
}

JsonArray& JsonArray::AddRaw(std::string_view json)
{
    elements_.append(elements_.empty() ? "" : ",").append(json);
    return *this;
}

} // namespace marvane::tool
