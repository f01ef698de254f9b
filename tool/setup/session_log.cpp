#include "tool/setup/session_log.h"

#include <algorithm>
#include <map>
#include <set>
#include <vector>

#include "line/stamp.h"

namespace marvane::tool {

namespace {

using Lines = std::vector<std::string>;

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}
bool IsWordCharacter(char c)
{
    return IsDigit(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

Lines LinesOf(std::string_view text)
{
    Lines lines;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find('\n', at), text.size());
        lines.emplace_back(text.substr(at, end - at));
        if (lines.back().ends_with('\r'))
            lines.back().pop_back();
        at = end + 1;
    }
    return lines;
}

/// Whether a word is an address as "%8p" prints one: "0x7ffd5c0a1b20", "000000000021F7A0", in a 32-bit
/// process "0xff8a1b20", "0021F7A0".
bool IsAddress(std::string_view word, bool inDump)
{
    const std::string_view digits = word.starts_with("0x") ? word.substr(2) : word;
    if (digits.find_first_not_of("0123456789abcdefABCDEF") != std::string_view::npos)
        return false;
    // A handle has leading zeros, an address of glibc none; a dump begins each row with eight digits.
    if (digits.size() != word.size())
        return digits.size() > 8 || (digits.size() == 8 && digits[0] != '0');
    return digits.size() == 16 || (digits.size() == 8 && !inDump);
}

/// Puts a mask at the end of a line in place of an address and the blanks that pad it.
void PutMask(std::string& line, const char* mask)
{
    while (line.ends_with(' '))
        line.pop_back();
    line += mask;
}

std::string WithoutAddresses(const std::string& line)
{
    const bool inDump = line.find('|') != std::string::npos;
    std::string masked;
    for (std::size_t at = 0; at < line.size();) {
        if (line.compare(at, 5, "(nil)") == 0) {
            PutMask(masked, "<null>");
            at += 5;
            continue;
        }
        std::size_t end = at;
        while (end < line.size() && IsWordCharacter(line[end]))
            ++end;
        const std::string_view word = std::string_view(line).substr(at, end - at);
        if (IsAddress(word, inDump))
            PutMask(masked, word.find_first_not_of("0x") == std::string_view::npos ? "<null>" : "<address>");
        else
            masked.append(word);
        if (end == at)
            masked += line[end++];
        at = end;
    }
    return masked;
}

/// Replaces the number of each "Timestamp = NUMBER".
std::string WithoutTimes(std::string line)
{
    static constexpr std::string_view label = "imestamp";
    for (std::size_t at = line.find(label); at != std::string::npos; at = line.find(label, at)) {
        at = std::min(line.find_first_not_of(" \t", at + label.size()), line.size());
        if (line.compare(at, 2, "= ") != 0)
            continue;
        std::size_t end = at + 2;
        while (end < line.size() && IsDigit(line[end]))
            ++end;
        line.replace(at + 2, end - at - 2, "N");
    }
    return line;
}

/// Takes calls away that only found that the event queue is empty: how often that is asked is chance.
Lines WithoutEmptyPolls(const Lines& lines)
{
    Lines kept;
    std::size_t entry = 0;
    for (const std::string& line : lines) {
        if (line.starts_with("+ PDUGetEventItem("))
            entry = kept.size();
        kept.push_back(line);
        if (line.starts_with("- PDUGetEventItem<PDU_ERR_EVENT_QUEUE_EMPTY "))
            kept.resize(entry);
    }
    return kept;
}

bool BeginsReport(const std::string& line)
{
    return !line.empty() && std::string_view("+-# \t").find(line[0]) == std::string_view::npos;
}

bool BelongsToReport(const std::string& line)
{
    return line.starts_with("   -->  ") || line.starts_with("   <--  ");
}

/// Takes comms reports away that repeat the one before: how often a cyclic message is sent is chance.
Lines WithoutRepeatedReports(const Lines& lines)
{
    Lines kept;
    Lines last;
    for (std::size_t at = 0; at < lines.size();) {
        Lines report(1, lines[at++]);
        if (!BeginsReport(report[0])) {
            kept.push_back(report[0]);
            continue;
        }
        while (at < lines.size() && BelongsToReport(lines[at]))
            report.push_back(lines[at++]);
        if (report != last)
            kept.insert(kept.end(), report.begin(), report.end());
        last = std::move(report);
    }
    return kept;
}

} // namespace

std::string NormalisedLog(std::string_view log)
{
    std::vector<std::uint32_t> threads;
    std::map<std::uint32_t, Lines> linesOf;
    std::uint32_t thread = 0;
    bool hasBegun = false;
    for (const std::string& line : LinesOf(log)) {
        const std::optional<Stamp> stamp = ParseStamp(line);
        const std::string text = stamp ? line.substr(StampLength) : line;
        hasBegun = hasBegun || text.starts_with("+ ");
        if (!hasBegun)
            continue;
        thread = stamp ? stamp->Thread : thread;
        if (linesOf.try_emplace(thread).second)
            threads.push_back(thread);
        linesOf[thread].push_back(WithoutTimes(WithoutAddresses(text)));
    }
    std::string normalised;
    for (std::size_t i = 0; i < threads.size(); ++i) {
        normalised += "== thread " + std::to_string(i + 1) + "\n";
        for (const std::string& line : WithoutRepeatedReports(WithoutEmptyPolls(linesOf[threads[i]])))
            normalised += line + "\n";
    }
    return normalised;
}

CallCount CountCalls(const std::string& normalised)
{
    CallCount count;
    std::set<std::string> functions;
    for (const std::string& line : LinesOf(normalised)) {
        if (!line.starts_with("- PDU") || line.find('<') == std::string::npos)
            continue;
        ++count.Calls;
        functions.insert(line.substr(2, line.find('<') - 2));
    }
    count.Functions = functions.size();
    return count;
}

std::string FirstDifference(const std::string& expected, const std::string& found)
{
    const Lines expectedLines = LinesOf(expected);
    const Lines foundLines = LinesOf(found);
    const auto line = [](const Lines& lines, std::size_t at) {
        return at < lines.size() ? "\"" + lines[at] + "\"" : std::string("the end");
    };
    for (std::size_t i = 0; i < std::max(expectedLines.size(), foundLines.size()); ++i)
        if (line(expectedLines, i) != line(foundLines, i))
            return "line " + std::to_string(i + 1) + ": expected " + line(expectedLines, i) + ", found " +
                   line(foundLines, i);
    return {};
}

} // namespace marvane::tool
