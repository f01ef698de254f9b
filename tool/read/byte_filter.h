// Changes of a log's bytes on their way into the reader.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace marvane::read {

/// As many bytes and lines come out as went in. Files have the numbers of the reader.
class ByteFilter
{
public:
    virtual ~ByteFilter() = default;

    /// A file begins, perhaps for another time.
    virtual void Begin(std::uint32_t file) = 0;
    /// Takes the next bytes of a file and appends to `out` what is ready; it may keep some back.
    virtual void Take(std::uint32_t file, std::string_view bytes, std::string& out) = 0;
    /// The next `lines` of the file are not read.
    virtual void Skip(std::uint32_t file, std::uint64_t lines) = 0;
    /// The file ends, or a part of it is skipped: appends what was kept back.
    virtual void End(std::uint32_t file, std::string& out) = 0;
};

} // namespace marvane::read
