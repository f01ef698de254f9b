// What a redactor has changed: records that are made of it say so.
#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <unordered_set>

#include "tool/export/keyed_hash.h"
#include "tool/read/exchange.h"

namespace marvane::tool {

/// Memory is bounded: lines far before the last ones, and the oldest payloads, are forgotten.
class RedactionMarks
{
public:
    static constexpr std::size_t MostLines = 200'000; ///< of each file
    static constexpr std::size_t MostPayloads = 100'000;

    /// Nothing of that file was changed, whatever was said before.
    void BeginFile(std::uint32_t file);
    /// Lines are added in their order.
    void AddLine(std::uint32_t file, std::uint64_t line);
    /// The bytes of a listing as they are now.
    void AddPayload(read::Bytes bytes);

    bool IsChanged(std::uint32_t file, std::uint64_t line) const;
    /// Whether a record was made of a changed line.
    bool IsChanged(const read::Call& call) const;
    bool IsChanged(const read::Comms& report) const;
    /// Whether one of these lines was changed.
    bool IsChanged(std::uint32_t file, std::uint64_t first, std::uint64_t last) const;
    /// Whether the bytes of its request or of an answer were.
    bool IsChanged(const read::Exchange& exchange) const;
    /// Whether these are the bytes of a listing that was changed.
    bool IsChanged(read::Bytes payload) const;

    /// How many lines were changed, forgotten ones too.
    std::uint64_t LineCount() const { return lineCount_; }

private:
    HashKey key_ = HashKey::Random();
    std::map<std::uint32_t, std::deque<std::uint64_t>> lines_; ///< by file, ascending
    std::unordered_set<std::uint64_t> payloads_;               ///< hashes
    std::deque<std::uint64_t> payloadOrder_;
    std::uint64_t lineCount_ = 0;
};

} // namespace marvane::tool
