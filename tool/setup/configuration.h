// A configuration file, read by the rules of the library and with everything kept that explains them: which
// line gave which value, and which lines gave none.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "config/attribute_line.h"
#include "config/file_rules.h"
#include "config/keys.h"

namespace marvane::tool {

struct ConfigurationLine
{
    std::size_t Number = 0; ///< from 1
    std::string Text;
    AttributeLine Attribute;
    bool InComment = false; ///< as XML would see it; the library does not care
};

/// A value and the line that it is from. `Line` is 0 for a key that the file lacks.
struct SettingText
{
    std::string Value;
    std::size_t Line = 0;
};
struct SettingNumber
{
    std::uint32_t Value = 0;
    std::size_t Line = 0;
};

struct Configuration
{
    std::string Path;
    bool Opened = false;
    std::string Bytes;                   ///< as the library's stream yields them
    std::vector<std::string> Lines;      ///< every line, those included that the library never reaches
    std::vector<ConfigurationLine> Body; ///< the lines that it reads for attributes
    ReadingStep End = ReadingStep::NoHeader;
    std::size_t EndLine = 1; ///< the line that ended the reading
    std::map<std::string, SettingText> Texts;
    std::map<std::string, SettingNumber> Numbers;

    /// Value of a numeric key, its default if the file lacks it.
    SettingNumber Number(NumericKey key) const;
    /// Value of a text key, unexpanded; empty if the file lacks it.
    SettingText Text(const std::string& key) const;
};

Configuration ParseConfiguration(std::string bytes);

/// Reads a file. `Opened` is false if the library could not open it either.
Configuration ReadConfiguration(const std::string& path);

/// Row of the key table, null for a name that is no numeric (text) key.
const NumericKeyName* FindNumericKey(std::string_view name);
const StringKeyName* FindStringKey(std::string_view name);

/// The names of all keys.
std::vector<std::string_view> AllKeyNames();

} // namespace marvane::tool
