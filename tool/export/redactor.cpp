#include "tool/export/redactor.h"

#include <algorithm>
#include <cstring>

#include "line/dump_columns.h"
#include "line/stamp.h"
#include "tool/read/call_text.h"
#include "tool/read/line_kind.h"

namespace marvane::tool {

namespace {

using words::Dialect;
using words::Secret;
using words::SecretPart;

constexpr std::size_t MostChangedLines = 200'000; // remembered for each file
constexpr std::size_t MostPayloads = 100'000;     // remembered
constexpr std::size_t MostReads = 64;
constexpr std::size_t LongestListing = 64 * 1024; // in bytes, not in characters
constexpr std::size_t LongestLine = 1024 * 1024;

constexpr std::uint8_t ReadIdentifier = 0x22;

read::Bytes BytesOf(std::string_view text)
{
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

/// The diagnostic message in what a report shows: there may be a header before it, and padding after it.
read::Bytes MessageIn(read::Bytes bytes)
{
    constexpr std::size_t doipHeader = 12; // with both addresses
    if (bytes.size() > doipHeader && (bytes[0] ^ bytes[1]) == 0xFF)
        return bytes.subspan(doipHeader);
    if (const TransportFrame frame = FindFrame(bytes, false); frame.Kind == FrameKind::Single)
        return bytes.subspan(frame.Begin, static_cast<std::size_t>(frame.Total));
    return bytes.size() <= CanIdentifierLength || BeginsMessage(bytes[0])
               ? bytes
               : bytes.subspan(CanIdentifierLength);
}

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
    changed_[number].clear();
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
            MarkChanged(number, row.Line);
        first += row.Count;
    }
    const std::uint64_t hash = values_.Hash(bytes);
    if (payloads_.insert(hash).second)
        payloadOrder_.push_back(hash);
    if (payloadOrder_.size() > MostPayloads) {
        payloads_.erase(payloadOrder_.front());
        payloadOrder_.pop_front();
    }
}

/// The bytes of a listing without its secrets. `endsSecret`: the last byte is part of one.
std::vector<std::uint8_t> Redactor::Redacted(const Listing& listing, bool& endsSecret)
{
    std::vector<std::uint8_t> bytes = listing.Bytes;
    RedactKnown(listing.Bytes, bytes.data());
    if (RedactSegment(listing, bytes.data()))
        return bytes;
    const bool isPlain = listing.Label == "pCoPData" || listing.Label == "pDataBytes";
    const read::Bytes all = listing.Bytes;
    const read::Bytes message = listing.IsSecretTail || isPlain ? all : MessageIn(all);
    const SecretPart part =
        listing.IsSecretTail ? SecretPart{Secret::Transfer, 0} : SecretOf(listing, message);
    endsSecret = Takes(part.What) && part.Begin < message.size();
    if (endsSecret)
        RedactPart(part.What, message.subspan(part.Begin),
                   bytes.data() + (message.data() - all.data()) + part.Begin);
    if (listing.Label == "pCoPData" && !listing.IsTail)
        orphans_.LearnRequest(values_.Hash(all));
    const bool isRead = listing.Label == "pCoPData" && bytes.size() > 3 && bytes[0] == ReadIdentifier;
    if (isRead && reads_.size() == MostReads)
        reads_.pop_front();
    if (isRead)
        reads_.push_back(bytes);
    return bytes;
}

/// What is secret in the message of a listing. The protocol of its link does not matter: rather too much is
/// taken out than too little.
SecretPart Redactor::SecretOf(const Listing& listing, read::Bytes message) const
{
    const bool isMessage = listing.Label == "pCoPData" || listing.Label == "pDataBytes" || listing.IsOfReport;
    if (listing.IsTail || !isMessage)
        return {};
    return listing.Way == Direction::ToTarget ? words::SecretOfRequest(Dialect::Uds, message)
                                              : SecretOfAnswer(message);
}

SecretPart Redactor::SecretOfAnswer(read::Bytes answer) const
{
    constexpr std::size_t identifier = 3; // with the service before it
    for (auto request = reads_.rbegin(); request != reads_.rend(); ++request) {
        const bool isSame =
            answer.size() > identifier && (*request)[1] == answer[1] && (*request)[2] == answer[2];
        const SecretPart part = isSame ? words::SecretOfAnswer(Dialect::Uds, *request, answer) : SecretPart();
        if (part.What != Secret::None)
            return part;
    }
    const SecretPart part = words::SecretOfAnswer(Dialect::Uds, {}, answer);
    return part.What == Secret::None ? words::SecretOfAnswer(Dialect::Obd, {}, answer) : part;
}

void Redactor::Replace(read::Bytes secret, std::uint8_t* out)
{
    const std::vector<std::uint8_t> other = values_.Replacement(secret);
    std::ranges::copy(other, out);
}

/// Replaces a part that is secret as a whole. A vehicle identification number or a serial number in it is
/// replaced as it is elsewhere, so that equal stays equal.
void Redactor::RedactPart(Secret what, read::Bytes part, std::uint8_t* out)
{
    std::size_t begin = 0;
    std::size_t length = part.size();
    for (std::size_t at = 0; what == Secret::Vin && at < part.size(); ++at)
        if (const std::size_t vin = VinLength(part.subspan(at)); vin > 0) {
            begin = at;
            length = vin;
            break;
        }
    const auto isOfName = [](std::uint8_t letter) { return IsWordLetter(letter) || letter == '-'; };
    const auto name = std::ranges::find_if_not(part, isOfName) - part.begin();
    if (what == Secret::Serial && name >= 4)
        length = static_cast<std::size_t>(name); // what follows may be another identifier
    const std::size_t end = begin + length;
    const read::Bytes secret = part.subspan(begin, length);
    if (what != Secret::Transfer)
        values_.Learn(secret);
    Replace(part.first(begin), out);
    Replace(secret, out + begin);
    Replace(part.subspan(end), out + end);
}

/// Replaces secrets that are known, and vehicle identification numbers, wherever they stand.
void Redactor::RedactKnown(read::Bytes bytes, std::uint8_t* out)
{
    for (std::size_t at = 0; at < bytes.size();) {
        const read::Bytes rest = bytes.subspan(at);
        read::Bytes found = values_.IsEmpty() ? read::Bytes() : values_.FindAt(rest);
        const bool mayBeVin =
            found.empty() && Takes(Secret::Vin) && (at == 0 || !IsWordLetter(bytes[at - 1]));
        if (mayBeVin)
            found = rest.first(VinLength(rest));
        if (mayBeVin && !found.empty())
            values_.Learn(found);
        if (!found.empty())
            Replace(found, out + at);
        at += std::max<std::size_t>(found.size(), 1);
    }
}

/// A text that is no listing: secrets stand in it as they are, or in hexadecimal.
void Redactor::RedactText(std::uint32_t number, std::uint64_t line, File& file, std::size_t begin,
                          std::size_t end)
{
    const std::string old = file.Text.substr(begin, end - begin);
    const read::Bytes bytes = BytesOf(old);
    auto* const out = reinterpret_cast<std::uint8_t*>(file.Text.data() + begin);
    RedactKnown(bytes, out);
    for (std::size_t at = 0; !values_.IsEmpty() && at < bytes.size();)
        at += std::max<std::size_t>(RedactHex(bytes, at, out), 1);
    if (Takes(Secret::Serial))
        RedactSerial(bytes, out);
    if (std::string_view(file.Text).substr(begin, end - begin) != old)
        MarkChanged(number, line);
}

void Redactor::MarkChanged(std::uint32_t number, std::uint64_t line)
{
    std::deque<std::uint64_t>& lines = changed_[number];
    ++changedLines_;
    lines.push_back(line);
    if (lines.size() > MostChangedLines)
        lines.pop_front();
}

bool Redactor::IsChanged(std::uint32_t file, std::uint64_t line) const
{
    const auto lines = changed_.find(file);
    return lines != changed_.end() && std::ranges::binary_search(lines->second, line);
}

bool Redactor::IsChanged(const read::Call& call) const
{
    const auto isChanged = [&](std::uint32_t file) {
        return [this, file](const read::CallLine& line) { return IsChanged(file, line.Number); };
    };
    // Arguments may go on in a second line.
    return IsChanged(call.Begin.File, call.Begin.Line) || IsChanged(call.Begin.File, call.Begin.Line + 1) ||
           std::ranges::any_of(call.LinesIn, isChanged(call.Begin.File)) ||
           std::ranges::any_of(call.LinesOut, isChanged(call.End.File));
}

bool Redactor::IsChanged(const read::Comms& report) const
{
    return IsChanged(report.At.File, report.At.Line) ||
           std::ranges::any_of(report.Lines, [&](const read::CallLine& line) {
               return IsChanged(report.At.File, line.Number);
           });
}

bool Redactor::IsChanged(std::uint32_t file, std::uint64_t first, std::uint64_t last) const
{
    const auto lines = changed_.find(file);
    if (lines == changed_.end())
        return false;
    const auto found = std::ranges::lower_bound(lines->second, first);
    return found != lines->second.end() && *found <= last;
}

bool Redactor::IsChanged(const read::Exchange& exchange) const
{
    return IsChanged(exchange.Request) ||
           std::ranges::any_of(exchange.Answers,
                               [&](const read::Answer& answer) { return IsChanged(answer.Data); });
}

bool Redactor::IsChanged(read::Bytes payload) const
{
    return !payload.empty() && payloads_.contains(values_.Hash(payload));
}

} // namespace marvane::tool
