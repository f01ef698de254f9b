// Log files that grow while they are read, and those that are begun after them.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <set>
#include <vector>

#include "tool/read/log_files.h"
#include "tool/read/log_reader.h"

namespace marvane::tool {

/// A file that is read as far as it has been written, again and again.
class GrowingFile
{
public:
    GrowingFile(std::filesystem::path path, std::uint32_t number) : path_(std::move(path)), number_(number) {}

    /// Its number in the reader.
    std::uint32_t Number() const { return number_; }

    bool HasNews() const { return Size() != at_; }
    bool HasShrunk() const { return Size() < at_; }

    /// Passes on what is new; true if there was anything.
    bool ReadInto(read::LogReader& reader);

private:
    std::uintmax_t Size() const;

    std::filesystem::path path_;
    std::uint32_t number_;
    std::uintmax_t at_ = 0;
};

/// The files that are followed: the newest of each family grows, one after the other begins.
class Follower
{
public:
    Follower(std::vector<read::LogFile>& files, read::LogReader& reader, bool takesAllFamilies)
        : files_(files), reader_(reader), takesAllFamilies_(takesAllFamilies)
    {
        for (const read::LogFile& file : files)
            known_.insert(file.Path.filename());
    }

    /// Reads what is there and not more than a part at a time; true if there was anything.
    bool Step();

private:
    GrowingFile& Growing(std::uint32_t number);
    /// Reads a part of the file with that number, again from its beginning if it became shorter.
    bool Read(std::uint32_t number);

    void GoTo(std::uint32_t number);
    void Leave();
    void End(std::uint32_t number);

    /// The files have the numbers of the reader, so one that is begun again stands there twice.
    std::uint32_t BeginAgain(std::uint32_t number);

    void Begin();
    /// Begins the next file. The one of its family before it is read to its end first.
    bool BeginNext();

    bool IsFollowed(const read::LogFile& file) const;
    /// Adds the files that were begun after the last one of their family; true if there are any.
    bool FindNewer();

    std::vector<read::LogFile>& files_;
    read::LogReader& reader_;
    bool takesAllFamilies_;
    std::set<std::filesystem::path> known_;
    std::size_t next_ = 0;              ///< the first of the files that has not been begun
    std::optional<std::uint32_t> open_; ///< the file that the reader is in
    std::vector<GrowingFile> growing_;
};

} // namespace marvane::tool
