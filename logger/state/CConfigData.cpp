#include "logger/state/CConfigData.h"

#include <cstdio>
#include <memory>

#include "config/attribute_line.h"
#include "config/file_rules.h"
#include "config/paths.h"
#include "platform/environment.h"
#include "platform/files.h"
#include "platform/library.h"

namespace marvane {

namespace {

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
    std::string path = platform::EnvironmentVariable(ConfigurationVariable).value_or("");
    if (path.empty()) {
        path = GetLibQualifiedPathName();
        if (!path.empty())
            path = ConfigurationBeside(path, platform::PathSeparator);
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
    ConfigurationReader reader([&] { return std::fgetc(file.get()); });
    ReadingStep step = reader.Next();
    for (; step == ReadingStep::Body; step = reader.Next())
        ProcessConfigurationElement(reader.Line());
    if (step == ReadingStep::NoHeader)
        Diagnose(FromObject(DebugLevel::Warn, ReadingFunction), "Could not read XML header");
    else if (step == ReadingStep::NoBlockName)
        Diagnose(FromObject(DebugLevel::Warn, ReadingFunction), "Could not read block name");
    else if (step == ReadingStep::NoLine)
        Diagnose(FromObject(DebugLevel::Warn, ReadingFunction), "Could not read line");
}

void CConfigData::ProcessConfigurationElement(const std::string& line)
{
    Diagnose(FromObject(DebugLevel::Debug, ScanningFunction), "pElement: ", line);
    const AttributeLine attribute = ScanAttributeLine(line);
    switch (attribute.Kind) {
    case LineKind::NotAnAttribute:
        return ReportNotAnAttribute();
    case LineKind::NoName:
        return Diagnose(FromObject(DebugLevel::Warn, ScanningFunction), "The attribute with no name");
    case LineKind::NoType:
        return Diagnose(FromObject(DebugLevel::Warn, ScanningFunction), "The attribute with no Type");
    case LineKind::NoValue:
        return Diagnose(FromObject(DebugLevel::Warn, ScanningFunction), "The attribute with no Value");
    case LineKind::UnsupportedType:
        return Diagnose(FromObject(DebugLevel::Warn, ScanningFunction),
                        "Unsupported type: ", attribute.Type.Text);
    case LineKind::String:
        StringValues[attribute.Name.Text] = attribute.Value.Text;
        return Diagnose(FromObject(DebugLevel::Debug, ScanningFunction), attribute.Name.Text, " = ",
                        attribute.Value.Text);
    case LineKind::Number:
        NumericValues[attribute.Name.Text] = attribute.Number;
        return Diagnose(FromObject(DebugLevel::Debug, ScanningFunction), attribute.Name.Text, " = ",
                        attribute.Number);
    }
}

void CConfigData::ReportNotAnAttribute()
{
    // Each record is written at once: a file of a million empty lines would cost seconds and 100 MB.
    constexpr std::size_t mostRecords = 1000;
    if (++NotAttributes <= mostRecords)
        Diagnose(FromObject(DebugLevel::Warn, ScanningFunction), "Not an attribute");
    else if (NotAttributes == mostRecords + 1)
        Diagnose(FromObject(DebugLevel::Warn, ScanningFunction), "Not an attribute; more are not reported");
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
