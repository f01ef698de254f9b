// Which messages a UDS dissector can take apart.
#pragma once

#include <cstdint>

#include "tool/read/records.h"

namespace marvane::tool {

/// True if a message (`size` bytes, of which the log shows `shown`) has at least the bytes that its service
/// needs. Wireshark calls the others malformed; they are to be shown as plain bytes.
bool IsWholeUds(read::Bytes shown, std::uint64_t size);

} // namespace marvane::tool
