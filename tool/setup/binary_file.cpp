#include "tool/setup/binary_file.h"

#include "line/marks.h"
#include "pdu/functions.h"
#include "tool/setup/binary_reader.h"

namespace marvane::tool {

const char* MachineText(Machine machine)
{
    static constexpr const char* texts[] = {"of another machine", "32-bit", "64-bit", "64-bit ARM"};
    return texts[static_cast<std::size_t>(machine)];
}

std::optional<BinaryFacts> InspectBinary(std::string_view bytes)
{
    const BinaryView file(bytes);
    std::optional<BinaryFacts> facts = InspectPe(file);
    if (!facts)
        facts = InspectElf(file);
    // The first text of every log; no other library has a reason to hold it.
    if (facts)
        facts->IsMarvane = bytes.find(marks::Version) != std::string_view::npos;
    return facts;
}

std::vector<std::string> MissingFunctions(const BinaryFacts& facts)
{
    std::vector<std::string> missing;
    for (const std::string_view name : FunctionNames)
        if (!facts.Exports.contains(std::string(name)))
            missing.emplace_back(name);
    return missing;
}

std::string VersionText(const std::array<std::uint16_t, 4>& version)
{
    std::string text;
    for (const std::uint16_t number : version)
        text += (text.empty() ? "" : ".") + std::to_string(number);
    return text;
}

} // namespace marvane::tool
