// A short log, written by the test itself.
#pragma once

#include <string>

namespace marvane::testing {

/// Name of a log file of that day, and a name that follows it.
inline const std::string LogName = "D-PDU_API_Logger_25-11-2026_14-03-00.LGR";
inline const std::string NextLogName = "D-PDU_API_Logger_25-11-2026_14-04-00.LGR";

/// A line of thread 1A2C at 14:03:SS.000.
std::string LogLine(unsigned second, const std::string& text);

/// A call of a function that returns success at once.
std::string LogCall(unsigned second, const std::string& name, const std::string& arguments = "");

/// A session's header, three calls (one of them fails) and the end of the session.
std::string SampleLog();

} // namespace marvane::testing
