#include <array>

#include "line/marks.h"
#include "line/stamp.h"
#include "tool/read/byte_source.h"
#include "tool/read/log_files.h"

namespace marvane::read {

namespace {

/// True if the first line of a file begins a session; else it goes on from another file.
bool BeginsSession(const LogFile& file)
{
    std::unique_ptr<ByteSource> source = OpenFileSource(file.Path);
    if (!source)
        return false;
    source = MaybeUnpacked(std::move(source));
    std::array<char, StampLength + marks::Initialise.size()> buffer{};
    std::size_t count = 0;
    while (const std::size_t more = source->Read(std::span(buffer).subspan(count)))
        count += more;
    const std::string_view line(buffer.data(), count);
    return ParseStamp(line) && line.substr(StampLength) == marks::Initialise;
}

} // namespace

std::vector<LogFile> NewestSession(const std::vector<LogFile>& files)
{
    for (auto file = files.rbegin(); file != files.rend(); ++file)
        if (!file->Begin.IsComms && !file->IsStandardInput && BeginsSession(*file))
            return {file.base() - 1, files.end()};
    return files;
}

} // namespace marvane::read
