#include "tool/analysis/link_history.h"

#include <algorithm>

#include "pdu/pdu_api.h"
#include "tool/console/row_text.h"
#include "tool/read/call_text.h"

namespace marvane::tool {

namespace {

using read::Function;
using read::UndefinedHandle;

// Links that were destroyed are forgotten beyond so many.
constexpr std::size_t MostLinks = 10'000;
constexpr std::size_t MostLocks = 1'000;

std::uint32_t LockMaskOf(const read::Call& call)
{
    const auto mask = read::Argument(call.Arguments, "LockMask");
    return mask ? read::NumberInValue(*mask).value_or(0) : 0;
}

std::string Number(std::uint32_t handle)
{
    return std::to_string(handle);
}

} // namespace

LinkHistory::Key LinkHistory::KeyOf(const read::Call& call)
{
    return {call.Session, call.Module.value_or(UndefinedHandle), call.Link.value_or(UndefinedHandle)};
}

LinkHistory::Events& LinkHistory::Of(const Key& key)
{
    if (events_.size() > MostLinks)
        std::erase_if(events_, [](const auto& entry) { return entry.second.Destroyed.has_value(); });
    return events_[key];
}

const LinkHistory::Events* LinkHistory::Find(const Key& key) const
{
    const auto found = events_.find(key);
    return found == events_.end() ? nullptr : &found->second;
}

void LinkHistory::OnCall(const read::Call& call)
{
    if (call.State != read::CallState::Returned || call.Status != 0u)
        return;
    const Key key = KeyOf(call);
    switch (call.Which) {
    case Function::CreateComLogicalLink:
        if (const auto value = read::ValueOf(call.LinesOut, "phCLL"))
            Of({key.Session, key.Module, read::NumberInValue(*value).value_or(UndefinedHandle)}) = {
                call.Begin, {}, {}, {}};
        break;
    case Function::DestroyComLogicalLink:
        Of(key) = {{}, call.Begin, {}, {}};
        std::erase_if(locks_, [&](const Lock& lock) { return lock.Of == key; });
        break;
    case Function::Connect:
    case Function::ModuleConnect:
        Of(key).SetConnected(call.Begin);
        break;
    case Function::Disconnect:
    case Function::ModuleDisconnect:
        Of(key).SetDisconnected(call.Begin);
        break;
    case Function::LockResource:
        if (locks_.size() < MostLocks)
            locks_.push_back({key, LockMaskOf(call), call.Begin});
        break;
    case Function::UnlockResource:
        Unlock(key, LockMaskOf(call));
        break;
    case Function::Destruct:
        Forget(call.Session);
        break;
    default:
        break;
    }
}

void LinkHistory::Unlock(const Key& key, std::uint32_t mask)
{
    std::erase_if(locks_,
                  [&](const Lock& lock) { return lock.Of == key && (lock.Mask & mask) == lock.Mask; });
}

void LinkHistory::Forget(std::uint32_t session)
{
    std::erase_if(events_, [&](const auto& entry) { return entry.first.Session == session; });
    std::erase_if(locks_, [&](const Lock& lock) { return lock.Of.Session == session; });
}

std::optional<std::string> LinkHistory::WhyLocked(const read::Call& call) const
{
    const Key key = KeyOf(call);
    const auto holder = std::ranges::find_if(locks_, [&](const Lock& lock) {
        return lock.Of.Session == key.Session && lock.Of.Module == key.Module && lock.Of.Link != key.Link;
    });
    if (holder == locks_.end())
        return std::nullopt;
    return "link " + Number(holder->Of.Link) + " holds the lock since line " + PositionText(holder->At);
}

std::optional<std::string> LinkHistory::WhyNotConnected(const Key& key, std::string_view what) const
{
    const Events* events = Find(key);
    if (events && events->Disconnected)
        return std::string(what) + " was disconnected in line " + PositionText(*events->Disconnected);
    if (events && events->Destroyed)
        return std::string(what) + " was destroyed in line " + PositionText(*events->Destroyed);
    if (!events || !events->Connected)
        return std::string(what) + " was not connected before, as far as the log goes back";
    return std::nullopt;
}

std::optional<std::string> LinkHistory::WhyInvalid(const read::Call& call) const
{
    const Key key = KeyOf(call);
    if (key.Link == UndefinedHandle)
        return std::nullopt;
    const Events* events = Find(key);
    if (events && events->Destroyed)
        return "link " + Number(key.Link) + " was destroyed in line " + PositionText(*events->Destroyed);
    if (!events)
        return "no call before made link " + Number(key.Link) + ", as far as the log goes back";
    return std::nullopt;
}

std::optional<std::string> LinkHistory::Why(const read::Call& call) const
{
    const Key key = KeyOf(call);
    const std::string link = "link " + Number(key.Link);
    switch (call.Status.value_or(0)) {
    case PDU_ERR_RSC_LOCKED:
    case PDU_ERR_RSC_LOCKED_BY_OTHER_CLL:
        return WhyLocked(call);
    case PDU_ERR_CLL_NOT_CONNECTED:
        return key.Link == UndefinedHandle ? std::nullopt : WhyNotConnected(key, link);
    case PDU_ERR_MODULE_NOT_CONNECTED:
        return WhyNotConnected({key.Session, key.Module, UndefinedHandle}, "module " + Number(key.Module));
    case PDU_ERR_CLL_CONNECTED:
        if (const Events* events = Find(key); events && events->Connected)
            return link + " is connected since line " + PositionText(*events->Connected);
        return std::nullopt;
    case PDU_ERR_INVALID_HANDLE:
        return WhyInvalid(call);
    case PDU_ERR_ID_NOT_SUPPORTED:
        if (const auto name = read::Argument(call.Arguments, "pShortname"))
            return "\"" + Printable(*name) + (call.IsCutIn ? "..." : "") + "\" is unknown to the library";
        return std::nullopt;
    case PDU_ERR_COMPARAM_NOT_SUPPORTED:
    case PDU_ERR_COMPARAM_LOCKED:
        if (const auto parameter = read::Argument(call.Arguments, "ParamID"))
            return "ComParam " + Printable(*parameter);
        return std::nullopt;
    default:
        return std::nullopt;
    }
}

} // namespace marvane::tool
