// The event item that a PDUGetEventItem fetched, and the ComParam that a get or set carried.
#pragma once

#include <optional>
#include <vector>

#include "tool/read/records.h"

namespace marvane::read {

/// Reads records out of calls. Keeps the bytes of the last record in memory of its own.
class ItemReader
{
public:
    /// The item of a call; null if it fetched none, or the log does not show it. Valid until the next call.
    const Item* ItemOf(const Call& fetch);
    /// The ComParam of a successful PDUGetComParam or PDUSetComParam, likewise.
    const Param* ParamOf(const Call& call);

private:
    void ReadResult(const Call& fetch, std::span<const CallLine> lines);
    void ReadIndicators(std::span<const CallLine> lines);
    void ReadParamValue(std::span<const CallLine> lines);

    Item item_;
    Param param_;
    std::vector<std::uint8_t> data_;
    std::vector<std::uint8_t> header_;
    std::vector<std::uint8_t> footer_;
    std::vector<std::uint8_t> flags_;
    std::vector<std::uint8_t> stamps_;
};

} // namespace marvane::read
