#include "tool/setup/configuration.h"

#include <algorithm>
#include <memory>

#include "platform/files.h"

namespace marvane::tool {

namespace {

/// True if a comment that began before `offset` is still open there; `open` says whether one was at the
/// line's begin.
bool IsInComment(const std::string& line, std::size_t offset, bool open)
{
    for (std::size_t at = 0; at < offset;) {
        const std::size_t next = line.find(open ? "-->" : "<!--", at);
        if (next >= offset)
            break;
        open = !open;
        at = next + (open ? 4 : 3);
    }
    return open;
}

std::vector<std::string> AllLines(const std::string& bytes)
{
    std::vector<std::string> lines;
    for (std::size_t at = 0; at < bytes.size();) {
        const std::size_t end = std::min(bytes.find('\n', at), bytes.size());
        lines.push_back(bytes.substr(at, end - at));
        if (!lines.back().empty() && lines.back().back() == '\r')
            lines.back().pop_back();
        at = end + 1;
    }
    return lines;
}

CharacterSource CharactersOf(const std::string& bytes)
{
    return [&bytes, at = std::size_t{0}]() mutable {
        return at < bytes.size() ? static_cast<unsigned char>(bytes[at++]) : -1;
    };
}

void Store(Configuration& configuration, const ConfigurationLine& line)
{
    const AttributeLine& attribute = line.Attribute;
    if (attribute.Kind == LineKind::String)
        configuration.Texts[attribute.Name.Text] = {attribute.Value.Text, line.Number};
    else if (attribute.Kind == LineKind::Number)
        configuration.Numbers[attribute.Name.Text] = {attribute.Number, line.Number};
}

} // namespace

SettingNumber Configuration::Number(NumericKey key) const
{
    const auto row = std::find_if(NumericKeyNames.begin(), NumericKeyNames.end(),
                                  [key](const NumericKeyName& candidate) { return candidate.Key == key; });
    const auto found = Numbers.find(row->Name);
    return found == Numbers.end() ? SettingNumber{row->Default, 0} : found->second;
}

SettingText Configuration::Text(const std::string& key) const
{
    const auto found = Texts.find(key);
    return found == Texts.end() ? SettingText{} : found->second;
}

Configuration ParseConfiguration(std::string bytes)
{
    Configuration configuration;
    configuration.Opened = true;
    configuration.Bytes = std::move(bytes);
    configuration.Lines = AllLines(configuration.Bytes);
    ConfigurationReader reader(CharactersOf(configuration.Bytes));
    bool inComment = false;
    while ((configuration.End = reader.Next()) == ReadingStep::Body) {
        ConfigurationLine line{reader.LineNumber(), reader.Line(), ScanAttributeLine(reader.Line()), false};
        const std::size_t tag = std::min(line.Text.find("<Attribute"), line.Text.size());
        line.InComment = IsInComment(line.Text, tag, inComment);
        inComment = IsInComment(line.Text, line.Text.size(), inComment);
        Store(configuration, line);
        configuration.Body.push_back(std::move(line));
    }
    configuration.EndLine = reader.LineNumber();
    return configuration;
}

Configuration ReadConfiguration(const std::string& path)
{
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(platform::OpenForReading(path), std::fclose);
    Configuration configuration;
    if (file) {
        std::string bytes;
        for (int character = std::fgetc(file.get()); character != EOF && bytes.size() < (1u << 24);
             character = std::fgetc(file.get()))
            bytes += static_cast<char>(character);
        configuration = ParseConfiguration(std::move(bytes));
    }
    configuration.Path = path;
    return configuration;
}

const NumericKeyName* FindNumericKey(std::string_view name)
{
    const auto found = std::find_if(NumericKeyNames.begin(), NumericKeyNames.end(),
                                    [name](const NumericKeyName& key) { return key.Name == name; });
    return found == NumericKeyNames.end() ? nullptr : &*found;
}

const StringKeyName* FindStringKey(std::string_view name)
{
    if (name == LogFileDirKey.Name)
        return &LogFileDirKey;
    const auto found = std::find_if(StringKeyNames.begin(), StringKeyNames.end(),
                                    [name](const StringKeyName& key) { return key.Name == name; });
    return found == StringKeyNames.end() ? nullptr : &*found;
}

std::vector<std::string_view> AllKeyNames()
{
    std::vector<std::string_view> names = {LogFileDirKey.Name};
    for (const NumericKeyName& key : NumericKeyNames)
        names.emplace_back(key.Name);
    for (const StringKeyName& key : StringKeyNames)
        names.emplace_back(key.Name);
    return names;
}

} // namespace marvane::tool
