// The text buffer of one phase of a call, of a fixed size and on the stack of that call.
//
// Statements are formatted straight to their place: a statement with a literal format reserves the most that
// it can need, writes conversion by conversion and commits what it used (text/literal_format.h says what that
// saves). Only near the end of the buffer, where text may have to be cut, the general formatter is used. The
// length is stored, never measured: the buffer is larger than what most calls write, and its text is not
// NUL-terminated.
#pragma once

#include <cstddef>
#include <string_view>
#include <utility>

#include "line/marks.h"
#include "text/literal_format.h"
#include "text/text_copy.h"

namespace marvane {

/// Text that grows by statements. Once a statement reaches into the margin, a mark is added and HasRoom is
/// false from then on: callers then add nothing more. Used by one thread.
class LogBuffer
{
public:
    static constexpr std::size_t Size = 15000;     ///< bytes, as all figures here
    static constexpr std::size_t Capacity = 14991; ///< a statement's text is cut here, so that the mark fits
    static constexpr std::size_t Margin = 200;     ///< the last statement may use it

    // Left uninitialised: `length_` says what is valid, and clearing 15,000 bytes per call is expensive.
    LogBuffer() {}
    LogBuffer(const LogBuffer&) = delete;
    LogBuffer& operator=(const LogBuffer&) = delete;

    std::string_view Text() const { return {text_, length_}; }
    void Clear() { length_ = 0; }

    /// True while a statement may still add text.
    bool HasRoom() const { return length_ + Margin < Capacity; }

    /// Adds one statement that joins strings. The caller must have tested HasRoom; so for the next two.
    template <class... Texts> void Append(std::string_view first, const Texts&... others)
    {
        char* end = Put(text_ + length_, first);
        ((end = Put(end, others)), ...);
        EndStatement(end);
    }

    /// Adds one statement by the general formatter.
    void Append(const FormattedText& text);

    /// Adds one statement by its literal format.
    template <FormatLiteral Literal, class... Arguments>
    void Append(LogFormat<Literal> format, const Arguments&... arguments)
    {
        if (AppendWhole(format, literal_format::Shown(arguments, Capacity - length_)...))
            return;
        const literal_format::List<Arguments...> list = {FormatArgument(arguments)...};
        Append({format.Text, format.Conversions.data(), list.data(), list.size()});
    }

    /// Reserves `length` bytes at the end for the caller to fill; null if they would reach into the margin.
    char* Reserve(std::size_t length)
    {
        if (length_ + length + Margin >= Capacity)
            return nullptr;
        length_ += length;
        return text_ + length_ - length;
    }

    /// Ends the text at `end`, in the bytes that were reserved last.
    void Commit(const char* end) { length_ = static_cast<std::size_t>(end - text_); }

private:
    /// Writes a statement to its place. False if it could reach into the margin: it may have to be cut.
    template <class Format, class... Shown> bool AppendWhole(Format, const Shown&... shown)
    {
        constexpr std::index_sequence_for<Shown...> indices;
        char* const out = Reserve(literal_format::LimitOfAll<Format>(indices, shown...));
        if (!out)
            return false;
        Commit(literal_format::PutAll<Format>(out, indices, shown...));
        return true;
    }

    char* Put(char* end, std::string_view text) const
    {
        return PutText(end, text.substr(0, static_cast<std::size_t>(text_ + Capacity - end)));
    }

    void EndStatement(const char* end)
    {
        Commit(end);
        if (!HasRoom())
            AddMark();
    }
    void AddMark();

    std::size_t length_ = 0;
    char text_[Size];
};

static_assert(LogBuffer::Capacity + marks::BufferFull.size() < LogBuffer::Size);

} // namespace marvane
