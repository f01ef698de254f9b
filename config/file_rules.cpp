#include "config/file_rules.h"

namespace marvane {

std::optional<std::string> ReadLine(const CharacterSource& next)
{
    std::string line;
    int character = next();
    if (character < 0)
        return std::nullopt;
    for (; character != '\n' && character >= 0; character = next()) {
        if (line.size() == LineLimit)
            return std::nullopt;
        line += static_cast<char>(character);
    }
    if (character == '\n' && !line.empty() && line.back() == '\r')
        line.pop_back();
    if (line.size() == LineLimit)
        return std::nullopt;
    return line;
}

bool ConfigurationReader::Read()
{
    ++lineNumber_;
    std::optional<std::string> line = ReadLine(next_);
    line_ = line ? std::move(*line) : std::string();
    return line.has_value();
}

ReadingStep ConfigurationReader::Next()
{
    if (lineNumber_ == 0) {
        // Any text will do for the first line.
        if (!Read())
            return ReadingStep::NoHeader;
        if (!Read() || line_ != OpeningTag)
            return ReadingStep::NoBlockName;
    }
    if (!Read())
        return ReadingStep::NoLine;
    return line_ == ClosingTag ? ReadingStep::Closed : ReadingStep::Body;
}

} // namespace marvane
