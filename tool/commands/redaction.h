// --redact and --keep: for commands whose output leaves the house.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "tool/console/arguments.h"
#include "tool/console/console.h"
#include "tool/export/redactor.h"

namespace marvane::tool {

inline constexpr std::string_view SecretNames = "vin,key,authentication,serial,transfer";

inline constexpr Option RedactOptionList[] = {
    {.Names = "--redact",
     .Value = "KINDS",
     .Text =
         "Replace what should not leave the house by other bytes of the same length: vin, key (seeds too), "
         "authentication, serial, transfer (transferred data), separated by commas. Without KINDS, all. Of "
         "CAN frames that a message is split over, nothing but the first bytes stays",
     .Choices = SecretNames,
     .IsList = true,
     .IsValueOptional = true},
    {.Names = "--keep",
     .Value = "KINDS",
     .Text = "With --redact: all kinds but these",
     .Choices = SecretNames,
     .IsList = true},
};
inline constexpr OptionGroup RedactOptions = {"Redaction", RedactOptionList};

/// What --redact asks for; none without it. Throws UsageError.
std::optional<Redactor> RedactorOf(const Arguments& arguments);

/// The names of the kinds that --redact takes, as its option spells them.
std::vector<std::string_view> RedactedKinds(const Arguments& arguments);

/// Says on standard error what was redacted, if anything was asked for, and in how many lines of the log.
void NoteRedaction(const Arguments& arguments, std::uint64_t lines, Console& console);

} // namespace marvane::tool
