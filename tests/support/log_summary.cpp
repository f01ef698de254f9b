#include "tests/support/log_summary.h"

#include <algorithm>

#include "logger/decode/decode.h"
#include "tests/support/temporary_folder.h"

namespace marvane::testing {

namespace {

constexpr std::string_view StampForm = "{dd:dd:dd.ddd - XXXXXXXX} ";

bool Fits(char form, char character)
{
    const bool digit = character >= '0' && character <= '9';
    if (form == 'd')
        return digit;
    return form == 'X' ? digit || (character >= 'A' && character <= 'F') : form == character;
}

bool HasStamp(std::string_view line)
{
    return line.size() >= StampForm.size() &&
           std::equal(StampForm.begin(), StampForm.end(), line.begin(), Fits);
}

/// True for a line that is decoded, or part of a header or a report.
bool IsOther(std::string_view text)
{
    if (ParseArrow(text))
        return true;
    constexpr std::string_view beginnings[] = {"##########",
                                               "LogHeader{Loaded=", "Config setting: ", "[DoIP"};
    return std::any_of(std::begin(beginnings), std::end(beginnings),
                       [&](std::string_view beginning) { return text.starts_with(beginning); });
}

/// Reads line by line, and tracks which calls each thread is inside of.
class Reader
{
public:
    explicit Reader(LogSummary& summary) : summary_(summary) {}

    void Read(std::string_view line)
    {
        // The only entry with two lines.
        const bool second = line.starts_with("\t\t\t\tCoPDataSize=") &&
                            previous_.find("+ PDUStartComPrimitive(") == StampForm.size();
        previous_ = line;
        if (second)
            return;
        if (!HasStamp(line) || !ReadText(line.substr(16, 8), line.substr(StampForm.size())))
            summary_.Wrong.emplace_back(line);
    }

private:
    bool ReadText(std::string_view thread, std::string_view text)
    {
        std::vector<std::string>& calls = calls_[std::string(thread)];
        if (text.starts_with("+ "))
            return Enter(calls, std::string(text.substr(2, text.find_first_of("({", 2) - 2)));
        if (IsOther(text)) {
            summary_.Reports += text.starts_with("[DoIP");
            return true;
        }
        if (text.starts_with("    <"))
            return text.ends_with("LOGGER_Initialise") || (!calls.empty() && calls.back() == text.substr(5));
        if (text.starts_with("- "))
            return Leave(calls, std::string(text.substr(2, text.find('<', 2) - 2)));
        return text.starts_with("# ") && ReadFileLine(text);
    }

    bool Enter(std::vector<std::string>& calls, const std::string& name)
    {
        ++summary_.Entries[name];
        calls.push_back(name);
        return true;
    }

    bool Leave(std::vector<std::string>& calls, const std::string& name)
    {
        ++summary_.Exits[name];
        // The start of the logger has no entry line.
        if (name == "LOGGER_Initialise")
            return true;
        if (calls.empty() || calls.back() != name)
            return false;
        calls.pop_back();
        return true;
    }

    bool ReadFileLine(std::string_view text)
    {
        summary_.Closings += text.ends_with(" - Changing log file");
        summary_.Continuations += text.ends_with(" - Continuation file");
        return text.ends_with(" file");
    }

    LogSummary& summary_;
    std::string_view previous_;
    std::map<std::string, std::vector<std::string>> calls_;
};

} // namespace

std::string LogInOrder(const std::filesystem::path& folder)
{
    const std::string family = "D-PDU_API_Logger_";
    std::map<std::string, std::filesystem::path> byStamp;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        const std::string name = entry.path().filename().string();
        if (!name.starts_with(family))
            continue;
        // By year, month, day and time; the names begin with the day.
        const std::string stamp = name.substr(family.size());
        byStamp[stamp.substr(6, 4) + stamp.substr(3, 2) + stamp.substr(0, 2) + stamp.substr(10)] =
            entry.path();
    }
    std::string text;
    for (const auto& [stamp, path] : byStamp)
        text += FileText(path);
    return text;
}

LogSummary Summarise(std::string_view log)
{
    LogSummary summary;
    Reader reader(summary);
    for (std::size_t end = log.find('\n'); end != std::string_view::npos; end = log.find('\n')) {
        reader.Read(log.substr(0, end));
        log.remove_prefix(end + 1);
    }
    return summary;
}

std::string WrongLines(const LogSummary& summary)
{
    std::string text;
    for (std::size_t i = 0; i < summary.Wrong.size() && i < 10; ++i)
        text += "  " + summary.Wrong[i] + "\n";
    return text;
}

} // namespace marvane::testing
