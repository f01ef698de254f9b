#include "tool/analysis/item_balance.h"

#include <algorithm>
#include <optional>

#include "tool/console/row_text.h"
#include "tool/read/call_text.h"

namespace marvane::tool {

namespace {

using read::Function;

constexpr std::size_t MostOut = 20'000;
constexpr std::size_t MostLeakLines = 5; // of items of one kind

/// "0x55" of "ComParam (0x55) Id = ...".
std::optional<std::string_view> InParentheses(std::string_view text, std::string_view before)
{
    const std::size_t at = text.find(before);
    if (at == std::string_view::npos)
        return std::nullopt;
    const std::string_view rest = text.substr(at + before.size());
    return rest.substr(0, rest.find(')'));
}

std::string_view Trimmed(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(' ');
    return first == std::string_view::npos ? std::string_view() : text.substr(first);
}

bool IsNull(std::string_view address)
{
    return Trimmed(address) == "(nil)" || address == "<NULL>" ||
           address.find_first_not_of("0x ") == std::string_view::npos;
}

/// Whether a call that went well handed out an item.
bool HandsOutItem(const read::Call& call)
{
    switch (call.Which) {
    case Function::GetEventItem:
        return read::ValueOf(call.LinesOut, "*ppEventItem") != "<NULL>";
    case Function::GetModuleIds:
        return read::ValueOf(call.LinesOut, "*pModuleItem") != "<NULL>";
    case Function::GetResourceIds:
    case Function::GetUniqueRespIdTable:
    case Function::GetConflictingResources:
    case Function::GetComParam:
        return true;
    case Function::IoCtl: {
        const auto address = read::ValueOf(call.LinesOut, "pOutputData");
        return address && !IsNull(*address);
    }
    default:
        return false;
    }
}

/// The address of that item, of the calls that show it; those of event items come with the items.
std::optional<std::string_view> AddressOf(const read::Call& call)
{
    switch (call.Which) {
    case Function::GetConflictingResources:
        return read::ValueOf(call.LinesOut, "pConflictList");
    case Function::GetComParam:
        return call.LinesOut.empty() ? std::nullopt : InParentheses(call.LinesOut.front().Text, "ComParam (");
    case Function::IoCtl:
        return read::ValueOf(call.LinesOut, "pOutputData");
    default:
        return std::nullopt;
    }
}

/// Items of one kind that are out.
struct LeakedKind
{
    std::string Name; ///< "result of PDUGetEventItem"
    std::uint64_t Count = 0;
    std::string Lines; ///< of the first ones
};

std::string LeakText(const LeakedKind& kind)
{
    if (kind.Count == 1)
        return "not destroyed: " + kind.Name + ", line " + kind.Lines;
    const std::size_t of = kind.Name.find(" of ");
    const std::string more =
        kind.Count > MostLeakLines ? " and " + Grouped(kind.Count - MostLeakLines) + " more" : "";
    return "not destroyed: " + Counted(kind.Count, kind.Name.substr(0, of)) + kind.Name.substr(of) +
           ", lines " + kind.Lines + more;
}

} // namespace

void ItemBalance::Give(std::string_view address, const read::Position& at, std::string_view by,
                       std::string_view what)
{
    if (!address.empty() && out_.size() < MostOut)
        out_[std::string(Trimmed(address))] = {at, std::string(by), what};
}

void ItemBalance::OnItem(const read::Item& item)
{
    constexpr std::string_view words[] = {"result", "status event", "error event", "information event",
                                          "item"};
    Give(item.Address, item.At, item.Fetch ? item.Fetch->Name : std::string_view("PDUGetEventItem"),
         words[static_cast<std::size_t>(item.Kind)]);
}

void ItemBalance::OnCall(const read::Call& call)
{
    if (call.State != read::CallState::Returned || call.Status != 0u)
        return;
    if (call.Which == Function::DestroyItem)
        return TakeBack(call);
    if (!HandsOutItem(call))
        return;
    ++given_;
    if (const auto address = AddressOf(call))
        Give(*address, call.Begin, call.Name);
}

void ItemBalance::TakeBack(const read::Call& destroy)
{
    ++destroyed_;
    if (const auto address = read::Argument(destroy.Arguments, "pItem"))
        if (const auto found = out_.find(Trimmed(*address)); found != out_.end())
            out_.erase(found);
}

std::vector<ItemBalance::OutItem> ItemBalance::ByLine() const
{
    std::vector<OutItem> out;
    for (const auto& [address, item] : out_)
        out.push_back(item);
    std::ranges::sort(out, {}, &OutItem::At);
    return out;
}

std::vector<std::string> ItemBalance::WhatIsOut() const
{
    std::vector<LeakedKind> kinds;
    for (const OutItem& item : ByLine()) {
        const std::string name = std::string(item.What) + " of " + item.By;
        auto kind = std::ranges::find(kinds, name, &LeakedKind::Name);
        if (kind == kinds.end())
            kind = kinds.insert(kind, {name, 0, {}});
        if (kind->Count++ < MostLeakLines)
            kind->Lines += (kind->Lines.empty() ? "" : ", ") + PositionText(item.At);
    }
    std::vector<std::string> texts;
    texts.reserve(kinds.size());
    for (const LeakedKind& kind : kinds)
        texts.push_back(LeakText(kind));
    return texts;
}

} // namespace marvane::tool
