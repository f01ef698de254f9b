// The rules of the whole configuration file: how long a line may be, what the first two lines must be, where
// it ends. Characters come from the caller, so nothing is opened or logged here.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace marvane {

/// Name of the configuration file beside the library.
inline constexpr const char* ConfigurationFileName = "D_PDU_API_CFG.xml";

/// A line of this many characters or more ends the reading.
inline constexpr std::size_t LineLimit = 1000;

inline constexpr const char* OpeningTag = "<D_PDU_API_CFG>";
inline constexpr const char* ClosingTag = "</D_PDU_API_CFG>";

/// The next character as an unsigned char, or -1 at the end, as std::fgetc returns it.
using CharacterSource = std::function<int()>;

/// One line without its end, the carriage return before a line feed included. None at the end of the file, or
/// if the line is too long.
std::optional<std::string> ReadLine(const CharacterSource& next);

/// What the reading of a file has come to.
enum class ReadingStep : std::uint8_t
{
    Body,        ///< a line for ScanAttributeLine
    Closed,      ///< the closing tag
    NoHeader,    ///< no first line, or one that is too long
    NoBlockName, ///< the second line is missing, too long, or not the opening tag
    NoLine,      ///< the file ended without a closing tag, or a line is too long
};

/// Walks a configuration file line by line. All steps but Body are final.
class ConfigurationReader
{
public:
    explicit ConfigurationReader(CharacterSource next) : next_(std::move(next)) {}

    ReadingStep Next();

    /// The line that the last step is about; empty if none was read.
    const std::string& Line() const { return line_; }
    /// Its number, counted from 1.
    std::size_t LineNumber() const { return lineNumber_; }

private:
    bool Read();

    CharacterSource next_;
    std::string line_;
    std::size_t lineNumber_ = 0;
};

} // namespace marvane
