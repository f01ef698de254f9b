// One line of the configuration file. The file looks like XML but is searched line by line; what these
// searches accept, and nothing else, is the format.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace marvane {

/// What a line of the file's body is.
enum class LineKind : std::uint8_t
{
    NotAnAttribute,
    NoName, ///< Name has no closing quote; neither have NoType and NoValue theirs
    NoType,
    NoValue,
    UnsupportedType, ///< neither "String" nor "UNUM32"; nothing is stored
    String,
    Number,
};

/// One field of an attribute.
struct AttributeField
{
    std::string Text;
    std::size_t Begin = 0;  ///< offset of the text in the line
    bool HasMarker = false; ///< false: the line lacks Name=" (Type=", Value="), and the text is a leftover
};

/// What a line yields. Fields after the first one without a closing quote are empty.
struct AttributeLine
{
    LineKind Kind = LineKind::NotAnAttribute;
    AttributeField Name;
    AttributeField Type;
    AttributeField Value;
    std::uint32_t Number = 0; ///< the value of a Number
};

/// Reads one line, given without its line end.
AttributeLine ScanAttributeLine(const std::string& line);

/// Decimal digits after optional white space and sign, limited to a signed 32-bit number and returned as its
/// bit pattern; 0 without digits. Whatever follows the digits is ignored.
std::uint32_t ToNumber(const std::string& text);

} // namespace marvane
