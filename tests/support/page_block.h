// The data in a page of marvane report.
#pragma once

#include <string>
#include <string_view>

namespace marvane::testing {

/// Decodes base64; stops at the first character that is none of it.
std::string DecodedBase64(std::string_view text);

/// Decodes base64 and unpacks gzip. Fails the test, and returns what there is, if that is incomplete.
std::string Unpacked(std::string_view text);

/// The unpacked block of that id ("model", "lines", "raw"); empty if the page has none.
std::string PageBlock(std::string_view page, std::string_view id);

} // namespace marvane::testing
