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

MarkedLine ParseBeginning(std::string_view text, LineMark mark, std::string_view beginning)
{
    if (!text.starts_with(beginning))
        return {LineMark::None, text};
    return {mark, text.substr(beginning.size())};
}

MarkedLine ParseCallOutEnd(std::string_view text)
{
    // Two characters more, and it is an arrow: "    <<< ".
    const bool isArrow = text.size() > marks::CallOutEnd.size() && text[marks::CallOutEnd.size()] == '<';
    if (isArrow)
        return {LineMark::None, text};
    return ParseBeginning(text, LineMark::CallOutEnd, marks::CallOutEnd);
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
        return ParseBeginning(text, LineMark::Entry, marks::Entry);
    case '-':
        return ParseBeginning(text, LineMark::Exit, marks::Exit);
    case '#':
        return ParseHash(text);
    case ' ':
        return ParseCallOutEnd(text);
    case '\t':
        if (text == WithoutBreak(marks::BufferFull))
            return {LineMark::BufferFull, {}};
        return {LineMark::None, text};
    case 'L':
        return ParseBeginning(text, LineMark::Header, marks::Header);
    case 'C':
        return ParseBeginning(text, LineMark::Setting, marks::Setting);
    default:
        return ParseName(text);
    }
}

} // namespace marvane
