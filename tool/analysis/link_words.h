// Which words apply to the bytes of a link.
#pragma once

#include <cstdint>
#include <string>

#include "tool/read/links.h"
#include "tool/words/dialect.h"

namespace marvane::tool {

/// By the name of the protocol, else of the resource.
words::Dialect DialectOf(const read::Link& link);

/// Whether a request asks not to be answered if all is well. A read::SuppressionRule.
bool SuppressesAnswer(const read::Link& link, read::Bytes request);

/// "requestOutOfRange", "0x95" for a code without a name.
std::string NrcText(words::Dialect dialect, std::uint8_t code);

/// "link 2"; "link 2 of module 3" for another module than the first; "module 1" or nothing for what has no
/// link.
std::string LinkText(const read::Link& link);

} // namespace marvane::tool
