// Cuts a stream of bytes into lines, whatever the sizes of the pieces in which it comes.
#pragma once

#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>

namespace marvane::read {

class LineSplitter
{
public:
    /// A longer line is no line of a log. It is given in pieces of this length.
    static constexpr std::size_t LongestLine = 256 * 1024;

    /// Calls take(line, length) for each line that is complete: `line` is without its line end (LF or CR LF),
    /// `length` is what the line takes in the file.
    template <class Take> void Feed(std::string_view bytes, Take&& take)
    {
        while (!bytes.empty()) {
            const void* const found = std::memchr(bytes.data(), '\n', bytes.size());
            if (!found) {
                Keep(bytes, take);
                return;
            }
            const auto length = static_cast<std::size_t>(static_cast<const char*>(found) - bytes.data());
            if (rest_.empty())
                take(WithoutReturn(bytes.substr(0, length)), length + 1);
            else
                TakeRest(bytes.substr(0, length), take);
            bytes.remove_prefix(length + 1);
        }
    }

    /// What has no line end yet.
    std::string_view Rest() const { return rest_; }
    void Clear() { rest_.clear(); }

private:
    static std::string_view WithoutReturn(std::string_view line)
    {
        return line.ends_with('\r') ? line.substr(0, line.size() - 1) : line;
    }

    template <class Take> void TakeRest(std::string_view end, Take& take)
    {
        rest_.append(end);
        take(WithoutReturn(rest_), rest_.size() + 1);
        rest_.clear();
    }

    template <class Take> void Keep(std::string_view bytes, Take& take)
    {
        rest_.append(bytes);
        if (rest_.size() < LongestLine)
            return;
        take(std::string_view(rest_), rest_.size());
        rest_.clear();
    }

    std::string rest_;
};

} // namespace marvane::read
