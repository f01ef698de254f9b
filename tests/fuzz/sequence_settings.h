// Random settings for sequences of calls, and the configuration file that holds them.
#pragma once

#include <map>
#include <string>

#include "tests/fuzz/record_source.h"

namespace marvane::testing {

/// Values by key, as they are written to the configuration file; an empty value leaves the key out.
using SequenceSettings = std::map<std::string, std::string>;

/// The beginning of PDUAPILibDll's value when it names a library that does not exist.
inline constexpr const char* MissingTarget = "no_such_";

/// Settings chosen by the source's bytes, most of them useful. The log folder is `logFolder`, or is left out.
SequenceSettings RandomSettings(RecordSource& source, const std::string& logFolder);

/// The text of a configuration file with these settings.
std::string ConfigurationText(const SequenceSettings& settings, const std::string& installedPath);

} // namespace marvane::testing
