// Items that the library handed out and the application gave back.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "tool/read/records.h"

namespace marvane::tool {

/// Counts, and remembers by their addresses which items are out. Not all calls show the address of what they
/// hand out, and addresses are used again, so the counts are sure and the list is a help.
class ItemBalance
{
public:
    struct OutItem
    {
        read::Position At;
        std::string By; ///< name of the call
    };

    void OnCall(const read::Call& call);
    void OnItem(const read::Item& item);

    std::uint64_t Given() const { return given_; }
    std::uint64_t Destroyed() const { return destroyed_; }
    /// Items out that show an address, by line; at most `most`.
    std::vector<OutItem> Out(std::size_t most) const;
    /// Forgets which are out; the counts stay.
    void Forget() { out_.clear(); }

private:
    void Give(std::string_view address, const read::Position& at, std::string_view by);

    std::uint64_t given_ = 0;
    std::uint64_t destroyed_ = 0;
    std::map<std::string, OutItem, std::less<>> out_;
};

} // namespace marvane::tool
