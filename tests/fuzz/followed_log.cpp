#include "tests/fuzz/followed_log.h"

#include <algorithm>
#include <cstdio>

#include <gtest/gtest.h>

#include "line/file_names.h"
#include "line/marks.h"
#include "tests/fuzz/odd_lines.h"
#include "tests/support/temporary_folder.h"

namespace marvane::testing {

namespace {

/// As the logger itself looks for its files: names that are no time count too.
bool HasNameOfALog(const std::string& name)
{
    static const std::string pattern = LogFilePattern(LogFamily::Api);
    return std::ranges::equal(name, pattern, [](char c, char form) { return form == '?' || c == form; });
}

std::string ThreadText(std::uint32_t thread)
{
    char text[12];
    std::snprintf(text, sizeof text, "%08X", static_cast<unsigned>(thread));
    return text;
}

} // namespace

bool FollowedLog::NewText::BeginsFile() const
{
    const std::string first = Bytes.substr(0, Bytes.find('\n'));
    return first.find(marks::ContinuationFile) != std::string::npos ||
           first.find(marks::Initialise) != std::string::npos;
}

FollowedLog::FollowedLog(std::filesystem::path folder) : folder_(std::move(folder))
{
    Restart();
}

void FollowedLog::Restart()
{
    reader_ = std::make_unique<read::LogReader>(static_cast<read::LogSink&>(*this), read::Wants::Lines);
    file_.clear();
    former_.clear();
}

std::set<std::string> FollowedLog::Names() const
{
    std::set<std::string> names;
    std::error_code none;
    for (const auto& entry : std::filesystem::directory_iterator(folder_, none))
        if (entry.is_regular_file(none) && HasNameOfALog(entry.path().filename().string()))
            names.insert(entry.path().filename().string());
    return names;
}

void FollowedLog::SkipAll()
{
    Lost = false;
    Restart();
    known_.clear();
    cut_.clear();
    for (const std::string& name : Names()) {
        known_[name] = BytesFrom(name, 0).size();
        if (std::filesystem::file_size(folder_ / name) > known_[name])
            cut_.insert(name);
    }
}

void FollowedLog::Plant(const std::string& name)
{
    if (std::filesystem::exists(folder_ / name) || !std::filesystem::exists(folder_))
        return;
    WriteFileBytes(folder_ / name, "planted\n");
    known_[name] = FileBytes(folder_ / name).size();
}

std::vector<FollowedLog::NewText> FollowedLog::NewTexts()
{
    std::vector<NewText> texts;
    const std::set<std::string> names = Names();
    Lost |= known_.contains(file_) && !names.contains(file_);
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

std::vector<LogLine> FollowedLog::NewLines()
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
    lines_.clear();
    for (const NewText& text : texts)
        Read(text);
    return std::move(lines_);
}

std::string FollowedLog::BytesFrom(const std::string& name, std::uintmax_t begin) const
{
    std::string bytes = FileBytes(folder_ / name, begin);
    // The rest of the last line may still be in the logger's buffer.
    bytes.erase(bytes.rfind('\n') + 1);
    return bytes;
}

void FollowedLog::Read(const NewText& text)
{
    if (text.File != file_) {
        file_ = text.File;
        former_.clear();
        reader_->BeginFile({.Name = file_});
        if (const std::uintmax_t before = known_[file_] - text.Bytes.size(); before != 0)
            reader_->Skip(before, 0);
    }
    reader_->Feed(text.Bytes);
    if (!lines_.empty())
        lines_.back().End = known_[file_];
}

void FollowedLog::OnLine(const read::Line& line)
{
    if (!lines_.empty() && lines_.back().File == file_)
        lines_.back().End = line.At.Offset;
    EXPECT_FALSE(IsOdd(line, former_)) << file_ << ": " << line.Whole;
    former_ = line.Text;
    lines_.push_back({file_, 0, line.Kind, ThreadText(line.Thread), former_});
}

} // namespace marvane::testing
