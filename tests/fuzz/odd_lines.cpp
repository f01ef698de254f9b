#include "tests/fuzz/odd_lines.h"

#include "line/marks.h"
#include "line/stamp.h"
#include "tool/read/line_kind.h"
#include "tool/read/log_reader.h"

namespace marvane::testing {

namespace {

using read::Line;
using read::LineKind;

constexpr std::string_view AnyStamp = "{00:00:00.000 - 00000000} ";
constexpr std::string_view FullMark = marks::BufferFull.substr(0, marks::BufferFull.size() - 1);

std::string Shown(std::string_view line)
{
    return std::string(line.empty() ? std::string_view("an empty line") : line);
}

class OddLineSink : public read::LogSink
{
public:
    std::string First;

    void OnLine(const Line& line) override
    {
        if (First.empty() && IsOdd(line, former_))
            First = Shown(line.Whole);
        former_ = line.Text;
    }

private:
    std::string former_;
};

/// Tabs begin the lines that continue others. A line that was cut inside its stamp is shorter than one.
class OddBeginningSink : public read::LogSink
{
public:
    std::string First;

    void OnLine(const Line& line) override
    {
        if (First.empty() && IsOdd(line, former_) && !line.Whole.starts_with('\t') && !IsCutStamp(line.Whole))
            First = Shown(line.Whole);
        former_ = line.Text;
    }

private:
    std::string former_;

    static bool IsCutStamp(std::string_view line)
    {
        return line.size() < AnyStamp.size() &&
               ParseStamp(std::string(line).append(AnyStamp.substr(line.size())));
    }
};

class DamageSink : public read::LogSink
{
public:
    std::string First;

    void OnProblem(const read::Problem& problem) override
    {
        if (First.empty() && problem.What == read::ProblemKind::Damaged)
            First = "line " + std::to_string(problem.At.Line) + ": " + std::string(problem.Text);
    }
};

/// True if a text begins with lines of a phase: the entry line that they belong to is not in it.
bool IsOfPhase(std::string_view text)
{
    if (!ParseStamp(text))
        return false;
    const LineKind kind = read::KindOf(text.substr(0, text.find('\n')).substr(StampLength)).Kind;
    return kind == LineKind::Decoded || kind == LineKind::Full || kind == LineKind::Other;
}

template <class Sink> std::string FirstFound(std::string_view text)
{
    Sink sink;
    read::LogReader reader(sink, read::Wants::Lines);
    reader.BeginFile({});
    if (IsOfPhase(text))
        reader.Feed(std::string(text.substr(0, StampLength)) + "+ PDUSetComParam\n");
    reader.Feed(text);
    reader.Finish();
    return sink.First;
}

} // namespace

bool IsOdd(const Line& line, std::string_view former)
{
    if (line.HasStamp || line.Kind == LineKind::Full)
        return false;
    if (line.Kind == LineKind::Foreign)
        return true;
    // The deepest indent of a ComParam contains a line break.
    return former != FullMark && !line.Text.starts_with("\t\t\t\tCoPDataSize=") &&
           !line.Text.starts_with("\t\t\t\t\tDescription:- ");
}

std::string FirstOddLine(std::string_view text)
{
    return FirstFound<OddLineSink>(text);
}

std::string FirstDamagedLine(std::string_view file)
{
    return FirstFound<DamageSink>(file);
}

std::string FirstOddBeginning(std::string_view text)
{
    return FirstFound<OddBeginningSink>(text);
}

} // namespace marvane::testing
