#include "tests/fuzz/log_text.h"

#include <algorithm>

#include "logger/log/log_buffer.h"

namespace marvane::testing {

namespace {

constexpr std::string_view StampForm = "{00:00:00.000 - XXXXXXXX} ";

bool Fits(char character, char form)
{
    const bool isDigit = character >= '0' && character <= '9';
    switch (form) {
    case '0':
        return isDigit;
    case 'X':
        return isDigit || (character >= 'A' && character <= 'F');
    default:
        return character == form;
    }
}

bool MayStandBehind(std::string_view line, std::string_view former)
{
    constexpr std::string_view marker = marks::BufferFull.substr(0, marks::BufferFull.size() - 1);
    // The buffer may be full exactly at the end of a line.
    if (line == marker)
        return true;
    if (!IsStamped(former))
        return false;
    const std::string_view text = former.substr(StampForm.size());
    // The deepest indent of a ComParam contains a line break.
    if (text == marker)
        return true;
    if (text.starts_with("+ PDUStartComPrimitive("))
        return line.starts_with("\t\t\t\tCoPDataSize=");
    return text.starts_with("   <--  LOAD FAILURE: ") && line.starts_with("\t\t\t\t\tDescription:- ");
}

} // namespace

bool IsStamped(std::string_view line)
{
    if (line.size() < StampForm.size())
        return false;
    for (std::size_t i = 0; i < StampForm.size(); ++i)
        if (!Fits(line[i], StampForm[i]))
            return false;
    return true;
}

std::string_view FirstOddLine(std::string_view text, std::string_view former)
{
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        if (!IsStamped(line) && !MayStandBehind(line, former))
            return line.empty() ? std::string_view("an empty line") : line;
        former = line;
        text.remove_prefix(line.size() == text.size() ? line.size() : line.size() + 1);
    }
    return {};
}

std::string_view FirstOddBeginning(std::string_view text)
{
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        // Tabs begin the lines that continue others. A cut line may be shorter than a stamp.
        const bool isCutStamp =
            line.size() < StampForm.size() && std::equal(line.begin(), line.end(), StampForm.begin(), Fits);
        if (!IsStamped(line) && !isCutStamp && !line.starts_with('\t'))
            return line;
        text.remove_prefix(line.size() == text.size() ? line.size() : line.size() + 1);
    }
    return {};
}

} // namespace marvane::testing
