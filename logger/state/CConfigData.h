// The configuration file: where it lies, and the two dictionaries that are read from it.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "logger/diagnostics/CLog.h"

namespace marvane {

/// Reads one configuration file by the rules of config/ and reports each step to the diagnostic log. Lives
/// for one start of the logger.
class CConfigData
{
public:
    explicit CConfigData(std::string name) : ConfigName(std::move(name)) {}
    /// Ends the use of the configured debug levels.
    ~CConfigData();
    CConfigData(const CConfigData&) = delete;
    CConfigData& operator=(const CConfigData&) = delete;

    /// Full path of this library's own file, empty on failure.
    static std::string GetLibQualifiedPathName();

    /// Path of the configuration file: the environment variable PDU_CFG_FILE, else D_PDU_API_CFG.xml in
    /// the folder of this library. Empty if that is not known.
    static std::string GetConfigQualifiedName();

    /// Reads the file into the dictionaries. What fails is told to the diagnostic log; what was read
    /// before a failure stays.
    void ProcessConfigurationElements(const std::string& path);

    /// Puts the debug levels of the Dbg keys in force if at least one of them is valid.
    void ProcessLogLevels();

    /// Looks a text up and expands environment references in it. Returns 0 if found, else 1 with `value`
    /// untouched.
    int GetStringValue(const std::string& key, std::string& value) const;

    using NumericDictionary = std::map<std::string, std::uint32_t>;
    using StringDictionary = std::map<std::string, std::string>;
    const NumericDictionary& Numbers() const { return NumericValues; }
    const StringDictionary& Texts() const { return StringValues; }

private:
    void ProcessConfigurationElement(const std::string& line);
    void ReportNotAnAttribute();

    std::string ConfigName;
    StringDictionary StringValues;
    NumericDictionary NumericValues;
    std::int32_t LevelTable[SubsystemCount] = {};
    bool UsingConfigLevels = false;
    std::size_t NotAttributes = 0; ///< lines so far
};

} // namespace marvane
