// The log itself, for a page from which it can be saved.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tool/read/byte_filter.h"
#include "tool/report/packed_text.h"

namespace marvane::tool::report {

/// Copies the bytes of all files, one after the other, as the reader gets them: after another filter, if
/// there is one.
class RawCopy : public read::ByteFilter
{
public:
    /// `next` outlives it and may be null.
    explicit RawCopy(read::ByteFilter* next) : next_(next) {}

    std::vector<std::uint64_t> Bytes; ///< how many, by file

    /// The copy, packed. To be called once.
    std::string Finish() { return packed_.Finish(); }

    void Begin(std::uint32_t file) override;
    void Take(std::uint32_t file, std::string_view bytes, std::string& out) override;
    void Skip(std::uint32_t, std::uint64_t) override {}
    void End(std::uint32_t file, std::string& out) override;

private:
    void Copy(std::uint32_t file, std::string_view bytes);

    read::ByteFilter* next_;
    PackedText packed_;
};

} // namespace marvane::tool::report
