// The encoding of an XML file: its bytes as UTF-8, and the way back from a place in that text to a byte of
// the file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace marvane::tool {

/// A file that is not XML, or is XML of a kind that is refused. `Offset` is in the text that was scanned.
class XmlError : public std::runtime_error
{
public:
    XmlError(const std::string& message, std::size_t offset) : std::runtime_error(message), Offset(offset) {}
    std::size_t Offset;
};

enum class XmlEncoding : std::uint8_t
{
    Utf8,
    Utf16LittleEndian,
    Utf16BigEndian,
    Latin1,
};

/// An XML file as UTF-8 without its byte-order mark.
class XmlText
{
public:
    /// Throws XmlError for an encoding other than those of XmlEncoding, for UTF-16 without a byte-order mark,
    /// and for bytes that are no UTF-16; bytes that are no UTF-8 are left to the scanner.
    explicit XmlText(std::string_view bytes);

    const std::string& Utf8() const { return text_; }
    XmlEncoding Encoding() const { return encoding_; }
    bool HasMark() const { return markSize_ != 0; }

    /// The byte of the file at which the character at `offset` of Utf8() begins; its size for the end.
    std::size_t FileOffset(std::size_t offset) const;

    /// A UTF-8 text in the encoding of the file. Throws XmlError if the encoding lacks one of its characters.
    std::string Encoded(std::string_view utf8) const;

private:
    void DecodeUtf16(std::string_view bytes);
    void DecodeLatin1(std::string_view bytes);
    void Append(char32_t character, std::size_t fileOffset);

    std::string text_;
    XmlEncoding encoding_ = XmlEncoding::Utf8;
    std::size_t markSize_ = 0;
    std::vector<std::uint32_t> fileOffsets_; ///< for each byte of text_ and its end; empty for UTF-8
};

/// One character of UTF-8 and its length in bytes; a length of 0 for bytes that are no UTF-8.
struct Utf8Character
{
    char32_t Value = 0;
    std::size_t Length = 0;
};
Utf8Character ReadUtf8(std::string_view text, std::size_t offset);

/// Appends a character as UTF-8.
void AppendUtf8(std::string& text, char32_t character);

/// True if all of a text is UTF-8.
bool IsUtf8(std::string_view text);

} // namespace marvane::tool
