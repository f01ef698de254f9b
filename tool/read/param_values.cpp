#include "tool/read/param_values.h"

#include <cstdio>

namespace marvane::read {

namespace {

std::string HexText(Bytes bytes)
{
    std::string text;
    char digits[4];
    for (const std::uint8_t byte : bytes) {
        std::snprintf(digits, sizeof digits, "%02X", byte);
        text.append(text.empty() ? "" : " ").append(digits);
    }
    return text;
}

/// The members of a structure are the lines after its counts.
std::string MembersText(std::span<const CallLine> lines)
{
    std::string text;
    bool isMember = false;
    for (const CallLine& line : lines) {
        const DecodedText decoded = line.Decode();
        if (isMember && !decoded.Value.empty())
            text.append(text.empty() ? "" : ", ").append(decoded.Label).append(" ").append(decoded.Value);
        isMember = isMember || decoded.Label == "ActEntries";
    }
    return text;
}

} // namespace

std::string ParamValueText(const Param& param)
{
    if (param.Number)
        return std::to_string(*param.Number);
    if (param.IsField)
        return HexText(param.Field);
    return param.By ? MembersText(param.IsSet ? param.By->LinesIn : param.By->LinesOut) : std::string();
}

std::string ParamNameText(const Param& param)
{
    return param.Name.empty() ? "ComParam " + std::to_string(param.Id) : std::string(param.Name);
}

void ParamValues::OnCall(const Call& call)
{
    if (call.State != CallState::Returned || call.Status != 0u)
        return;
    if (call.Which == Function::DestroyComLogicalLink)
        std::erase_if(values_, [&](const auto& entry) {
            const Key& key = entry.first;
            return key.Session == call.Session && key.Module == call.Module.value_or(UndefinedHandle) &&
                   key.Link == call.Link.value_or(UndefinedHandle);
        });
    else if (call.Which == Function::Destruct)
        std::erase_if(values_, [&](const auto& entry) { return entry.first.Session == call.Session; });
}

std::optional<ParamChange> ParamValues::OnParam(const Param& param, LinkBook& links)
{
    const Call& by = *param.By;
    std::string value = ParamValueText(param);
    const Key key = {by.Session, by.Module.value_or(UndefinedHandle), by.Link.value_or(UndefinedHandle),
                     param.Id};
    if (value.empty()) {
        values_.erase(key); // the log does not show it
        return std::nullopt;
    }
    const auto [known, isNew] = values_.try_emplace(key, value);
    if (!param.IsSet || (!isNew && known->second == value)) {
        known->second = std::move(value);
        return std::nullopt;
    }
    std::string name =
        param.Name.empty() ? links.NameOf(by.Session, LinkPart::ComParam, param.Id) : std::string();
    if (name.empty())
        name = ParamNameText(param);
    ParamChange change = {
        by.Begin,       by.BeginTime,    by.Session,
        links.Find(by), std::move(name), isNew ? std::optional<std::string>() : std::move(known->second),
        value};
    known->second = std::move(value);
    return change;
}

} // namespace marvane::read
