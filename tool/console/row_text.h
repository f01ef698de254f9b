// Pieces of the rows that commands print: bytes, times, columns. Output is ASCII; names keep their UTF-8.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "tool/read/exchange.h"
#include "tool/read/log_time.h"
#include "tool/read/records.h"

namespace marvane::tool {

/// "22 F1 90": all bytes if they are at most `most`, else the first `head` and how many follow: "36 01 00 01
/// +126". `size` is the real size, if the log shows fewer.
std::string BytesText(read::Bytes bytes, std::uint64_t size, std::size_t most, std::size_t head);

/// "7E" of one byte.
std::string ByteText(std::uint8_t byte);

/// Milliseconds with one digit: "4.2"; whole ones by the log's clock: "~4".
std::string MillisecondsText(const read::Latency& latency);

/// Seconds from `begin` to `time`: "0.011".
std::string SecondsText(read::LogTime begin, read::LogTime time);

/// "21:16:57.603"
std::string ClockText(read::LogTime time);
/// "2026-11-21T21:16:57.603", without a zone: the log has none.
std::string DateTimeText(read::LogTime time);
/// "21 Nov 2026"
std::string DateText(read::LogTime time);

/// The line as users look it up: "605", "2:605" in any file but the first.
std::string PositionText(const read::Position& at);

/// "1,234,567"
std::string Grouped(std::uint64_t number);

/// "1 answer", "2 answers".
std::string Counted(std::uint64_t number, std::string_view one, std::string_view many = {});

/// Whether a text, which is not empty, begins with a control character, of one byte or of two in UTF-8.
bool IsControl(std::string_view text);

/// A text of the log, safe to print: control characters and what is no UTF-8 become '?'.
std::string Printable(std::string_view text);

/// The length of the UTF-8 character at the beginning of a text; 0 if there is none.
std::size_t Utf8Length(std::string_view text);

/// The number of columns that a UTF-8 text takes, a character each.
std::size_t ColumnsOf(std::string_view text);

/// At most `columns` columns of it, the last two ".." if something was left out.
std::string Shortened(std::string_view text, std::size_t columns);

/// Adds blanks up to `column` (one if the text is there already), then `text`.
void PutAt(std::string& row, std::size_t column, std::string_view text);
/// Adds blanks, then `text`, so that it ends before `column` (one blank at least).
void PutBefore(std::string& row, std::size_t column, std::string_view text);

/// `text` from `column` on, broken at blanks into as many lines as it needs before column `end`; the first is
/// the rest of `row`.
std::string Wrapped(std::string row, std::size_t column, std::string_view text, std::size_t end);

/// A row without blanks at its end, with its line end.
std::string Finished(std::string row);

} // namespace marvane::tool
