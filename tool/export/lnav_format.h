// How lnav reads logs.
#pragma once

#include <string_view>

namespace marvane::tool {

/// A format file of lnav, LnavFormat.json.
std::string_view LnavFormat();

} // namespace marvane::tool
