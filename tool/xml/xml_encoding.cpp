#include "tool/xml/xml_encoding.h"

#include <algorithm>

namespace marvane::tool {

namespace {

constexpr std::string_view Utf8Mark = "\xEF\xBB\xBF";

/// The encoding that the XML declaration names, in upper case; empty if it names none.
std::string DeclaredEncoding(std::string_view text)
{
    if (!text.starts_with("<?xml"))
        return {};
    const std::string_view declaration = text.substr(0, text.find("?>"));
    std::size_t at = declaration.find("encoding");
    at = at == std::string_view::npos ? at : declaration.find_first_of("\"'", at);
    if (at == std::string_view::npos)
        return {};
    const std::size_t end = declaration.find(declaration[at], at + 1);
    if (end == std::string_view::npos)
        return {};
    std::string name(declaration.substr(at + 1, end - at - 1));
    std::transform(name.begin(), name.end(), name.begin(),
                   [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
    return name;
}

char32_t Unit(std::string_view bytes, std::size_t at, bool bigEndian)
{
    const auto first = static_cast<unsigned char>(bytes[at]);
    const auto second = static_cast<unsigned char>(bytes[at + 1]);
    return bigEndian ? static_cast<char32_t>(first << 8 | second)
                     : static_cast<char32_t>(second << 8 | first);
}

void AppendUnit(std::string& out, char32_t unit, bool bigEndian)
{
    const char high = static_cast<char>(unit >> 8);
    const char low = static_cast<char>(unit & 0xFF);
    out += bigEndian ? high : low;
    out += bigEndian ? low : high;
}

bool IsHighSurrogate(char32_t unit)
{
    return unit >= 0xD800 && unit < 0xDC00;
}

bool IsLowSurrogate(char32_t unit)
{
    return unit >= 0xDC00 && unit < 0xE000;
}

} // namespace

XmlText::XmlText(std::string_view bytes)
{
    const bool littleEndian = bytes.starts_with("\xFF\xFE");
    const bool bigEndian = bytes.starts_with("\xFE\xFF");
    if (littleEndian || bigEndian) {
        encoding_ = bigEndian ? XmlEncoding::Utf16BigEndian : XmlEncoding::Utf16LittleEndian;
        markSize_ = 2;
        DecodeUtf16(bytes);
        return;
    }
    if (bytes.size() >= 2 && (bytes[0] == 0 || bytes[1] == 0))
        throw XmlError("is UTF-16 without a byte-order mark", 0);
    if (bytes.starts_with(Utf8Mark))
        markSize_ = Utf8Mark.size();
    const std::string declared = DeclaredEncoding(bytes.substr(markSize_));
    if (declared == "ISO-8859-1" && markSize_ == 0) {
        encoding_ = XmlEncoding::Latin1;
        DecodeLatin1(bytes);
        return;
    }
    if (!declared.empty() && declared != "UTF-8" && declared != "US-ASCII")
        throw XmlError("has the encoding " + declared + "; UTF-8, UTF-16 and ISO-8859-1 can be edited", 0);
    text_ = bytes.substr(markSize_);
}

void XmlText::DecodeUtf16(std::string_view bytes)
{
    const bool bigEndian = encoding_ == XmlEncoding::Utf16BigEndian;
    if (bytes.size() % 2 != 0)
        throw XmlError("is UTF-16 with half a character at its end", 0);
    for (std::size_t at = markSize_; at < bytes.size(); at += 2) {
        const std::size_t begin = at;
        char32_t character = Unit(bytes, at, bigEndian);
        if (IsHighSurrogate(character) && at + 2 < bytes.size() &&
            IsLowSurrogate(Unit(bytes, at + 2, bigEndian))) {
            at += 2;
            character = 0x10000 + ((character - 0xD800) << 10) + (Unit(bytes, at, bigEndian) - 0xDC00);
        } else if (IsHighSurrogate(character) || IsLowSurrogate(character))
            throw XmlError("holds half a character of UTF-16", text_.size());
        Append(character, begin);
    }
    fileOffsets_.push_back(static_cast<std::uint32_t>(bytes.size()));
    const std::string declared = DeclaredEncoding(text_);
    if (!declared.empty() && !declared.starts_with("UTF-16"))
        throw XmlError("is UTF-16 but declares " + declared, 0);
}

void XmlText::DecodeLatin1(std::string_view bytes)
{
    for (std::size_t at = 0; at < bytes.size(); ++at)
        Append(static_cast<unsigned char>(bytes[at]), at);
    fileOffsets_.push_back(static_cast<std::uint32_t>(bytes.size()));
}

void XmlText::Append(char32_t character, std::size_t fileOffset)
{
    AppendUtf8(text_, character);
    fileOffsets_.resize(text_.size(), static_cast<std::uint32_t>(fileOffset));
}

std::size_t XmlText::FileOffset(std::size_t offset) const
{
    return fileOffsets_.empty() ? offset + markSize_ : fileOffsets_[offset];
}

std::string XmlText::Encoded(std::string_view utf8) const
{
    if (encoding_ == XmlEncoding::Utf8)
        return std::string(utf8);
    std::string out;
    for (std::size_t at = 0; at < utf8.size();) {
        const Utf8Character character = ReadUtf8(utf8, at);
        if (character.Length == 0)
            throw XmlError("can't take a text that is not UTF-8", 0);
        at += character.Length;
        if (encoding_ == XmlEncoding::Latin1) {
            if (character.Value > 0xFF)
                throw XmlError("is ISO-8859-1 and lacks a character of the new path", 0);
            out += static_cast<char>(character.Value);
            continue;
        }
        const bool bigEndian = encoding_ == XmlEncoding::Utf16BigEndian;
        if (character.Value >= 0x10000)
            AppendUnit(out, 0xD800 + ((character.Value - 0x10000) >> 10), bigEndian);
        AppendUnit(out,
                   character.Value >= 0x10000 ? 0xDC00 + ((character.Value - 0x10000) & 0x3FF)
                                              : character.Value,
                   bigEndian);
    }
    return out;
}

Utf8Character ReadUtf8(std::string_view text, std::size_t offset)
{
    const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(text[at]); };
    const unsigned char first = byte(offset);
    if (first < 0x80)
        return {first, 1};
    const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4 || offset + length > text.size())
        return {};
    char32_t value = first & (0xFFu >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(offset + i) & 0xC0) != 0x80)
            return {};
        value = value << 6 | (byte(offset + i) & 0x3Fu);
    }
    const bool overlong = (length == 3 && value < 0x800) || (length == 4 && value < 0x10000);
    if (overlong || value > 0x10FFFF || (value >= 0xD800 && value < 0xE000))
        return {};
    return {value, length};
}

void AppendUtf8(std::string& text, char32_t character)
{
    const auto append = [&](char32_t byte) { text += static_cast<char>(byte); };
    if (character < 0x80)
        return append(character);
    if (character < 0x800)
        append(0xC0 | character >> 6);
    else {
        if (character < 0x10000)
            append(0xE0 | character >> 12);
        else {
            append(0xF0 | character >> 18);
            append(0x80 | (character >> 12 & 0x3F));
        }
        append(0x80 | (character >> 6 & 0x3F));
    }
    append(0x80 | (character & 0x3F));
}

bool IsUtf8(std::string_view text)
{
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t length = ReadUtf8(text, at).Length;
        if (length == 0)
            return false;
        at += length;
    }
    return true;
}

} // namespace marvane::tool
