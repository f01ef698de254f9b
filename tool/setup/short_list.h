// Lists of names that fit into a sentence.
#pragma once

#include <string>
#include <vector>

namespace marvane::tool {

/// "A, B, C"; of more than five names the first three: "A, B, C and 22 more".
std::string ShortList(const std::vector<std::string>& names);

} // namespace marvane::tool
