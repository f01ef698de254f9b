#include "tool/export/redactor.h"

#include <algorithm>

#include "line/dump_columns.h"
#include "line/stamp.h"
#include "tool/read/call_text.h"
#include "tool/read/line_kind.h"

namespace marvane::tool {

namespace {

using words::Secret;

constexpr std::size_t LongestListing = 64 * 1024; // in bytes, not in characters
constexpr std::size_t LongestLine = 1024 * 1024;

std::string TitleText(const read::ReportTitle& title)
{
    return std::string(title.Protocol) + " " + std::string(title.Title);
}

/// The number in "Address             \t= 0x000007E0", a decoded line of a report without its arrow.
std::optional<std::uint32_t> AddressIn(std::string_view text)
{
    const std::size_t equals = text.find('=');
    if (!text.starts_with("Address") || equals == std::string_view::npos)
        return std::nullopt;
    const std::size_t begin = text.find_first_not_of(' ', equals + 1);
    return begin == std::string_view::npos ? std::nullopt : read::NumberInValue(text.substr(begin));
}

} // namespace

SecretKinds AllSecrets()
{
    return {Secret::Vin, Secret::Key, Secret::Authentication, Secret::Serial, Secret::Transfer};
}

void Redactor::Begin(std::uint32_t number)
{
    files_[number] = {};
    marks_.BeginFile(number);
}

void Redactor::Take(std::uint32_t number, std::string_view bytes, std::string& out)
{
    File& file = files_[number];
    file.Text += bytes;
    std::size_t end = 0;
    while ((end = file.Text.find('\n', file.Scanned)) != std::string::npos) {
        ++file.Lines;
        ReadLine(number, file, file.Scanned, end);
        file.Scanned = end + 1;
    }
    if (file.Text.size() - file.Scanned > LongestLine) {
        Close(number, file);
        RedactText(number, file.Lines + 1, file, file.Scanned, file.Text.size());
        file.Scanned = file.Text.size();
    }
    const std::size_t ready = file.Open.Rows.empty() ? file.Scanned : file.Open.TextBegin;
    out.append(file.Text, 0, ready);
    file.Text.erase(0, ready);
    file.Scanned -= ready;
    file.Open.TextBegin -= std::min(ready, file.Open.TextBegin);
    for (Listing::Row& row : file.Open.Rows)
        row.Begin -= ready;
}

void Redactor::Skip(std::uint32_t number, std::uint64_t lines)
{
    files_[number].Lines += lines;
}

void Redactor::End(std::uint32_t number, std::string& out)
{
    File& file = files_[number];
    if (file.Scanned < file.Text.size()) {
        ++file.Lines;
        ReadLine(number, file, file.Scanned, file.Text.size());
        file.Scanned = file.Text.size();
    }
    Close(number, file);
    out += file.Text;
    file.Text.clear();
    file.Scanned = 0;
}

void Redactor::ReadLine(std::uint32_t number, File& file, std::size_t begin, std::size_t end)
{
    if (end > begin && file.Text[end - 1] == '\r')
        --end;
    const std::string_view line = std::string_view(file.Text).substr(begin, end - begin);
    const std::optional<Stamp> stamp = ParseStamp(line);
    if (!stamp) {
        Close(number, file);
        return RedactText(number, file.Lines, file, begin, end);
    }
    const std::size_t arrow = begin + StampLength;
    const std::string_view text = line.substr(StampLength);
    if (ParseArrow(text)) {
        if (AddRow(number, file, begin, arrow, end, stamp->Thread))
            return;
        if (const auto address = AddressIn(text.substr(ArrowLength)))
            file.Reports[stamp->Thread].Address = address;
    } else {
        const auto title = read::ParseReportTitle(text);
        file.Reports[stamp->Thread] = {title.has_value(), title ? TitleText(*title) : "", std::nullopt};
    }
    Close(number, file);
    RedactText(number, file.Lines, file, arrow, end);
}

/// Adds a row of a listing, and closes the one before it if it belongs to another. False if it is no row.
bool Redactor::AddRow(std::uint32_t number, File& file, std::size_t line, std::size_t arrow, std::size_t end,
                      std::uint32_t thread)
{
    const std::string_view text = std::string_view(file.Text).substr(arrow, end - arrow);
    const std::optional<DumpRow> row = ParseDumpRow(text.substr(ArrowLength));
    if (!row)
        return false;
    Listing& open = file.Open;
    const bool goesOn = !open.Rows.empty() && open.Label == row->Label && open.Thread == thread &&
                        row->Offset != 0 && open.Bytes.size() < LongestListing;
    if (!goesOn) {
        const bool isLong = open.Bytes.size() >= LongestListing && open.Label == row->Label;
        Close(number, file);
        const bool isSecretTail = isLong && open.IsSecretTail;
        open = {};
        open.Label = row->Label;
        open.Thread = thread;
        open.TextBegin = line;
        open.Way = ParseArrow(text)->ShownDirection();
        open.IsOfReport = file.Reports[thread].IsOpen;
        open.Title = file.Reports[thread].Title;
        open.Address = file.Reports[thread].Address;
        open.IsTail = row->Offset != 0;
        open.IsSecretTail = isSecretTail;
    }
    open.Rows.push_back({arrow, row->Count, file.Lines});
    open.Bytes.insert(open.Bytes.end(), row->Bytes.begin(),
                      row->Bytes.begin() + static_cast<std::ptrdiff_t>(row->Count));
    return true;
}

void Redactor::Close(std::uint32_t number, File& file)
{
    Listing& listing = file.Open;
    if (listing.Rows.empty())
        return;
    bool endsSecret = false;
    const std::vector<std::uint8_t> bytes = Redacted(listing, endsSecret);
    if (bytes != listing.Bytes)
        Write(number, file, listing, bytes);
    listing.Rows.clear();
    listing.IsSecretTail = endsSecret;
}

/// Writes other bytes into the rows of a listing.
void Redactor::Write(std::uint32_t number, File& file, const Listing& listing,
                     std::span<const std::uint8_t> bytes)
{
    constexpr char digits[] = "0123456789ABCDEF";
    std::size_t first = 0;
    for (const Listing::Row& row : listing.Rows) {
        for (std::size_t i = 0; i < row.Count; ++i) {
            const std::uint8_t byte = bytes[first + i];
            char* const cell = &file.Text[row.Begin + dump_columns::Cells + i * dump_columns::CellWidth];
            cell[0] = digits[byte >> 4];
            cell[1] = digits[byte & 15];
            file.Text[row.Begin + dump_columns::Text + i] =
                byte >= 0x20 && byte < 0x7F ? static_cast<char>(byte) : '.';
        }
        if (!std::ranges::equal(bytes.subspan(first, row.Count),
                                std::span(listing.Bytes).subspan(first, row.Count)))
            marks_.AddLine(number, row.Line);
        first += row.Count;
    }
    marks_.AddPayload(bytes);
}

} // namespace marvane::tool
