// The bytes of a log on their way into the reader, with progress.
#pragma once

#include <string>
#include <vector>

#include "tool/console/progress.h"
#include "tool/read/byte_filter.h"
#include "tool/read/log_files.h"

namespace marvane::tool {

/// Shows how far the reading has come, whatever the size of a file.
class WatchedBytes : public read::ByteFilter
{
public:
    /// `what` is the work that is shown. The bytes pass through `next`, unless it is null; it outlives this.
    WatchedBytes(std::string what, const std::vector<read::LogFile>& files, read::ByteFilter* next);

    void Begin(std::uint32_t file) override;
    void Take(std::uint32_t file, std::string_view bytes, std::string& out) override;
    void Skip(std::uint32_t file, std::uint64_t lines) override;
    void End(std::uint32_t file, std::string& out) override;

private:
    Progress progress_;
    read::ByteFilter* next_;
    std::uint64_t done_ = 0;
};

} // namespace marvane::tool
