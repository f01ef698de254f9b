#include <algorithm>
#include <charconv>
#include <limits>

#include "examples/sim_vci/faults.h"
#include "pdu/functions.h"

namespace sim {

const char* const FaultHelp =
    "A fault is NAME[:VALUE][@PLACE], several are separated by commas:\n"
    "  slow:MS@SERVICE      the control unit answers MS milliseconds later; beyond CP_P2Max the answer is late\n"
    "  silent@SERVICE       the control unit does not answer\n"
    "  refuse:NRC@SERVICE   the control unit refuses, with this negative response code\n"
    "  lose:N               each Nth result is lost, and the loss signalled\n"
    "  slow-call:MS@FUNCTION, crash:N@FUNCTION, hang:N@FUNCTION\n"
    "                       each call takes MS milliseconds longer; the Nth call ends the process; never returns\n"
    "NRC and SERVICE are hexadecimal. Without a place: everywhere.\n";

namespace {

struct KindRow
{
    std::string_view Name;
    FaultKind Kind;
    int Base;               ///< of the value; 0: it has none
    unsigned Value;         ///< if none is given
    std::string_view Alone; ///< what the bare name means, if not that value everywhere
};

constexpr KindRow Kinds[] = {
    {"slow", FaultKind::Slow, 10, 30, ""},
    {"silent", FaultKind::Silent, 0, 0, "@19"},
    {"refuse", FaultKind::Refuse, 16, 0x22, "@31"},
    {"lose", FaultKind::Lose, 10, 3, ""},
    {"slow-call", FaultKind::SlowCall, 10, 5, ""},
    {"crash", FaultKind::Crash, 10, 1, ":12@PDUStartComPrimitive"},
    {"hang", FaultKind::Hang, 10, 1, ":12@PDUStartComPrimitive"},
};

bool NamesService(FaultKind kind)
{
    return kind < FaultKind::Lose;
}

/// A whole number of digits and nothing else; none otherwise.
std::optional<unsigned> NumberOf(std::string_view text, int base)
{
    unsigned number = 0;
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number, base);
    return error == std::errc() && rest == end ? std::optional(number) : std::nullopt;
}

bool IsFunction(std::string_view name)
{
    const auto& names = marvane::FunctionNames;
    return std::find(names.begin(), names.end(), name) != names.end();
}

/// True if the place fits the kind; sets it.
bool ReadPlace(std::string_view place, Fault& fault)
{
    if (!NamesService(fault.Kind)) {
        fault.Function = place;
        return fault.Kind != FaultKind::Lose && IsFunction(place);
    }
    const auto service = NumberOf(place, 16);
    fault.Service = static_cast<UNUM8>(service.value_or(0));
    return service && *service <= std::numeric_limits<UNUM8>::max();
}

/// True if the value fits the kind; sets it.
bool ReadValue(std::string_view text, const KindRow& row, Fault& fault)
{
    const auto value = row.Base == 0 ? std::nullopt : NumberOf(text, row.Base);
    fault.Value = value.value_or(0);
    return value && *value > 0 &&
           (fault.Kind != FaultKind::Refuse || *value <= std::numeric_limits<UNUM8>::max());
}

/// True if the text after a name fits its kind; sets both.
bool ReadRest(std::string_view rest, const KindRow& row, Fault& fault)
{
    fault.Kind = row.Kind;
    fault.Value = row.Value;
    const std::size_t at = rest.find('@');
    if (at != std::string_view::npos && !ReadPlace(rest.substr(at + 1), fault))
        return false;
    const std::string_view value = rest.substr(0, at);
    return value.empty() || ReadValue(value.substr(1), row, fault);
}

std::string_view Trimmed(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(' ');
    return first == std::string_view::npos ? std::string_view()
                                           : text.substr(first, text.find_last_not_of(' ') + 1 - first);
}

} // namespace

std::string ReadFaults(std::string_view text, std::vector<Fault>& faults)
{
    while (!text.empty()) {
        const std::size_t comma = std::min(text.find(','), text.size());
        const std::string_view one = Trimmed(text.substr(0, comma));
        text.remove_prefix(std::min(comma + 1, text.size()));
        if (one.empty())
            continue;
        const std::string_view name = one.substr(0, one.find_first_of(":@"));
        const auto row = std::ranges::find(Kinds, name, &KindRow::Name);
        if (row == std::end(Kinds))
            return "unknown fault \"" + std::string(name) + "\"";
        const std::string_view rest = one.size() == name.size() ? row->Alone : one.substr(name.size());
        if (!ReadRest(rest, *row, faults.emplace_back()))
            return "wrong value or place in \"" + std::string(one) + "\"";
    }
    return "";
}

} // namespace sim
