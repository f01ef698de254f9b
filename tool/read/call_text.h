// Values out of the text of a call: arguments, decoded lines, dumps.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "tool/read/records.h"

namespace marvane::read {

/// The argument `name` of an argument text, without blanks around it and without quotes; nothing if it is not
/// there: Argument("hMod=0x00000001, LockMask=1", "LockMask") is "1".
std::optional<std::string_view> Argument(std::string_view arguments, std::string_view name);

/// A number as logs print it: "12", "-1", "0x00A1", "PDU_IT_RESULT (0x1300)", "CP_X (12)" (the number in the
/// last parentheses), "<PDU_HANDLE_UNDEF>", "<PDU_ID_UNDEF>".
std::optional<std::uint32_t> NumberInValue(std::string_view value);
/// The text in front of the last parentheses: "PDU_IT_RESULT" of "PDU_IT_RESULT (0x1300)".
std::string_view NameInValue(std::string_view value);
/// "READ_VBATT" of the arguments of a PDUIoCtl; empty if the log does not name its command.
std::string_view CommandName(std::string_view arguments);
/// A handle argument; nothing if it is missing or undefined.
std::optional<std::uint32_t> HandleArgument(std::string_view arguments, std::string_view name);

/// The value of the first line with that label; nothing if there is none.
std::optional<std::string_view> ValueOf(std::span<const CallLine> lines, std::string_view label);

/// The bytes of the first dump with that label (its first 14 characters count), gathered in `storage`.
/// `expected` is the size that the log states elsewhere ("CoPDataSize", "DataSize"), if it does.
Payload DumpOf(std::span<const CallLine> lines, std::string_view label, std::vector<std::uint8_t>& storage,
               std::optional<std::uint64_t> expected = {}, bool isCut = false);

/// The request of a PDUStartComPrimitive. `IsPresent` is false if the log does not show it.
Payload RequestOf(const Call& start, std::vector<std::uint8_t>& storage);

} // namespace marvane::read
