// What happened to modules and links so far: to say why a call was refused.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "tool/read/records.h"

namespace marvane::tool {

class LinkHistory
{
public:
    /// To be told every call that returned, after Why was asked about it.
    void OnCall(const read::Call& call);

    /// Why a failed call may have failed, in words; nothing if the log does not tell.
    std::optional<std::string> Why(const read::Call& call) const;

private:
    struct Key
    {
        std::uint32_t Session;
        std::uint32_t Module;
        std::uint32_t Link; ///< UndefinedHandle for the module itself
        friend auto operator<=>(const Key&, const Key&) = default;
    };
    /// Where something was done last; nothing if it was not, or was undone.
    struct Events
    {
        std::optional<read::Position> Created;
        std::optional<read::Position> Destroyed;
        std::optional<read::Position> Connected;
        std::optional<read::Position> Disconnected;

        void SetConnected(const read::Position& at)
        {
            Connected = at;
            Disconnected.reset();
        }
        void SetDisconnected(const read::Position& at)
        {
            Disconnected = at;
            Connected.reset();
        }
    };
    struct Lock
    {
        Key Of;
        std::uint32_t Mask;
        read::Position At;
    };
    static Key KeyOf(const read::Call& call);
    Events& Of(const Key& key);
    const Events* Find(const Key& key) const;
    void Unlock(const Key& key, std::uint32_t mask);
    void Forget(std::uint32_t session);
    std::optional<std::string> WhyLocked(const read::Call& call) const;
    std::optional<std::string> WhyNotConnected(const Key& key, std::string_view what) const;
    std::optional<std::string> WhyInvalid(const read::Call& call) const;

    std::map<Key, Events> events_;
    std::vector<Lock> locks_;
};

} // namespace marvane::tool
