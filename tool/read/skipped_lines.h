// What has to be known of lines that are not read: how many they are, where the newest header is among them,
// and which calls are still open at their end.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace marvane::read {

/// Where a line begins in a file.
struct FilePlace
{
    std::uint64_t Offset = 0;
    std::uint64_t Line = 0; ///< lines before it
};

class SkippedLines
{
public:
    explicit SkippedLines(FilePlace begin) : at_(begin) {}

    /// The next line, without its line end; `length` is what it takes in the file.
    void OnLine(std::string_view line, std::size_t length);

    FilePlace At() const { return at_; }
    /// The first line of the newest session.
    std::optional<FilePlace> NewestHeader() const { return header_; }
    /// The first entry line of the calls and callbacks that have no exit line yet.
    std::optional<FilePlace> FirstOpen() const;

private:
    struct OpenCall
    {
        std::string Name;
        FilePlace At;
    };

    void Enter(std::string_view thread, std::string_view name);
    void Leave(std::string_view thread, std::string_view name);

    FilePlace at_;
    std::optional<FilePlace> header_;
    std::map<std::string, std::vector<OpenCall>, std::less<>> open_; ///< by thread
};

} // namespace marvane::read
