#include "line/marks.h"

namespace marvane {

namespace {

constexpr std::string_view WithoutBreak(std::string_view mark)
{
    return mark.substr(0, mark.size() - 1);
}

struct Ending
{
    LineMark Mark;
    std::string_view Text;
};

constexpr Ending FileEndings[] = {
    {LineMark::ChangingFile, marks::ChangingFile},
    {LineMark::ContinuationFile, marks::ContinuationFile},
    {LineMark::ClosingFile, marks::ClosingFile},
};

MarkedLine ParseFileChange(std::string_view text)
{
    for (const Ending& ending : FileEndings)
        if (text.ends_with(ending.Text))
            return {ending.Mark, text.substr(marks::FileChange.size(),
                                             text.size() - marks::FileChange.size() - ending.Text.size())};
    return {LineMark::None, text};
}

MarkedLine ParseHash(std::string_view text)
{
    if (text.starts_with(marks::FileChange))
        return ParseFileChange(text);
    if (text == marks::Initialise)
        return {LineMark::Initialise, {}};
    if (text.starts_with(marks::Version) && text.ends_with(marks::VersionEnd) &&
        text.size() >= marks::Version.size() + marks::VersionEnd.size())
        return {LineMark::Version, text.substr(marks::Version.size(), text.size() - marks::Version.size() -
                                                                          marks::VersionEnd.size())};
    return {LineMark::None, text};
}

/// The beginning is a constant, so that compilers compare it in words: this is done for every line.
template <LineMark Mark, const std::string_view& Beginning> MarkedLine ParseBeginning(std::string_view text)
{
    if (!text.starts_with(Beginning))
        return {LineMark::None, text};
    return {Mark, text.substr(Beginning.size())};
}

MarkedLine ParseCallOutEnd(std::string_view text)
{
    // Two characters more, and it is an arrow: "    <<< ".
    const bool isArrow = text.size() > marks::CallOutEnd.size() && text[marks::CallOutEnd.size()] == '<';
    if (isArrow)
        return {LineMark::None, text};
    return ParseBeginning<LineMark::CallOutEnd, marks::CallOutEnd>(text);
}

/// A line that begins with the name itself.
MarkedLine ParseName(std::string_view text)
{
    if (text.ends_with(marks::NotLoaded))
        return {LineMark::NotLoaded, text.substr(0, text.size() - marks::NotLoaded.size())};
    return {LineMark::None, text};
}

} // namespace

MarkedLine ParseMark(std::string_view text)
{
    switch (text.empty() ? '\0' : text.front()) {
    case '+':
        return ParseBeginning<LineMark::Entry, marks::Entry>(text);
    case '-':
        return ParseBeginning<LineMark::Exit, marks::Exit>(text);
    case '#':
        return ParseHash(text);
    case ' ':
        return ParseCallOutEnd(text);
    case '\t':
        if (text == WithoutBreak(marks::BufferFull))
            return {LineMark::BufferFull, {}};
        return {LineMark::None, text};
    case 'L':
        return ParseBeginning<LineMark::Header, marks::Header>(text);
    case 'C':
        return ParseBeginning<LineMark::Setting, marks::Setting>(text);
    default:
        return ParseName(text);
    }
}

} // namespace marvane
