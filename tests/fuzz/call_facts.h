// What calls did besides returning a status, as texts: those of what was done, and those of what the reader
// of logs finds.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "pdu/pdu_api.h"
#include "tool/read/log_reader.h"

namespace marvane::testing {

/// "22F190"
std::string Hex(read::Bytes bytes);

/// What a call with these raw arguments did: handed out or destroyed an item, or started a ComPrimitive.
/// Empty for all others. To be called after the call, while its records are there.
std::string FactOfCall(std::string_view function, const std::vector<std::uint64_t>& arguments,
                       T_PDU_ERROR status);

/// The same of what is read. The facts of calls whose text was cut are "cut" and the function.
class FactSink : public read::LogSink
{
public:
    std::vector<std::string> Facts;

    void OnCall(const read::Call& call) override;
    void OnItem(const read::Item& item) override;
};

/// Expects the same facts, in their order. Those of a call whose text was cut may be missing.
void ExpectSameFacts(const std::vector<std::string>& expected, const std::vector<std::string>& found);

} // namespace marvane::testing
