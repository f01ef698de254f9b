#include "tool/setup/short_list.h"

namespace marvane::tool {

namespace {

constexpr std::size_t MostWhole = 5;
constexpr std::size_t MostOfMore = 3;

} // namespace

std::string ShortList(const std::vector<std::string>& names)
{
    const std::size_t count = names.size() > MostWhole ? MostOfMore : names.size();
    std::string text;
    for (std::size_t i = 0; i < count; ++i)
        text += (i == 0 ? "" : ", ") + names[i];
    return count == names.size() ? text : text + " and " + std::to_string(names.size() - count) + " more";
}

} // namespace marvane::tool
