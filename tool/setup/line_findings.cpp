// CheckFindings about single lines of the configuration file.
#include <algorithm>
#include <set>

#include "tool/console/nearest.h"
#include "tool/setup/configuration_findings.h"
#include "tool/xml/xml_encoding.h"

namespace marvane::tool {

namespace {

constexpr std::string_view Blanks = " \t";

std::string InLowerCase(std::string_view text)
{
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return lower;
}

bool Contains(std::string_view text, std::string_view part)
{
    return text.find(part) != std::string_view::npos;
}

/// The known key that differs from `name` in upper and lower case alone; empty if there is none.
std::string_view KeyOfOtherCase(std::string_view name)
{
    for (const std::string_view key : AllKeyNames())
        if (key != name && InLowerCase(key) == InLowerCase(name))
            return key;
    return {};
}

CheckFinding Warn(const ConfigurationLine& line, std::string text)
{
    return {FindingLevel::Warning, {}, std::move(text), line.Number};
}

/// Why a field has no marker: what stands there instead of NAME=".
std::string WhyNoMarker(const std::string& line, const std::string& field)
{
    const std::size_t at = InLowerCase(line).find(InLowerCase(field));
    if (at == std::string::npos)
        return "has no " + field;
    if (line.compare(at, field.size(), field) != 0)
        return "must have " + field + " spelt so";
    const std::size_t equals = line.find_first_not_of(Blanks, at + field.size());
    if (equals == std::string::npos || line[equals] != '=')
        return "has no " + field;
    const std::size_t quote = line.find_first_not_of(Blanks, equals + 1);
    if (equals != at + field.size() || quote != equals + 1)
        return "has blanks around the \"=\" of " + field;
    if (line[quote] == '\'')
        return "has single quotes at " + field;
    const std::string_view rest = std::string_view(line).substr(quote);
    if (rest.starts_with("\xE2\x80") || rest.starts_with('\x93') || rest.starts_with('\x94') ||
        rest.starts_with('\x84'))
        return "has curly quotes at " + field;
    return "has no quotes at " + field;
}

/// The first field without its marker, with the reason; empty if all three have one.
std::string FirstMissingField(const std::string& line)
{
    for (const char* const field : {"Name", "Type", "Value"})
        if (!Contains(line, std::string(field) + "=\""))
            return WhyNoMarker(line, field);
    return {};
}

/// Lines of the body that are no attribute but look as if one was meant.
CheckFindings MeantAsAttribute(const ConfigurationLine& line)
{
    const std::size_t begin = line.Text.find_first_not_of(Blanks);
    if (line.InComment || begin == std::string::npos)
        return {};
    const std::string_view text = std::string_view(line.Text).substr(begin);
    if (InLowerCase(text).starts_with("<attribute"))
        return {
            Warn(line, text.starts_with("<Attribute")
                           ? "The attribute goes over several lines and does not count. Write it on one line."
                           : "The line does not count: the tag must be spelt \"<Attribute \".")};
    for (const std::string_view key : AllKeyNames())
        if (InLowerCase(text).starts_with("<" + InLowerCase(key)))
            return {Warn(line, "The element does not count. Write " + AttributeText(key, "...") + ".")};
    return {};
}

CheckFindings BrokenAttribute(const ConfigurationLine& line)
{
    const std::string advice = " Write Name=\"...\" Type=\"...\" Value=\"...\" on one line.";
    const std::string missing = FirstMissingField(line.Text);
    if (!Contains(line.Text, "/>") && !Contains(line.Text, "</") && !missing.empty() &&
        missing.starts_with("has no "))
        return {Warn(
            line,
            "The attribute goes over several lines and is not read as it is meant. Write it on one line.")};
    if (!missing.empty())
        return {Warn(line, "The attribute " + missing + " and is not read as it is meant." + advice)};
    static constexpr const char* fields[] = {"", "Name", "Type", "Value"};
    return {Warn(line, std::string("The closing quote of ") +
                           fields[static_cast<std::size_t>(line.Attribute.Kind)] +
                           " is missing: the line does not count.")};
}

std::string QuotedType(std::string_view type)
{
    return "Type=\"" + std::string(type) + "\"";
}

/// Type against key. Empty if they fit.
CheckFindings TypeFindings(const ConfigurationLine& line)
{
    const AttributeLine& attribute = line.Attribute;
    const std::string& key = attribute.Name.Text;
    const char* const wanted = FindNumericKey(key) ? "UNUM32" : FindStringKey(key) ? "String" : nullptr;
    if (attribute.Kind == LineKind::UnsupportedType)
        return {Warn(line, key + " has " + QuotedType(attribute.Type.Text) + " and does not count. Write " +
                               (wanted ? QuotedType(wanted) : "\"UNUM32\" or \"String\"") + ".")};
    if (wanted && attribute.Type.Text != wanted)
        return {Warn(line, key + " has " + QuotedType(attribute.Type.Text) + " and does not count. Write " +
                               QuotedType(wanted) + ".")};
    return {};
}

CheckFindings UnknownKey(const ConfigurationLine& line)
{
    const std::string& key = line.Attribute.Name.Text;
    if (FindNumericKey(key) || FindStringKey(key))
        return {};
    const std::vector<std::string_view> known = AllKeyNames();
    if (const std::string_view other = KeyOfOtherCase(key); !other.empty())
        return {Warn(line, key + " does not count: upper and lower case matter. Write " + std::string(other) +
                               ".")};
    if (const std::string_view near = Nearest(key, known); !near.empty())
        return {Warn(line, key + " is no key of Marvane. Did you mean " + std::string(near) + "?")};
    return {{FindingLevel::Note, {}, key + " is no key of Marvane and has no effect.", line.Number}};
}

/// A line whose attribute is stored, or would be but for its type.
CheckFindings StoredAttribute(const ConfigurationLine& line)
{
    CheckFindings findings = UnknownKey(line);
    Append(findings, TypeFindings(line));
    const std::size_t first = line.Text.find("<Attribute ");
    if (line.Text.find("<Attribute ", first + 1) != std::string::npos)
        findings.push_back(Warn(line, "Two attributes on one line: only " + line.Attribute.Name.Text +
                                          " counts. Give each a line of its own."));
    if (!IsUtf8(line.Text))
        findings.push_back(
            Warn(line, "The line is not UTF-8: its characters depend on the system's code page. Save "
                       "the file as UTF-8."));
    return findings;
}

CheckFindings FindingsOf(const ConfigurationLine& line)
{
    if (line.Attribute.Kind == LineKind::NotAnAttribute) {
        CheckFindings findings = MeantAsAttribute(line);
        if (findings.empty() && !IsUtf8(line.Text))
            findings.push_back({FindingLevel::Note,
                                {},
                                "The line is not UTF-8; harmless, since it holds no attribute.",
                                line.Number});
        return findings;
    }
    if (!FirstMissingField(line.Text).empty() || line.Attribute.Kind == LineKind::NoName ||
        line.Attribute.Kind == LineKind::NoType || line.Attribute.Kind == LineKind::NoValue)
        return BrokenAttribute(line);
    return StoredAttribute(line);
}

bool IsStored(const ConfigurationLine& line)
{
    return line.Attribute.Kind == LineKind::String || line.Attribute.Kind == LineKind::Number;
}

/// What a line does to earlier ones, and a comment that is none to the library.
CheckFindings OrderFindings(const Configuration& configuration)
{
    CheckFindings findings;
    std::map<std::pair<LineKind, std::string>, std::size_t> seen;
    for (const ConfigurationLine& line : configuration.Body) {
        if (!IsStored(line))
            continue;
        const std::string& key = line.Attribute.Name.Text;
        std::size_t& earlier = seen[{line.Attribute.Kind, key}];
        const std::string overrides = "it overrides line " + std::to_string(earlier);
        if (line.InComment)
            findings.push_back(Warn(line, key + " stands in a comment and counts all the same" +
                                              (earlier != 0 ? ": " + overrides : "") +
                                              ". Delete the line to switch it off."));
        else if (earlier != 0)
            findings.push_back(Warn(line, key + " is here a second time: " + overrides + "."));
        earlier = line.Number;
    }
    return findings;
}

} // namespace

CheckFindings LineFindings(const Configuration& configuration)
{
    CheckFindings findings;
    for (const ConfigurationLine& line : configuration.Body)
        Append(findings, FindingsOf(line));
    Append(findings, OrderFindings(configuration));
    return findings;
}

std::string AttributeText(std::string_view key, std::string_view value)
{
    const char* const type = FindNumericKey(key) ? "UNUM32" : "String";
    return "<Attribute Name=\"" + std::string(key) + "\" Type=\"" + type + "\" Value=\"" +
           std::string(value) + "\"/>";
}

CheckFindings ConfigurationFindings(const Configuration& configuration, char separator,
                                    const Expander& expand)
{
    CheckFindings findings = FileFindings(configuration);
    if (configuration.End == ReadingStep::NoHeader || configuration.End == ReadingStep::NoBlockName)
        return findings;
    Append(findings, LineFindings(configuration));
    Append(findings, NumberFindings(configuration));
    Append(findings, PathFindings(configuration, separator, expand));
    const auto place = [](const CheckFinding& finding) {
        return finding.Line == 0 ? SIZE_MAX : finding.Line;
    };
    std::stable_sort(
        findings.begin(), findings.end(),
        [&](const CheckFinding& one, const CheckFinding& other) { return place(one) < place(other); });
    return findings;
}

} // namespace marvane::tool
