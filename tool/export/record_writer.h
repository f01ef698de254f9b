// How the records of a log are written down: as JSON, as SQL, as rows of a table. Which keys a record has is
// said once, in log_records.cpp.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace marvane::tool {

/// A key whose value is a text or a number.
struct NamedValue
{
    std::string_view Key;
    std::string_view Text;
    bool IsNumber = false; ///< Text is one
};

class RecordWriter
{
public:
    virtual ~RecordWriter() = default;

    /// Whether records of that kind are written at all.
    virtual bool Takes(std::string_view kind) const = 0;
    /// Begins a record; the last one is forgotten.
    virtual void Begin(std::string_view kind) = 0;

    // Keys are plain words. A key without a value is not written.
    virtual void Text(std::string_view key, std::string_view value) = 0;
    virtual void Number(std::string_view key, std::int64_t value) = 0;
    virtual void Flag(std::string_view key, bool value) = 0;
    virtual void Hex(std::string_view key, std::span<const std::uint8_t> bytes) = 0;
    virtual void Texts(std::string_view key, std::span<const std::string_view> texts) = 0;
    virtual void Values(std::string_view key, std::span<const NamedValue> values) = 0;

    /// The whole record, with its line end; good until the next Begin.
    virtual std::string_view End() = 0;

    /// Leaves the key out if there is no text.
    void TextIfAny(std::string_view key, std::string_view value)
    {
        if (!value.empty())
            Text(key, value);
    }
};

} // namespace marvane::tool
