// Names of the codes of the API, and of the bits of flag bytes, as logs show them.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

#include "pdu/pdu_api.h"

namespace marvane {

/// A code and its name.
struct NameEntry
{
    UNUM32 Code;
    std::string_view Name;
};

/// A table sorted by code, checked at compile time: look-ups are binary searches.
using NameTable = std::span<const NameEntry>;

extern const NameTable ErrorCodeNames;
extern const NameTable StatusCodeNames;
extern const NameTable FilterTypeNames;
extern const NameTable InfoCodeNames;
extern const NameTable EventErrorNames;
extern const NameTable CoPTypeNames;
extern const NameTable ObjectTypeNames;
extern const NameTable ComParamClassNames;
extern const NameTable ComParamTypeNames;
extern const NameTable ItemTypeNames;
extern const NameTable CombinationModeNames;
extern const NameTable EventTypeNames;
extern const NameTable TimingSetNames;
/// Labels of the protocols of comms reports.
extern const NameTable CommsProtocolLabels;

/// Name of a code, or `notFound`. Log lines differ in the word for a missing name.
std::string_view NameOf(NameTable table, UNUM32 code, std::string_view notFound);

/// Name of the status of a call, "<UNKNOWN ERROR>" if it has none.
std::string_view StatusText(T_PDU_ERROR status);

/// Names of the 32 bits of four flag bytes, by bit number; an unused bit has an empty name.
using BitNames = std::array<std::string_view, 32>;
extern const BitNames TxFlagNames;
extern const BitNames CllCreateFlagNames;
extern const BitNames RxFlagNames;
extern const BitNames TimestampFlagNames;

} // namespace marvane
