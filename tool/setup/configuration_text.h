// Writing configurations: a whole commented one, and a new value in one that exists.
#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace marvane::tool {

/// A change that the library would not read as it is meant, with the reason.
class RefusedValue : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

struct KeyValue
{
    std::string Key;
    std::string Value;
};

/// The keys of a logging level: "calls", "arguments", "decoded", "full". Empty for any other word.
std::vector<KeyValue> LevelKeys(std::string_view level);
inline constexpr std::string_view LevelNames = "calls,arguments,decoded,full";

/// What a new configuration says.
struct NewConfiguration
{
    std::string InstalledPath = ".";
    std::string TargetName;
    std::string LogFolder;
    std::string Level = "decoded";
    std::optional<std::uint32_t> Payload; ///< LogMaxPduBuff; none: that of the level
    bool Flush = false;
    std::uint32_t MaxSize = 10u << 20;
    std::uint32_t Files = 20; ///< files that are kept; at least 3
};

/// The text of a configuration with a comment for each key, with the line ends of the system of that
/// separator.
std::string ConfigurationText(const NewConfiguration& values, char separator);

/// The bytes of a configuration file with another value for a key: where the value that counts stands, else
/// on a new line before the closing tag. Every other byte stays. Throws RefusedValue if the library would not
/// read the result as it is meant.
std::string WithValue(const std::string& bytes, const std::string& key, const std::string& value);

/// When a change of a key takes effect, as a sentence.
const char* WhenItCounts(std::string_view key);

} // namespace marvane::tool
