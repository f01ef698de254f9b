#include "tool/input/follower.h"

#include <algorithm>
#include <fstream>

#include "platform/utf8_path.h"

namespace marvane::tool {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t PartSize = 64 * 1024;

} // namespace

bool GrowingFile::ReadInto(read::LogReader& reader)
{
    if (!HasNews())
        return false;
    std::ifstream stream(path_, std::ios::binary);
    stream.seekg(static_cast<std::streamoff>(at_));
    char part[PartSize];
    stream.read(part, sizeof part);
    at_ += static_cast<std::uintmax_t>(stream.gcount());
    reader.Feed({part, static_cast<std::size_t>(stream.gcount())});
    return stream.gcount() > 0;
}

/// A file that is gone has no news.
std::uintmax_t GrowingFile::Size() const
{
    std::error_code gone;
    const std::uintmax_t size = fs::file_size(path_, gone);
    return gone ? at_ : size;
}

bool Follower::Step()
{
    if (open_ && Read(*open_))
        return true;
    if (next_ < files_.size())
        return BeginNext();
    for (GrowingFile& file : growing_)
        if (file.HasNews())
            return Read(file.Number());
    return FindNewer() && BeginNext();
}

GrowingFile& Follower::Growing(std::uint32_t number)
{
    return *std::ranges::find(growing_, number, &GrowingFile::Number);
}

bool Follower::Read(std::uint32_t number)
{
    if (Growing(number).HasShrunk())
        number = BeginAgain(number);
    if (!Growing(number).HasNews())
        return false;
    GoTo(number);
    return Growing(number).ReadInto(reader_);
}

void Follower::GoTo(std::uint32_t number)
{
    if (open_ == number)
        return;
    Leave();
    reader_.Resume(number);
    open_ = number;
}

void Follower::Leave()
{
    if (open_)
        reader_.Suspend();
    open_.reset();
}

void Follower::End(std::uint32_t number)
{
    GoTo(number);
    reader_.EndFile();
    open_.reset();
    std::erase_if(growing_, [number](const GrowingFile& file) { return file.Number() == number; });
}

std::uint32_t Follower::BeginAgain(std::uint32_t number)
{
    const read::LogFile file = files_[number];
    GoTo(number);
    reader_.Report(read::ProblemKind::FileChanged,
                   file.Begin.Name + ": became shorter, read again from its beginning");
    End(number);
    files_.insert(files_.begin() + static_cast<std::ptrdiff_t>(next_), file);
    Begin();
    return *open_;
}

void Follower::Begin()
{
    Leave();
    const read::LogFile& file = files_[next_];
    reader_.BeginFile(file.Begin);
    open_ = static_cast<std::uint32_t>(next_++);
    growing_.emplace_back(file.Path, *open_);
}

bool Follower::BeginNext()
{
    const std::optional<LogFamily> family = files_[next_].Family;
    const auto former = std::ranges::find_if(
        growing_, [&](const GrowingFile& file) { return files_[file.Number()].Family == family; });
    if (former != growing_.end()) {
        const std::uint32_t number = former->Number();
        if (Read(number))
            return true;
        End(number);
    }
    if (!files_[next_].IsCompressed) {
        Begin();
        return Read(*open_) || Step();
    }
    Leave();
    read::ReadLogFile(files_[next_++], reader_);
    return true;
}

bool Follower::IsFollowed(const read::LogFile& file) const
{
    const auto last = std::find_if(files_.rbegin(), files_.rend(),
                                   [&](const read::LogFile& each) { return each.Family == file.Family; });
    if (last == files_.rend())
        return takesAllFamilies_ && file.Begin.NameTime >= files_.front().Begin.NameTime;
    return file.Begin.NameTime >= last->Begin.NameTime;
}

bool Follower::FindNewer()
{
    if (files_.empty())
        return false; // None came before the time-out.
    // Comms logs may be beside the folder of the API logs, which leads to both.
    const auto api = std::ranges::find(files_, std::optional(LogFamily::Api), &read::LogFile::Family);
    const fs::path path = api == files_.end() ? files_.back().Path : api->Path;
    const fs::path folder = path.has_parent_path() ? path.parent_path() : fs::path(".");
    std::vector<read::LogFile> newer;
    for (read::LogFile& file : read::FindLogFiles({platform::PathText(folder)}).Files)
        if (IsFollowed(file) && known_.insert(file.Path.filename()).second)
            newer.push_back(std::move(file));
    files_.insert(files_.end(), newer.begin(), newer.end());
    return !newer.empty();
}

} // namespace marvane::tool
