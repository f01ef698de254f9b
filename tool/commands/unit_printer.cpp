#include "tool/commands/unit_printer.h"

#include <cstdio>
#include <cstdlib>

#include "line/stamp.h"

namespace marvane::tool {

namespace {

using read::LineKind;

Colour ColourOf(const Unit& unit, LineKind kind)
{
    if (kind == LineKind::Entry)
        return Colour::Bold;
    if (kind == LineKind::Exit || kind == LineKind::NotLoaded)
        return unit.HasFailed ? Colour::Red : Colour::Plain;
    return kind == LineKind::Full || kind == LineKind::Foreign ? Colour::Yellow : Colour::Plain;
}

} // namespace

void UnitPrinter::Begin(read::LogTime time)
{
    if (!zero_)
        zero_ = last_ = time;
}

void UnitPrinter::Give(const Unit& unit)
{
    Begin(unit.Time);
    if (unit.IsSelected && shown_ < style_.Most) {
        WriteContext();
        ++shown_;
        afterLeft_ = style_.After;
        Write(unit);
    } else if (afterLeft_ > 0) {
        --afterLeft_;
        Write(unit);
    } else {
        Remember(unit);
    }
}

void UnitPrinter::Remember(const Unit& unit)
{
    if (style_.Before == 0) {
        hasGap_ = true;
        return;
    }
    if (context_.size() == style_.Before) {
        context_.pop_front();
        hasGap_ = true;
    }
    context_.push_back(unit);
}

void UnitPrinter::WriteContext()
{
    if (hasGap_ && shown_ > 0 && HasContext())
        console_.Write(console_.Coloured(Colour::Dim, "--") + "\n");
    hasGap_ = false;
    for (const Unit& unit : context_)
        Write(unit);
    context_.clear();
}

void UnitPrinter::Write(const Unit& unit)
{
    for (const LogLines::Entry& entry : unit.Lines.Entries())
        WriteLine(unit, entry);
}

void UnitPrinter::WriteLine(const Unit& unit, const LogLines::Entry& entry)
{
    const std::string_view whole = unit.Lines.Whole(entry);
    if (style_.Time == TimeStyle::Absolute && !console_.HasColour()) {
        console_.Write(whole);
        console_.Write("\n");
        return;
    }
    std::string_view text = whole;
    if (entry.HasStamp) {
        console_.Write(console_.Coloured(Colour::Dim, Stamp(entry, whole)));
        text.remove_prefix(StampLength);
    }
    console_.Write(console_.Coloured(ColourOf(unit, entry.Kind), text) + "\n");
    last_ = entry.Time;
}

/// The stamp with its clock replaced by a distance, as wide as before.
std::string UnitPrinter::Stamp(const LogLines::Entry& entry, std::string_view whole) const
{
    constexpr std::size_t clockBegin = 1, clockEnd = 13;
    if (style_.Time == TimeStyle::Absolute)
        return std::string(whole.substr(0, StampLength));
    const std::int64_t distance = entry.Time - (style_.Time == TimeStyle::Relative ? *zero_ : *last_);
    char text[32];
    std::snprintf(text, sizeof text, "%c%lld.%03d", distance < 0 ? '-' : '+',
                  static_cast<long long>(std::abs(distance) / 1000),
                  static_cast<int>(std::abs(distance) % 1000));
    std::string clock = text;
    if (clock.size() < clockEnd - clockBegin)
        clock.insert(0, clockEnd - clockBegin - clock.size(), ' ');
    return "{" + clock + std::string(whole.substr(clockEnd, StampLength - clockEnd));
}

} // namespace marvane::tool
