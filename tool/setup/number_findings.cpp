// CheckFindings about the numbers of a configuration: how each is read, and what they do together.
#include <algorithm>

#include "config/debug_levels.h"
#include "tool/setup/configuration_findings.h"

namespace marvane::tool {

namespace {

/// A file is changed after a call once it is larger than this, and its header alone is about 5,000 bytes.
constexpr std::uint32_t SmallFile = 100000;
constexpr std::uint32_t ShortPayload = 32;

bool IsDecimal(std::string_view text)
{
    return !text.empty() &&
           std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

/// The number that someone meant who wrote hexadecimal or a suffix; empty if that is not clear.
std::string MeantNumber(const std::string& text)
{
    if (text.starts_with("0x") || text.starts_with("0X")) {
        char* end = nullptr;
        const unsigned long long number = std::strtoull(text.c_str(), &end, 16);
        return *end == '\0' && end != text.c_str() + 2 && number <= INT32_MAX ? std::to_string(number)
                                                                              : std::string();
    }
    const std::size_t digits = std::min(text.find_first_not_of("0123456789"), text.size());
    const std::string suffix = text.substr(digits);
    if (digits == 0 || digits > 6)
        return {};
    const unsigned long long number = std::stoull(text.substr(0, digits));
    if (suffix == "K" || suffix == "k" || suffix == "KB")
        return std::to_string(number * 1024);
    if (suffix == "M" || suffix == "MB")
        return std::to_string(number * 1024 * 1024);
    return suffix == "u" || suffix == "U" || suffix == "L" ? std::to_string(number) : std::string();
}

CheckFindings NumberText(const ConfigurationLine& line)
{
    const AttributeLine& attribute = line.Attribute;
    const std::string& text = attribute.Value.Text;
    if (attribute.Kind != LineKind::Number || !attribute.Value.HasMarker ||
        !FindNumericKey(attribute.Name.Text))
        return {};
    const std::string read =
        attribute.Name.Text + " = \"" + text + "\" is read as " + std::to_string(attribute.Number);
    if (IsDecimal(text) && std::to_string(attribute.Number) ==
                               text.substr(std::min(text.find_first_not_of('0'), text.size() - 1)))
        return {};
    if (IsDecimal(text))
        return {{FindingLevel::Warning, {}, read + ": larger numbers do not fit.", line.Number}};
    const std::string meant = MeantNumber(text);
    return {{FindingLevel::Warning,
             {},
             read + ". Write " + (meant.empty() ? "a decimal number of digits alone." : "\"" + meant + "\"."),
             line.Number}};
}

class NumberRules
{
public:
    explicit NumberRules(const Configuration& configuration) : configuration_(configuration) {}

    CheckFindings All()
    {
        Enabling();
        if (LoggingActive(Value(NumericKey::LogEnabled), Value(NumericKey::LogNewFileCfg))) {
            Levels();
            Files();
        }
        Callback(NumericKey::DoIPTlsRecordSizeLimit, "DoIPTlsRecordSizeLimit");
        Callback(NumericKey::LogTlsSessionKey, "LogTlsSessionKey");
        DebugLevels();
        return std::move(findings_);
    }

private:
    std::uint32_t Value(NumericKey key) const { return configuration_.Number(key).Value; }

    void Add(FindingLevel level, NumericKey key, const char* name, const std::string& text)
    {
        const SettingNumber setting = configuration_.Number(key);
        findings_.push_back({level, name,
                             (setting.Line != 0 ? std::string(name) + " " : std::string()) + text,
                             setting.Line});
    }

    void Enabling()
    {
        const SettingNumber enabled = configuration_.Number(NumericKey::LogEnabled);
        const std::string write = "Write " + AttributeText("LogEnabled", "1") + ".";
        if (enabled.Value >= 2)
            Add(FindingLevel::Error, NumericKey::LogEnabled, "LogEnabled",
                "is above 1 and refused: the target library is not loaded. Write \"1\".");
        else if (enabled.Value == 0 && Value(NumericKey::LogNewFileCfg) == 1)
            Add(FindingLevel::Warning, NumericKey::LogEnabled, "LogEnabled",
                "is not 1: LogNewFileCfg alone switches logging on, without some of the lines. " + write);
        else if (enabled.Value == 0)
            Add(FindingLevel::Warning, NumericKey::LogEnabled, "LogEnabled",
                enabled.Line == 0 ? "is missing: nothing is logged. " + write
                                  : "is 0: nothing is logged. Write \"1\".");
    }

    void Levels()
    {
        const std::uint32_t calls = Value(NumericKey::LogFnCalls);
        if (calls == 0)
            Add(FindingLevel::Warning, NumericKey::LogFnCalls, "LogFnCalls",
                std::string(configuration_.Number(NumericKey::LogFnCalls).Line == 0 ? "is missing" : "is 0") +
                    ": the log holds headers and no calls. Write \"2\".");
        if (calls == 1 &&
            (Value(NumericKey::LogFnDecodeArgs) != 0 || Value(NumericKey::LogFnDecodeRsps) != 0))
            Add(FindingLevel::Warning, NumericKey::LogFnCalls, "LogFnCalls",
                "is 1: arguments and results are decoded with 2 only. Write \"2\".");
        if (calls >= 2 && Value(NumericKey::LogMaxPduBuff) < ShortPayload)
            Add(FindingLevel::Warning, NumericKey::LogMaxPduBuff, "LogMaxPduBuff",
                "is so small that answers are cut. Write \"4096\" to see them whole.");
    }

    void Files()
    {
        const std::uint32_t size = Value(NumericKey::LogFileMaxSize);
        if (size != 0 && Value(NumericKey::LogFileMaxNum) == 0)
            Add(FindingLevel::Warning, NumericKey::LogFileMaxSize, "LogFileMaxSize",
                "has no effect while LogFileMaxNum is 0: one file grows for ever. Set LogFileMaxNum too.");
        else if (size != 0 && size < SmallFile)
            Add(FindingLevel::Warning, NumericKey::LogFileMaxSize, "LogFileMaxSize",
                "is so small that a file fills within a second: each call then changes the file. Write "
                "\"10000000\".");
        if (Value(NumericKey::LogFlush) != 1)
            Add(FindingLevel::Note, NumericKey::LogFlush, "LogFlush",
                "is not 1: the last lines are lost if the application crashes.");
    }

    void Callback(NumericKey key, const char* name)
    {
        if (Value(key) != 0)
            Add(FindingLevel::Warning, key, name,
                "overwrites the application's default event callback when Marvane starts. Delete the line.");
    }

    void DebugLevels()
    {
        for (const auto& [key, setting] : configuration_.Texts)
            if (key.starts_with("Dbg") && FindStringKey(key) && LevelNumber(setting.Value) < 0)
                findings_.push_back(
                    {FindingLevel::Warning,
                     {},
                     key + " = \"" + setting.Value +
                         "\" is no level and does not count. Write ERROR, WARN, NOTICE, INFO, DEBUG, "
                         "DEBUG1, DEBUG2 or DEBUG3.",
                     setting.Line});
    }

    const Configuration& configuration_;
    CheckFindings findings_;
};

} // namespace

CheckFindings NumberFindings(const Configuration& configuration)
{
    CheckFindings findings;
    for (const ConfigurationLine& line : configuration.Body)
        Append(findings, NumberText(line));
    Append(findings, NumberRules(configuration).All());
    return findings;
}

} // namespace marvane::tool
