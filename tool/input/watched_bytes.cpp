#include "tool/input/watched_bytes.h"

namespace marvane::tool {

namespace {

/// 0 if it is unknown: how much a compressed file holds, only its reading shows.
std::uint64_t TotalOf(const std::vector<read::LogFile>& files)
{
    std::uint64_t total = 0;
    for (const read::LogFile& file : files) {
        if (file.IsCompressed || file.IsStandardInput)
            return 0;
        total += file.Size;
    }
    return total;
}

} // namespace

WatchedBytes::WatchedBytes(std::string what, const std::vector<read::LogFile>& files, read::ByteFilter* next)
    : progress_(std::move(what), TotalOf(files)), next_(next)
{
}

void WatchedBytes::Begin(std::uint32_t file)
{
    if (next_)
        next_->Begin(file);
}

void WatchedBytes::Take(std::uint32_t file, std::string_view bytes, std::string& out)
{
    progress_.At(done_ += bytes.size());
    if (next_)
        next_->Take(file, bytes, out);
    else
        out += bytes;
}

void WatchedBytes::Skip(std::uint32_t file, std::uint64_t lines)
{
    if (next_)
        next_->Skip(file, lines);
}

void WatchedBytes::End(std::uint32_t file, std::string& out)
{
    if (next_)
        next_->End(file, out);
}

} // namespace marvane::tool
