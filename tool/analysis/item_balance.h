// Items that the library handed out and the application gave back.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "tool/read/records.h"

namespace marvane::tool {

/// Counts, and remembers by their addresses which items are out. Not all calls show the address of what they
/// hand out, and addresses are used again, so the counts are sure and the list is a help.
class ItemBalance
{
public:
    void OnCall(const read::Call& call);
    void OnItem(const read::Item& item);

    std::uint64_t Given() const { return given_; }
    std::uint64_t Destroyed() const { return destroyed_; }
    /// The items out that show an address: "not destroyed: 2 results of PDUGetEventItem, lines 29, 40", a
    /// text a kind, in the order of the log.
    std::vector<std::string> WhatIsOut() const;
    /// Forgets which are out; the counts stay.
    void Forget() { out_.clear(); }

private:
    struct OutItem
    {
        read::Position At;
        std::string By;        ///< name of the call
        std::string_view What; ///< "result"; "item" for what no event brought
    };

    void Give(std::string_view address, const read::Position& at, std::string_view by,
              std::string_view what = "item");
    void TakeBack(const read::Call& destroy);

    std::vector<OutItem> ByLine() const;

    std::uint64_t given_ = 0;
    std::uint64_t destroyed_ = 0;
    std::map<std::string, OutItem, std::less<>> out_;
};

} // namespace marvane::tool
