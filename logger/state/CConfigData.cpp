#include "logger/state/CConfigData.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <optional>

#include "platform/platform.h"

namespace marvane {

namespace {

constexpr std::size_t LineBufferSize = 1000;
constexpr std::size_t PathBufferSize = 512;

constexpr const char* ReadingFunction = "CConfigData::ProcessConfigurationElements";
constexpr const char* ScanningFunction = "CConfigData::ProcessConfigurationElement";

DiagnosticSource FromObject(DebugLevel level, const char* function, std::uint32_t line = __builtin_LINE())
{
    return {level, Subsystem::DATA, "class CConfigData", function, line};
}

DiagnosticSource FromClass(DebugLevel level, const char* function, std::uint32_t line = __builtin_LINE())
{
    return {level, Subsystem::DATA, "lib/CConfigData", function, line};
}

struct CloseStream
{
    void operator()(std::FILE* stream) const { std::fclose(stream); }
};
using Stream = std::unique_ptr<std::FILE, CloseStream>;

/// One line without its end. None at the end of the file, or if the line does not fit the buffer.
std::optional<std::string> ReadLine(std::FILE* file)
{
    char buffer[LineBufferSize];
    std::size_t length = 0;
    int character = std::fgetc(file);
    if (character == EOF)
        return std::nullopt;
    for (; character != '\n' && character != EOF; character = std::fgetc(file)) {
        if (length == LineBufferSize)
            return std::nullopt;
        buffer[length++] = static_cast<char>(character);
    }
    // In front of a line feed a carriage return belongs to the line's end.
    if (character == '\n' && length > 0 && buffer[length - 1] == '\r')
        --length;
    if (length == LineBufferSize)
        return std::nullopt;
    return std::string(buffer, length);
}

/// The text of a field: from behind its marker to the next quote. Without the marker it begins at the
/// marker's length less one, which is where the search's "not found" wraps round to; files rely on what that
/// gives.
std::optional<std::string> FieldText(const std::string& line, const char* marker)
{
    const std::size_t begin = line.find(marker) + std::strlen(marker);
    const std::size_t end = line.find('"', begin);
    if (end == std::string::npos)
        return std::nullopt;
    return line.substr(begin, end - begin);
}

/// Decimal digits with white space and sign in front, held to the limits of 32 bits with sign.
std::uint32_t ToNumber(const std::string& text)
{
    const long long number = std::strtoll(text.c_str(), nullptr, 10);
    const long long held = number < INT32_MIN ? INT32_MIN : number > INT32_MAX ? INT32_MAX : number;
    return static_cast<std::uint32_t>(static_cast<std::int32_t>(held));
}

} // namespace

CConfigData::~CConfigData()
{
    if (UsingConfigLevels)
        CLog::UseConfiguredLevels(nullptr);
}

std::string CConfigData::GetLibQualifiedPathName()
{
    constexpr const char* function = "ConfigData::GetLibQualifiedPathName";
    const platform::ModulePath own = platform::OwnModulePath(PathBufferSize);
    if (own.ModuleError != 0)
        Diagnose(FromClass(DebugLevel::Error, function), "GetModuleHandle Error=", own.ModuleError);
    if (own.FileNameError != 0)
        Diagnose(FromClass(DebugLevel::Error, function), "GetModuleFileName Error=", own.FileNameError);
    return own.Path;
}

std::string CConfigData::GetConfigQualifiedName()
{
    std::string path = platform::EnvironmentVariable("PDU_CFG_FILE").value_or("");
    if (path.empty()) {
        path = GetLibQualifiedPathName();
        if (!path.empty())
            path.replace(path.rfind(platform::PathSeparator) + 1, std::string::npos, "D_PDU_API_CFG.xml");
    }
    Diagnose(FromClass(DebugLevel::Debug, "ConfigData::GetConfigQualifiedName"), "QualifiedName = ", path);
    return path;
}

void CConfigData::ProcessConfigurationElements(const std::string& path)
{
    const Stream file(platform::OpenForReading(path));
    if (!file)
        return Diagnose(FromObject(DebugLevel::Warn, ReadingFunction),
                        "Could not open configuration file: ", path);
    if (!ReadLine(file.get()))
        return Diagnose(FromObject(DebugLevel::Warn, ReadingFunction), "Could not read XML header");
    if (ReadLine(file.get()) != "<D_PDU_API_CFG>")
        return Diagnose(FromObject(DebugLevel::Warn, ReadingFunction), "Could not read block name");
    for (;;) {
        const std::optional<std::string> line = ReadLine(file.get());
        if (!line)
            return Diagnose(FromObject(DebugLevel::Warn, ReadingFunction), "Could not read line");
        if (*line == "</D_PDU_API_CFG>")
            return;
        ProcessConfigurationElement(*line);
    }
}

void CConfigData::ProcessConfigurationElement(const std::string& line)
{
    Diagnose(FromObject(DebugLevel::Debug, ScanningFunction), "pElement: ", line);
    if (line.find("<Attribute ") == std::string::npos)
        return Diagnose(FromObject(DebugLevel::Warn, ScanningFunction), "Not an attribute");
    const auto name = FieldText(line, "Name=\"");
    if (!name)
        return Diagnose(FromObject(DebugLevel::Warn, ScanningFunction), "The attribute with no name");
    const auto type = FieldText(line, "Type=\"");
    if (!type)
        return Diagnose(FromObject(DebugLevel::Warn, ScanningFunction), "The attribute with no Type");
    const auto value = FieldText(line, "Value=\"");
    if (!value)
        return Diagnose(FromObject(DebugLevel::Warn, ScanningFunction), "The attribute with no Value");

    if (*type == "String") {
        StringValues[*name] = *value;
        Diagnose(FromObject(DebugLevel::Debug, ScanningFunction), *name, " = ", *value);
    } else if (*type == "UNUM32") {
        const std::uint32_t number = ToNumber(*value);
        NumericValues[*name] = number;
        Diagnose(FromObject(DebugLevel::Debug, ScanningFunction), *name, " = ", number);
    } else
        Diagnose(FromObject(DebugLevel::Warn, ScanningFunction), "Unsupported type: ", *type);
}

int CConfigData::GetStringValue(const std::string& key, std::string& value) const
{
    const auto found = StringValues.find(key);
    if (found == StringValues.end())
        return 1;
    value = platform::ExpandEnvironment(found->second);
    return 0;
}

} // namespace marvane
