// Fields that records of a log are made of.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "tool/export/record_writer.h"
#include "tool/read/exchange.h"
#include "tool/read/records.h"

namespace marvane::tool {

constexpr std::int64_t Signed(std::uint64_t number)
{
    return static_cast<std::int64_t>(number);
}

/// "in_flight".
std::string_view StateName(read::CallState state);
/// "result".
std::string_view ItemName(read::ItemKind kind);

void AddNumber(RecordWriter& line, std::string_view key, std::optional<std::uint32_t> number);
/// Of module and link, as far as the call has them.
void AddHandles(RecordWriter& line, const read::Call& call);
/// A payload that the log cut has its real size beside it.
void AddPayload(RecordWriter& line, const read::Payload& data);
/// How the call ended.
void AddStatus(RecordWriter& line, const read::Call& call);
/// What a result has and other items have not, its payload apart.
void AddResult(RecordWriter& line, const read::Item& item);

/// What was asked in an exchange.
void AddRequest(RecordWriter& line, const read::Exchange& exchange);
/// What came back, and after what time.
void AddAnswer(RecordWriter& line, const read::Exchange& exchange);

} // namespace marvane::tool
