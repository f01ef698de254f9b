// Follows the API log files of a folder while they are written: what is new in them, line by line, as the
// reader of logs sees it.
#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "tool/read/log_reader.h"

namespace marvane::testing {

/// One line of a log file.
struct LogLine
{
    std::string File;
    std::uintmax_t End; ///< offset of the next line's first byte
    read::LineKind Kind;
    std::string Thread;  ///< as stamps show it; of the line before it if it has none
    std::string Content; ///< after the stamp
};

class FollowedLog : private read::LogSink
{
public:
    explicit FollowedLog(std::filesystem::path folder);

    /// The lines since the last call, in the order in which they were written. Expects that none is odd. If
    /// the order can't be determined, or the last file written is gone, `Lost` becomes true.
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

    void OnLine(const read::Line& line) override;

    void Restart();
    std::vector<NewText> NewTexts();
    std::string BytesFrom(const std::string& name, std::uintmax_t begin) const;
    void Read(const NewText& text);

    std::filesystem::path folder_;
    std::map<std::string, std::uintmax_t> known_; ///< size that was read, by file
    std::set<std::string> cut_;
    std::unique_ptr<read::LogReader> reader_;
    std::string file_; ///< that is being read
    std::vector<LogLine> lines_;
    std::string former_; ///< the content of the last line of that file
};

} // namespace marvane::testing
