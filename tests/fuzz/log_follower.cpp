#include "tests/fuzz/log_follower.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <sstream>

#include <gtest/gtest.h>

#include "tests/fuzz/log_text.h"
#include "tests/support/temporary_folder.h"

namespace marvane::testing {

namespace {

constexpr std::string_view Form = "D-PDU_API_Logger_##-##-####_##-##-##.LGR";
constexpr std::size_t StampSize = 26;

bool FitsForm(const std::string& name)
{
    return name.size() == Form.size() &&
           std::equal(name.begin(), name.end(), Form.begin(),
                      [](char c, char form) { return form == '#' || c == form; });
}

std::string WithoutReturns(std::string text)
{
    std::erase(text, '\r');
    return text;
}

} // namespace

bool LogFollower::NewText::BeginsFile() const
{
    const std::string first = Bytes.substr(0, Bytes.find('\n'));
    return first.find(" - Continuation file") != std::string::npos ||
           first.find("# INITIALISE #") != std::string::npos;
}

std::set<std::string> LogFollower::Names() const
{
    std::set<std::string> names;
    std::error_code none;
    for (const auto& entry : std::filesystem::directory_iterator(folder_, none))
        if (entry.is_regular_file(none) && FitsForm(entry.path().filename().string()))
            names.insert(entry.path().filename().string());
    return names;
}

void LogFollower::SkipAll()
{
    Lost = false;
    known_.clear();
    cut_.clear();
    for (const std::string& name : Names()) {
        known_[name] = BytesFrom(name, 0).size();
        if (std::filesystem::file_size(folder_ / name) > known_[name])
            cut_.insert(name);
    }
}

void LogFollower::Plant(const std::string& name)
{
    if (std::filesystem::exists(folder_ / name) || !std::filesystem::exists(folder_))
        return;
    WriteFileBytes(folder_ / name, "planted\n");
    known_[name] = FileBytes(folder_ / name).size();
}

std::vector<LogFollower::NewText> LogFollower::NewTexts()
{
    std::vector<NewText> texts;
    const std::set<std::string> names = Names();
    Lost |= known_.contains(last_) && !names.contains(last_);
    std::erase_if(known_, [&](const auto& file) { return !names.contains(file.first); });
    for (const std::string& name : names) {
        const bool wasKnown = known_.contains(name);
        std::uintmax_t& size = known_[name];
        Lost |= std::filesystem::file_size(folder_ / name) < size;
        std::string bytes = BytesFrom(name, size);
        if (!bytes.empty() && cut_.erase(name) != 0) {
            const std::size_t cut = bytes.find('\n') + 1;
            bytes.erase(0, cut);
            size += cut;
        }
        if (!bytes.empty())
            texts.push_back({name, bytes, wasKnown});
        size += bytes.size();
    }
    return texts;
}

std::vector<LogLine> LogFollower::NewLines()
{
    std::vector<NewText> texts = NewTexts();
    // Of two files, the one with a header is the later one.
    if (texts.size() > 2)
        Lost = true;
    else if (texts.size() == 2) {
        const auto rank = [](const NewText& text) {
            return (text.WasKnown ? 0 : 2) + (text.BeginsFile() ? 1 : 0);
        };
        Lost |= rank(texts[0]) == rank(texts[1]);
        if (rank(texts[0]) > rank(texts[1]))
            std::swap(texts[0], texts[1]);
    }
    std::vector<LogLine> lines;
    for (const NewText& text : texts)
        Append(lines, text);
    return lines;
}

std::string LogFollower::BytesFrom(const std::string& name, std::uintmax_t begin) const
{
    std::ifstream file(folder_ / name, std::ios::binary);
    file.seekg(static_cast<std::streamoff>(begin));
    std::string bytes{std::istreambuf_iterator<char>(file), {}};
    // The rest of the last line may still be in the logger's buffer.
    bytes.erase(bytes.rfind('\n') + 1);
    return bytes;
}

void LogFollower::Append(std::vector<LogLine>& lines, const NewText& text)
{
    std::uintmax_t end = known_[text.File] - text.Bytes.size();
    std::string former = text.File == last_ ? lastLine_ : "";
    std::istringstream bytes(text.Bytes);
    for (std::string line; std::getline(bytes, line);) {
        end += line.size() + 1;
        line = WithoutReturns(line);
        EXPECT_EQ(FirstOddLine(line + '\n', former), "") << text.File;
        if (IsStamped(line))
            lines.push_back({text.File, end, line.substr(16, 8), line.substr(StampSize)});
        else
            lines.push_back({text.File, end, "", line});
        former = std::exchange(line, "");
    }
    last_ = text.File;
    lastLine_ = former;
}

} // namespace marvane::testing
