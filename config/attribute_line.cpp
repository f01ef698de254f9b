#include "config/attribute_line.h"

#include <cstdlib>

namespace marvane {

namespace {

/// Takes a field from after its marker to the next quote. False if that quote is missing.
bool TakeField(const std::string& line, std::string_view marker, AttributeField& field)
{
    const std::size_t found = line.find(marker);
    field.HasMarker = found != std::string::npos;
    // Not found is the largest number, so the sum wraps round to one less than the marker's length. Files
    // rely on what is read from there.
    field.Begin = found + marker.size();
    const std::size_t end = line.find('"', field.Begin);
    if (end == std::string::npos)
        return false;
    field.Text = line.substr(field.Begin, end - field.Begin);
    return true;
}

LineKind ScanFields(const std::string& line, AttributeLine& attribute)
{
    if (line.find("<Attribute ") == std::string::npos)
        return LineKind::NotAnAttribute;
    if (!TakeField(line, "Name=\"", attribute.Name))
        return LineKind::NoName;
    if (!TakeField(line, "Type=\"", attribute.Type))
        return LineKind::NoType;
    if (!TakeField(line, "Value=\"", attribute.Value))
        return LineKind::NoValue;
    if (attribute.Type.Text == "String")
        return LineKind::String;
    return attribute.Type.Text == "UNUM32" ? LineKind::Number : LineKind::UnsupportedType;
}

} // namespace

AttributeLine ScanAttributeLine(const std::string& line)
{
    AttributeLine attribute;
    attribute.Kind = ScanFields(line, attribute);
    if (attribute.Kind == LineKind::Number)
        attribute.Number = ToNumber(attribute.Value.Text);
    return attribute;
}

std::uint32_t ToNumber(const std::string& text)
{
    const long long number = std::strtoll(text.c_str(), nullptr, 10);
    const long long limited = number < INT32_MIN ? INT32_MIN : number > INT32_MAX ? INT32_MAX : number;
    return static_cast<std::uint32_t>(static_cast<std::int32_t>(limited));
}

} // namespace marvane
