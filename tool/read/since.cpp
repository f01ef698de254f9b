#include "tool/read/since.h"

#include <algorithm>
#include <fstream>
#include <vector>

#include "line/stamp.h"
#include "tool/read/known_lines.h"
#include "tool/read/line_clock.h"
#include "tool/read/line_kind.h"
#include "tool/read/skipped_lines.h"
#include "tool/read/split_lines.h"

namespace marvane::read {

namespace {

/// No file is longer in time than this if its dates are to be known without reading it.
constexpr std::int64_t LongestSpan = 20LL * 60 * 60 * 1000;
/// Steps back of the clock up to this are nothing: the lines from then on are read.
constexpr std::int64_t SmallStep = 60LL * 1000;
/// Greater steps are looked for at so many places.
constexpr std::uint64_t Places = 64;
/// A stamp is found within this, whatever is between two lines of one half.
constexpr std::size_t ProbeSize = 64 * 1024;
constexpr std::uint64_t WorthIt = 1024 * 1024;

class Probe
{
public:
    explicit Probe(const LogFile& file) : stream_(file.Path, std::ios::binary), begun_(file.Begin.NameTime) {}

    std::string_view Read(std::uint64_t offset, std::size_t size = ProbeSize)
    {
        buffer_.resize(size);
        stream_.clear();
        stream_.seekg(static_cast<std::streamoff>(offset));
        stream_.read(buffer_.data(), static_cast<std::streamsize>(size));
        return {buffer_.data(), static_cast<std::size_t>(std::max<std::streamsize>(stream_.gcount(), 0))};
    }

    struct Found
    {
        std::uint64_t Offset; ///< of the line
        LogTime Time;
    };

    /// The first stamped line that begins after `offset`, or at it if that is 0.
    std::optional<Found> LineAfter(std::uint64_t offset)
    {
        const std::string_view bytes = Read(offset);
        std::size_t at = 0;
        for (bool isLine = offset == 0;; isLine = true) {
            const std::optional<Stamp> stamp = isLine ? ParseStamp(bytes.substr(at)) : std::nullopt;
            if (stamp)
                return Found{offset + at, TimeOf(*stamp)};
            const std::size_t end = bytes.find('\n', at);
            if (end == std::string_view::npos)
                return std::nullopt;
            at = end + 1;
        }
    }

private:
    LogTime TimeOf(const Stamp& stamp) const
    {
        LineClock clock;
        clock.BeginFile({begun_.Ms - SmallStep + MillisecondsPerDay / 2}, true);
        const std::uint32_t seconds = (stamp.Hour * 60u + stamp.Minute) * 60u + stamp.Second;
        return clock.At(seconds * 1000u + stamp.Milliseconds);
    }

    std::ifstream stream_;
    LogTime begun_;
    std::vector<char> buffer_;
};

bool IsHeader(const KnownLine& line)
{
    switch (line.Kind) {
    case LineKind::Initialise:
    case LineKind::Version:
    case LineKind::Header:
    case LineKind::Setting:
    case LineKind::Mark:
        return true;
    case LineKind::Decoded:
        return IsHeaderLine(line.Rest);
    case LineKind::Exit:
    case LineKind::CallOut:
        return line.Rest.starts_with("LOGGER_Initialise");
    default:
        return false;
    }
}

/// The end of the header that begins at `begin`. Lines of other threads may stand among its own.
FilePlace HeaderEnd(Probe& probe, FilePlace begin)
{
    const std::string_view bytes = probe.Read(begin.Offset);
    const std::optional<Stamp> first = ParseStamp(bytes);
    FilePlace header = begin;
    std::size_t at = 0;
    for (std::uint64_t lines = begin.Line + 1;; ++lines) {
        const std::size_t end = bytes.find('\n', at);
        const std::optional<Stamp> stamp = ParseStamp(bytes.substr(at));
        if (end == std::string_view::npos)
            return header;
        std::string_view line = bytes.substr(at, end - at);
        at = end + 1;
        if (!stamp || !first || stamp->Thread != first->Thread)
            continue;
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        if (!IsHeader(KindOf(line.substr(StampLength))))
            return header;
        header = {begin.Offset + at, lines};
    }
}

/// The last place with a line before `since` such that none of the places looked at before it is later.
std::uint64_t PlaceBefore(Probe& probe, std::uint64_t begin, std::uint64_t end, LogTime since)
{
    const auto isBefore = [&](std::uint64_t place) {
        const auto found = probe.LineAfter(place);
        return found && found->Time < since;
    };
    const std::uint64_t first = begin;
    while (end - begin > ProbeSize) {
        const std::uint64_t middle = begin + (end - begin) / 2;
        (isBefore(middle) ? begin : end) = middle;
    }
    for (std::uint64_t place = 1; place < Places; ++place) {
        const std::uint64_t step = (begin - first) / Places;
        if (!isBefore(first + place * step))
            return first + (place - 1) * step;
    }
    return begin;
}

/// Looks at the lines from one place to the beginning of another line.
SkippedLines LookAt(Probe& probe, FilePlace begin, std::uint64_t end)
{
    SkippedLines skipped(begin);
    LineSplitter splitter;
    for (std::uint64_t at = begin.Offset; at < end;) {
        constexpr std::uint64_t piece = 256 * 1024;
        const std::string_view bytes = probe.Read(at, static_cast<std::size_t>(std::min(piece, end - at)));
        if (bytes.empty())
            break;
        splitter.Feed(bytes,
                      [&](std::string_view line, std::size_t length) { skipped.OnLine(line, length); });
        at += bytes.size();
    }
    return skipped;
}

bool IsWorthIt(const LogFile& file)
{
    return !file.IsStandardInput && !file.IsCompressed && file.Begin.HasNameTime && file.Size >= WorthIt &&
           file.LastChange - file.Begin.NameTime < LongestSpan && file.LastChange >= file.Begin.NameTime;
}

} // namespace

std::optional<NeededParts> PartsSince(const LogFile& file, LogTime since, bool wholeCalls)
{
    if (!IsWorthIt(file))
        return std::nullopt;
    Probe probe(file);
    const NeededParts::Header first = {{}, HeaderEnd(probe, {})};
    const std::uint64_t place = PlaceBefore(probe, first.End.Offset, file.Size, {since.Ms - SmallStep});
    const auto line = probe.LineAfter(place);
    if (!line || line->Offset <= first.End.Offset)
        return std::nullopt;
    const SkippedLines skipped = LookAt(probe, first.End, line->Offset);
    const auto open = wholeCalls ? skipped.FirstOpen() : std::nullopt;
    NeededParts parts = {{first}, open ? *open : skipped.At()};
    const auto newest = skipped.NewestHeader();
    if (newest && newest->Offset < parts.Rest.Offset) {
        parts.Headers.push_back({*newest, HeaderEnd(probe, *newest)});
        if (parts.Headers.back().End.Offset > parts.Rest.Offset) { // another thread's lines are among it
            parts.Rest = *newest;
            parts.Headers.pop_back();
        }
    }
    return parts;
}

} // namespace marvane::read
