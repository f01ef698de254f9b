#include "platform/narrow_text.h"

namespace marvane::platform {

std::string Utf8FromNarrow(const std::string& bytes)
{
    return bytes;
}

} // namespace marvane::platform
