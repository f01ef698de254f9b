// A file a day in a folder a machine: FOLDER/HOST/2026-11-25.jsonl.gz.
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <deque>
#include <filesystem>
#include <fstream>
#include <set>
#include <vector>

// The compressor then takes constant input.
#define ZLIB_CONST
#include <zlib.h>

#include "platform/replace_file.h"
#include "platform/utf8_path.h"
#include "tool/console/arguments.h"
#include "tool/export/sink.h"
#include "tool/export/zone_time.h"

namespace marvane::tool {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t BufferSize = 256 * 1024;
// Lines of a day come rarely after those of the next one, so few files need a compressor at a time.
constexpr std::size_t MostOpen = 4;

/// Appends gzip members to a file, which is how a compressed file is continued.
class GzipMember
{
public:
    explicit GzipMember(const std::string& path) : path_(path), packed_(BufferSize)
    {
        constexpr int withGzipHeader = 16;
        errno = 0;
        stream_.open(platform::FilePath(path), std::ios::binary | std::ios::app);
        if (!stream_)
            Fail();
        if (deflateInit2(&packer_, Z_DEFAULT_COMPRESSION, Z_DEFLATED, MAX_WBITS + withGzipHeader, 8,
                         Z_DEFAULT_STRATEGY) != Z_OK)
            throw Trouble(path_ + ": out of memory");
    }
    ~GzipMember() { deflateEnd(&packer_); }
    GzipMember(const GzipMember&) = delete;
    GzipMember& operator=(const GzipMember&) = delete;

    void Write(std::string_view bytes) { Pack(bytes, Z_NO_FLUSH); }
    void End()
    {
        Pack({}, Z_FINISH);
        errno = 0;
        stream_.close();
        if (!stream_)
            Fail();
    }

private:
    [[noreturn]] void Fail() const
    {
        throw Trouble(path_ + ": " + (errno == 0 ? "can't be written" : std::strerror(errno)));
    }

    void Pack(std::string_view bytes, int flush)
    {
        packer_.next_in = reinterpret_cast<const Bytef*>(bytes.data());
        packer_.avail_in = static_cast<uInt>(bytes.size());
        do {
            packer_.next_out = packed_.data();
            packer_.avail_out = static_cast<uInt>(packed_.size());
            deflate(&packer_, flush);
            errno = 0;
            if (!stream_.write(reinterpret_cast<const char*>(packed_.data()),
                               static_cast<std::streamsize>(packed_.size() - packer_.avail_out)))
                Fail();
        } while (packer_.avail_out == 0);
    }

    std::string path_;
    std::vector<Bytef> packed_;
    std::ofstream stream_;
    z_stream packer_{};
};

class DayFolder : public Sink
{
public:
    DayFolder(std::string folder, std::string suffix, Existing existing)
        : folder_(std::move(folder)), suffix_(std::move(suffix)), isExtended_(existing == Existing::Extended)
    {
        std::error_code failure;
        fs::create_directories(platform::FilePath(folder_), failure);
        if (failure)
            throw Trouble(folder_ + ": " + failure.message());
    }

    ~DayFolder() override
    {
        open_.clear();
        std::error_code ignored;
        for (const std::int64_t day : days_)
            if (!isExtended_ && !isFinished_)
                fs::remove(platform::FilePath(WrittenPath(day)), ignored);
    }

    bool SelectDay(std::int64_t day) override
    {
        if (day == day_)
            return false;
        day_ = day;
        const bool isFirst = days_.insert(day).second;
        if (!isFirst)
            return false;
        std::error_code ignored;
        if (!isExtended_)
            fs::remove(platform::FilePath(WrittenPath(day)), ignored); // Left by a run that was interrupted.
        return !isExtended_ || !fs::exists(platform::FilePath(FinalPath(day)), ignored);
    }

    void Write(std::string_view bytes) override { Member().Write(bytes); }

    /// While a log is followed, what was written so far can be read: whole members of whole lines.
    void Flush() override
    {
        for (Open& each : open_)
            each.Member->End();
        open_.clear();
    }

    void Finish() override
    {
        Flush();
        for (const std::int64_t day : days_)
            if (!isExtended_)
                Rename(day);
        isFinished_ = true;
    }

private:
    struct Open
    {
        std::int64_t Day;
        std::unique_ptr<GzipMember> Member;
    };

    std::string FinalPath(std::int64_t day) const { return folder_ + "/" + DayText(day) + suffix_ + ".gz"; }
    std::string WrittenPath(std::int64_t day) const
    {
        return FinalPath(day) + std::string(isExtended_ ? "" : platform::UnfinishedMark);
    }

    GzipMember& Member()
    {
        const auto found = std::ranges::find(open_, day_, &Open::Day);
        if (found != open_.end())
            return *found->Member;
        if (open_.size() == MostOpen) {
            open_.front().Member->End();
            open_.pop_front();
        }
        open_.push_back({day_, std::make_unique<GzipMember>(WrittenPath(day_))});
        return *open_.back().Member;
    }

    void Rename(std::int64_t day) const
    {
        const std::string failure = platform::RenameFile(WrittenPath(day), FinalPath(day));
        if (!failure.empty())
            throw Trouble(FinalPath(day) + ": " + failure);
    }

    std::string folder_;
    std::string suffix_;
    bool isExtended_;
    bool isFinished_ = false;
    std::int64_t day_ = INT64_MIN;
    std::set<std::int64_t> days_; ///< all that were selected
    std::deque<Open> open_;
};

} // namespace

std::unique_ptr<Sink> MakeDayFolder(const std::string& folder, const std::string& suffix, Existing existing)
{
    return std::make_unique<DayFolder>(folder, suffix, existing);
}

} // namespace marvane::tool
