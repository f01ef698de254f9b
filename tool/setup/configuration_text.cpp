#include "tool/setup/configuration_text.h"

#include <algorithm>

#include "tool/setup/configuration.h"
#include "tool/setup/configuration_findings.h"

namespace marvane::tool {

namespace {

struct LevelRow
{
    std::string_view Name;
    const char* FnCalls;
    const char* Decode;
    const char* CbCalls;
    const char* CallOuts;
    const char* Payload;
};

constexpr LevelRow Levels[] = {
    {"calls", "1", "0", "0", "0", "32"},
    {"arguments", "2", "0", "1", "0", "32"},
    {"decoded", "2", "1", "1", "0", "32"},
    {"full", "2", "2", "1", "1", "4096"},
};

class ConfigurationWriter
{
public:
    explicit ConfigurationWriter(const char* lineEnd) : lineEnd_(lineEnd) {}

    void Line(const std::string& line) { text_ += line + lineEnd_; }
    void Comment(const std::string& comment) { Line("\t<!-- " + comment + " -->"); }
    void Key(std::string_view key, const std::string& value) { Line("\t" + AttributeText(key, value)); }
    const std::string& Text() const { return text_; }

private:
    std::string lineEnd_;
    std::string text_;
};

void WriteLevel(ConfigurationWriter& writer, const NewConfiguration& values)
{
    std::vector<KeyValue> keys = LevelKeys(values.Level);
    if (values.Payload)
        keys.back().Value = std::to_string(*values.Payload);
    for (const KeyValue& key : keys) {
        writer.Comment(std::string(FindNumericKey(key.Key)->Meaning) + ".");
        writer.Key(key.Key, key.Value);
    }
}

bool IsDecimal(const std::string& text)
{
    return !text.empty() && text.size() <= 10 &&
           std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

void CheckNumber(const std::string& key, const std::string& value)
{
    if (!IsDecimal(value) || std::stoull(value) > INT32_MAX)
        throw RefusedValue(key + " takes a decimal number from 0 to 2147483647, and not \"" + value + "\"");
    if (key == "LogEnabled" && std::stoull(value) > 1)
        throw RefusedValue("LogEnabled above 1 is refused by Marvane: the target library is not loaded then");
}

void CheckValue(const std::string& key, const std::string& value)
{
    if (!FindNumericKey(key) && !FindStringKey(key))
        throw RefusedValue(key + " is no key of Marvane");
    if (FindNumericKey(key))
        return CheckNumber(key, value);
    if (value.find_first_of("\"\r\n") != std::string::npos)
        throw RefusedValue("a value can hold neither a double quote nor a line end");
    if (!value.empty() && (value.front() == ' ' || value.back() == ' '))
        throw RefusedValue("a blank at the beginning or the end would be part of the value");
}

/// Offset of the beginning of a line, counted from 1.
std::size_t OffsetOfLine(const std::string& bytes, std::size_t number)
{
    std::size_t at = 0;
    for (std::size_t line = 1; line < number; ++line)
        at = bytes.find('\n', at) + 1;
    return at;
}

/// The line whose value counts for a key; null if there is none.
const ConfigurationLine* LineOfKey(const Configuration& configuration, const std::string& key)
{
    const LineKind wanted = FindNumericKey(key) ? LineKind::Number : LineKind::String;
    const auto found = std::find_if(
        configuration.Body.rbegin(), configuration.Body.rend(), [&](const ConfigurationLine& line) {
            return line.Attribute.Kind == wanted && line.Attribute.Name.Text == key;
        });
    return found == configuration.Body.rend() ? nullptr : &*found;
}

std::string WithNewLine(const Configuration& configuration, const std::string& key, const std::string& value)
{
    if (configuration.End != ReadingStep::Closed)
        throw RefusedValue("the closing tag \"</D_PDU_API_CFG>\" is missing");
    const std::size_t closing = OffsetOfLine(configuration.Bytes, configuration.EndLine);
    const bool isDos = closing >= 2 && configuration.Bytes[closing - 2] == '\r';
    std::string indent;
    if (!configuration.Body.empty()) {
        const std::string& last = configuration.Body.back().Text;
        indent = last.substr(0, std::min(last.find_first_not_of(" \t"), last.size()));
    }
    std::string bytes = configuration.Bytes;
    return bytes.insert(closing, indent + AttributeText(key, value) + (isDos ? "\r\n" : "\n"));
}

std::string Replaced(const Configuration& configuration, const ConfigurationLine& line,
                     const std::string& value)
{
    if (!line.Attribute.Value.HasMarker)
        throw RefusedValue("line " + std::to_string(line.Number) +
                           " has no Value=\"...\" that could be changed");
    std::string bytes = configuration.Bytes;
    const std::size_t at = OffsetOfLine(bytes, line.Number) + line.Attribute.Value.Begin;
    return bytes.replace(at, line.Attribute.Value.Text.size(), value);
}

} // namespace

std::vector<KeyValue> LevelKeys(std::string_view level)
{
    for (const LevelRow& row : Levels)
        if (row.Name == level)
            return {{"LogFnCalls", row.FnCalls},     {"LogFnDecodeArgs", row.Decode},
                    {"LogFnDecodeRsps", row.Decode}, {"LogCbCalls", row.CbCalls},
                    {"LogCallOuts", row.CallOuts},   {"LogMaxPduBuff", row.Payload}};
    return {};
}

std::string ConfigurationText(const NewConfiguration& values, char separator)
{
    ConfigurationWriter writer(separator == '\\' ? "\r\n" : "\n");
    writer.Line("<?xml version=\"1.0\" encoding=\"utf-8\"?>");
    writer.Line(OpeningTag);
    writer.Comment(
        "Read line by line: one attribute a line, lines 2 and last exactly as they are. An attribute in a");
    writer.Comment("comment counts too; to switch one off, delete its line. Numbers are decimal.");
    writer.Line("");
    writer.Comment(
        "The library that Marvane stands in front of: its folder with the separator at the end, its name.");
    writer.Key("InstalledPath", values.InstalledPath);
    writer.Key("PDUAPILibDll", values.TargetName);
    writer.Comment("The folder of the logs; it is made if it is missing. %NAME% is an environment variable.");
    writer.Key("LogFileDir", values.LogFolder);
    writer.Comment(std::string(FindNumericKey("LogEnabled")->Meaning) + ".");
    writer.Key("LogEnabled", "1");
    writer.Line("");
    WriteLevel(writer, values);
    writer.Line("");
    writer.Comment(std::string(FindNumericKey("LogFlush")->Meaning) + ".");
    writer.Key("LogFlush", values.Flush ? "1" : "0");
    writer.Comment(std::string(FindNumericKey("LogFileMaxSize")->Meaning) + ".");
    writer.Key("LogFileMaxSize", std::to_string(values.MaxSize));
    writer.Comment("Files that are kept, less two; 0: one file for ever.");
    writer.Key("LogFileMaxNum", std::to_string(std::max(values.Files, 3u) - 2));
    writer.Line(ClosingTag);
    return writer.Text();
}

std::string WithValue(const std::string& bytes, const std::string& key, const std::string& value)
{
    CheckValue(key, value);
    const Configuration before = ParseConfiguration(bytes);
    if (before.End == ReadingStep::NoHeader || before.End == ReadingStep::NoBlockName)
        throw RefusedValue("nothing of the file is read: line 2 is not \"<D_PDU_API_CFG>\"");
    const ConfigurationLine* const line = LineOfKey(before, key);
    std::string changed = line ? Replaced(before, *line, value) : WithNewLine(before, key, value);
    const Configuration after = ParseConfiguration(changed);
    const ConfigurationLine* const found = LineOfKey(after, key);
    if (!found || found->Attribute.Value.Text != value || after.End != before.End)
        throw RefusedValue("the line would be longer than 999 characters, or not be read as it is meant");
    return changed;
}

const char* WhenItCounts(std::string_view key)
{
    if (key == "LogFileDir" || key == "InstalledPath" || key == "PDUAPILibDll")
        return "takes effect at the first PDUConstruct after a PDUDestruct";
    return "takes effect at the next PDUConstruct";
}

} // namespace marvane::tool
