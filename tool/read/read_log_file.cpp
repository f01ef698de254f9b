#include <array>
#include <vector>

#include "line/stamp.h"
#include "tool/read/byte_source.h"
#include "tool/read/log_files.h"
#include "tool/read/since.h"

namespace marvane::read {

namespace {

constexpr std::size_t BufferSize = 256 * 1024;

/// True if a line of `bytes` begins with a stamp.
bool HasStampedLine(std::string_view bytes)
{
    while (!bytes.empty()) {
        if (ParseStamp(bytes))
            return true;
        const std::size_t end = bytes.find('\n');
        bytes.remove_prefix(end == std::string_view::npos ? bytes.size() : end + 1);
    }
    return false;
}

std::unique_ptr<ByteSource> Open(const LogFile& file)
{
    if (file.Spool)
        return SpoolSource(file.Spool);
    std::unique_ptr<ByteSource> source =
        file.IsStandardInput ? StandardInputSource() : OpenFileSource(file.Path);
    return source ? MaybeUnpacked(std::move(source)) : nullptr;
}

/// Reads until the buffer is full or the source has no more.
std::size_t Fill(ByteSource& source, std::span<char> buffer)
{
    std::size_t count = 0;
    while (count < buffer.size()) {
        const std::size_t more = source.Read(buffer.subspan(count));
        if (more == 0)
            break;
        count += more;
    }
    return count;
}

bool Fail(LogReader& reader, const LogFile& file, std::string_view reason)
{
    reader.Report(ProblemKind::FileTrouble, file.Begin.Name + ": " + std::string(reason));
    return false;
}

bool ReadAll(const LogFile& file, ByteSource& source, LogReader& reader, std::uint64_t begin)
{
    std::vector<char> buffer(BufferSize);
    std::uint64_t end = begin;
    for (bool isFirst = begin == 0; !reader.IsEnough(); isFirst = false) {
        const std::size_t count = isFirst ? Fill(source, buffer) : source.Read(buffer);
        const std::string_view bytes(buffer.data(), count);
        if (isFirst && count == 0 && source.Trouble().empty())
            return Fail(reader, file, "is empty");
        if (isFirst && count > 0 && !HasStampedLine(bytes))
            return Fail(reader, file, "is no log");
        if (count == 0)
            break;
        end += count;
        reader.Feed(bytes);
    }
    if (const std::string trouble = source.Trouble(); !trouble.empty())
        return Fail(reader, file, trouble);
    if (!reader.IsEnough() && !file.IsCompressed && end < file.Size)
        reader.Report(ProblemKind::FileChanged, file.Begin.Name + ": became shorter while it was read");
    return true;
}

/// Feeds the headers and leaves out what is between them and up to the rest. Returns a source for that.
std::unique_ptr<ByteSource> FeedHeaders(const LogFile& file, LogReader& reader, const NeededParts& parts)
{
    FilePlace at;
    const auto skipTo = [&](const FilePlace& place) {
        if (place.Offset > at.Offset)
            reader.Skip(place.Offset - at.Offset, place.Line - at.Line);
    };
    for (const NeededParts::Header& header : parts.Headers) {
        const std::unique_ptr<ByteSource> source = OpenFileSource(file.Path, header.Begin.Offset);
        if (!source)
            return nullptr;
        skipTo(header.Begin);
        std::vector<char> bytes(static_cast<std::size_t>(header.End.Offset - header.Begin.Offset));
        reader.Feed({bytes.data(), Fill(*source, bytes)});
        at = header.End;
    }
    skipTo(parts.Rest);
    return OpenFileSource(file.Path, parts.Rest.Offset);
}

} // namespace

bool ReadLogFile(const LogFile& file, LogReader& reader, const ReadOptions& options)
{
    reader.BeginFile(file.Begin);
    std::unique_ptr<ByteSource> source = Open(file);
    const auto parts =
        source && options.Since ? PartsSince(file, *options.Since, options.WholeCalls) : std::nullopt;
    if (parts)
        source = FeedHeaders(file, reader, *parts);
    const bool isGood = source ? ReadAll(file, *source, reader, parts ? parts->Rest.Offset : 0)
                               : Fail(reader, file, "can't be opened");
    reader.EndFile();
    return isGood;
}

} // namespace marvane::read
