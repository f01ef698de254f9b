// The formats that logs are exported to. To add one, write its function in a source of this folder,
//     void WriteNAME(const Inputs& inputs, Sink& sink);
// which passes a read::LogSink of its own to inputs.Read and what comes out of it to sink.Write; then declare
// it in formats.cpp and add its row there, and its name to FormatNames below. Memory must stay bounded
// whatever the length of the log. The command parses, opens, renames and complains; help, completion and man
// page follow the table.
#pragma once

#include <span>
#include <string_view>

#include "tool/export/inputs.h"
#include "tool/export/sink.h"

namespace marvane::tool {

struct Format
{
    std::string_view Name; ///< as --format takes it
    std::string_view Text; ///< what it is, and who reads it: a few words
    void (*Write)(const Inputs& inputs, Sink& sink) = nullptr;
    std::string_view Tables = {}; ///< the values of --table, separated by commas, the usual one first
    bool IsBinary = false;        ///< not to be written to a terminal
    bool CanFollow = false;       ///< every line is worth something without those after it
    bool HasDays = false;         ///< can be written to a folder with a file a day (Sink::SelectDay)
};

/// All of them, in the order of the help.
std::span<const Format> Formats();

/// Their names, for the choices of --format.
inline constexpr std::string_view FormatNames = "jsonl,csv,sql,pcapng,trace";

/// The format of that name; null if there is none.
const Format* FindFormat(std::string_view name);

} // namespace marvane::tool
