// Takes out of a log what should not leave the house: bytes in dumps and texts are replaced by others of the
// same length before the reader sees them, so that everything that is made of the log is free of them.
#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "line/arrows.h"
#include "tool/export/orphan_frames.h"
#include "tool/export/redaction_marks.h"
#include "tool/export/secret_values.h"
#include "tool/export/transport_frames.h"
#include "tool/read/byte_filter.h"
#include "tool/words/secrets.h"

namespace marvane::tool {

/// Kinds of secrets, by words::Secret.
using SecretKinds = std::set<words::Secret>;

/// The usual set: all of them.
SecretKinds AllSecrets();

/// Memory is bounded: lines far before the last ones are forgotten.
class Redactor : public read::ByteFilter
{
public:
    explicit Redactor(SecretKinds kinds, SecretValues values = SecretValues())
        : kinds_(std::move(kinds)), values_(std::move(values))
    {
    }

    void Begin(std::uint32_t file) override;
    void Take(std::uint32_t file, std::string_view bytes, std::string& out) override;
    void Skip(std::uint32_t file, std::uint64_t lines) override;
    void End(std::uint32_t file, std::string& out) override;

    /// Whether a line, lines, bytes or something made of them was changed; see RedactionMarks.
    template <class... What> bool IsChanged(const What&... what) const { return marks_.IsChanged(what...); }

    /// How many lines were changed.
    std::uint64_t ChangedLines() const { return marks_.LineCount(); }

private:
    /// The rows of one listing, which follow each other in a file.
    struct Listing
    {
        struct Row
        {
            std::size_t Begin = 0; ///< of the arrow, in the text
            std::size_t Count = 0; ///< of bytes
            std::uint64_t Line = 0;
        };
        std::vector<Row> Rows;
        std::vector<std::uint8_t> Bytes;
        std::string Label;
        std::uint32_t Thread = 0;
        std::size_t TextBegin = 0; ///< of the first row's line
        Direction Way = Direction::ToTarget;
        bool IsOfReport = false;
        std::string Title;                    ///< of that report, with its protocol
        std::optional<std::uint32_t> Address; ///< of that report
        bool IsTail = false;                  ///< its beginning was not seen
        bool IsSecretTail = false;
    };
    struct Report
    {
        bool IsOpen = false;
        std::string Title; ///< with its protocol
        std::optional<std::uint32_t> Address;
    };
    struct File
    {
        std::string Text;
        std::size_t Scanned = 0;
        std::uint64_t Lines = 0;
        Listing Open;
        std::map<std::uint32_t, Report> Reports; ///< by thread
    };

    // redactor.cpp: lines and listings
    void ReadLine(std::uint32_t number, File& file, std::size_t begin, std::size_t end);
    bool AddRow(std::uint32_t number, File& file, std::size_t line, std::size_t arrow, std::size_t end,
                std::uint32_t thread);
    void Close(std::uint32_t number, File& file);
    void Write(std::uint32_t number, File& file, const Listing& listing, std::span<const std::uint8_t> bytes);

    // redact_listing.cpp: the bytes of a listing
    std::vector<std::uint8_t> Redacted(const Listing& listing, bool& endsSecret);
    words::SecretPart SecretOf(const Listing& listing, read::Bytes message) const;
    words::SecretPart SecretOfAnswer(read::Bytes answer) const;
    void RedactPart(words::Secret what, read::Bytes part, std::uint8_t* out);
    void RedactKnown(read::Bytes bytes, std::uint8_t* out);
    void Replace(read::Bytes secret, std::uint8_t* out);

    // redact_frames.cpp: messages that are split over frames
    bool RedactSegment(const Listing& listing, std::uint8_t* out);
    bool IsRequest(read::Bytes bytes) const;
    bool RedactOrphan(const Listing& listing, bool isPlain, std::uint8_t* out);
    std::uint64_t SecretBeginOf(Direction way, read::Bytes head, std::uint64_t total) const;

    // redact_text.cpp: texts
    void RedactText(std::uint32_t number, std::uint64_t line, File& file, std::size_t begin, std::size_t end);
    std::size_t RedactHex(read::Bytes bytes, std::size_t at, std::uint8_t* out);
    void RedactSerial(read::Bytes bytes, std::uint8_t* out);

    bool Takes(words::Secret what) const { return kinds_.contains(what); }

    SecretKinds kinds_;
    SecretValues values_;
    std::map<std::uint32_t, File> files_;
    RedactionMarks marks_;
    std::deque<std::vector<std::uint8_t>> reads_; ///< requests for several identifiers, the newest last
    SegmentedMessages segments_;
    OrphanFrames orphans_;
};

} // namespace marvane::tool
