#include "tool/commands/item_balance.h"

#include <algorithm>
#include <optional>

#include "tool/read/call_text.h"

namespace marvane::tool {

namespace {

using read::Function;

constexpr std::size_t MostOut = 20'000;

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

} // namespace

void ItemBalance::Give(std::string_view address, const read::Position& at, std::string_view by)
{
    if (!address.empty() && out_.size() < MostOut)
        out_[std::string(Trimmed(address))] = {at, std::string(by)};
}

void ItemBalance::OnItem(const read::Item& item)
{
    Give(item.Address, item.At, item.Fetch ? item.Fetch->Name : std::string_view("PDUGetEventItem"));
}

void ItemBalance::OnCall(const read::Call& call)
{
    if (call.State != read::CallState::Returned || call.Status != 0u)
        return;
    switch (call.Which) {
    case Function::GetEventItem: {
        const auto item = read::ValueOf(call.LinesOut, "*ppEventItem");
        given_ += item != "<NULL>";
        break;
    }
    case Function::GetModuleIds:
        given_ += read::ValueOf(call.LinesOut, "*pModuleItem") != "<NULL>";
        break;
    case Function::GetResourceIds:
    case Function::GetUniqueRespIdTable:
        ++given_;
        break;
    case Function::GetConflictingResources:
        ++given_;
        if (const auto address = read::ValueOf(call.LinesOut, "pConflictList"))
            Give(*address, call.Begin, call.Name);
        break;
    case Function::GetComParam:
        ++given_;
        if (!call.LinesOut.empty())
            if (const auto address = InParentheses(call.LinesOut.front().Text, "ComParam ("))
                Give(*address, call.Begin, call.Name);
        break;
    case Function::IoCtl:
        if (const auto address = read::ValueOf(call.LinesOut, "pOutputData"); address && !IsNull(*address)) {
            ++given_;
            Give(*address, call.Begin, call.Name);
        }
        break;
    case Function::DestroyItem:
        ++destroyed_;
        if (const auto address = read::Argument(call.Arguments, "pItem"))
            if (const auto found = out_.find(Trimmed(*address)); found != out_.end())
                out_.erase(found);
        break;
    default:
        break;
    }
}

std::vector<ItemBalance::OutItem> ItemBalance::Out(std::size_t most) const
{
    std::vector<OutItem> out;
    for (const auto& [address, item] : out_)
        out.push_back(item);
    std::ranges::sort(out, {}, &OutItem::At);
    if (out.size() > most)
        out.resize(most);
    return out;
}

} // namespace marvane::tool
