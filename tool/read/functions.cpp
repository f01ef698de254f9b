#include <algorithm>
#include <array>

#include "pdu/functions.h"
#include "tool/read/records.h"

namespace marvane::read {

namespace {

/// In the order of Function: the functions of the API by their slots, then what else has lines of a call.
constexpr auto Names = [] {
    std::array<std::string_view, FunctionNames.size() + 2> names;
    std::copy(FunctionNames.begin(), FunctionNames.end(), names.begin());
    names[FunctionNames.size()] = "LOGGER_Uninitialise";
    names[FunctionNames.size() + 1] = "PDUCallbackTrap";
    return names;
}();
static_assert(Names.size() == static_cast<std::size_t>(Function::Unknown));

/// A perfect hash of the names: the look-up is done for every line that has a name.
constexpr std::size_t HashSize = 64;
constexpr std::size_t HashOf(std::string_view name)
{
    const auto at = [&](std::size_t index) { return static_cast<unsigned char>(name[index]); };
    return (name.size() + at(3) * 2u + at(name.size() / 2 + 1) + at(name.size() - 3) * 10u) % HashSize;
}

struct HashTable
{
    std::array<std::uint8_t, HashSize> Index{};
    bool IsPerfect = true;
};

constexpr HashTable MakeTable()
{
    HashTable table;
    table.Index.fill(static_cast<std::uint8_t>(Function::Unknown));
    for (std::size_t i = 0; i < Names.size(); ++i) {
        std::uint8_t& slot = table.Index[HashOf(Names[i])];
        table.IsPerfect = table.IsPerfect && slot == static_cast<std::uint8_t>(Function::Unknown);
        slot = static_cast<std::uint8_t>(i);
    }
    return table;
}

constexpr HashTable Table = MakeTable();
static_assert(Table.IsPerfect, "two names have the same hash: change HashOf");

} // namespace

Function FunctionOf(std::string_view name)
{
    constexpr std::size_t shortest = 8; // "PDUIoCtl"
    if (name.size() < shortest)
        return Function::Unknown;
    const std::uint8_t index = Table.Index[HashOf(name)];
    return index < Names.size() && Names[index] == name ? static_cast<Function>(index) : Function::Unknown;
}

std::string_view FunctionName(Function function)
{
    return function < Function::Unknown ? Names[static_cast<std::size_t>(function)] : "?";
}

} // namespace marvane::read
