// Follows the API log files of a folder while they are written: what is new in them, line by line.
#pragma once

#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace marvane::testing {

/// One line of a log file.
struct LogLine
{
    std::string File;
    std::uintmax_t End;  ///< offset of the next line's first byte
    std::string Thread;  ///< the stamp's thread id; empty for a line without a stamp
    std::string Content; ///< after the stamp
};

class LogFollower
{
public:
    explicit LogFollower(std::filesystem::path folder) : folder_(std::move(folder)) {}

    /// The lines since the last call, in the order in which they were written. Expects that every line has
    /// its stamp. If the order can't be determined, or the last file written is gone, `Lost` becomes true.
    std::vector<LogLine> NewLines();
    bool Lost = false;

    /// Skips everything written so far. A line that has no end yet counts as cut: its end is skipped too.
    void SkipAll();

    /// Creates a file in the folder whose lines do not count as new.
    void Plant(const std::string& name);

    /// Names of the API log files, without folders that have such names.
    std::set<std::string> Names() const;

private:
    struct NewText
    {
        std::string File;
        std::string Bytes;
        bool WasKnown;
        bool BeginsFile() const;
    };

    std::vector<NewText> NewTexts();
    std::string BytesFrom(const std::string& name, std::uintmax_t begin) const;
    void Append(std::vector<LogLine>& lines, const NewText& text);

    std::filesystem::path folder_;
    std::map<std::string, std::uintmax_t> known_;
    std::set<std::string> cut_;
    std::string last_;
    std::string lastLine_;
};

} // namespace marvane::testing
