// Which settings of the logger would have shown more.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tool/read/records.h"

namespace marvane::tool {

class SettingsHints
{
public:
    /// To be told every session: that with the most gaps counts.
    void OnSession(const read::Session& session);

    /// A line each, for one who wants to see requests and answers.
    std::vector<std::string> ForTalk() const;
    /// A line each, for all there is.
    std::vector<std::string> ForAll() const;
    /// Why the code of a negative answer is missing, and what would show it.
    std::string ForNegativeCode() const;
    /// Whether announced events are in the log, as far as the headers say.
    bool ShowsEvents() const { return !callbacks_.IsBelow(1); }
    /// What to say after the name of LogMaxPduBuff: "was 32".
    std::string PayloadLimitText() const;

private:
    /// The lowest value of a setting that any session had; nothing if no header was read.
    struct Lowest
    {
        std::optional<std::uint32_t> Value;
        void See(std::optional<std::uint32_t> value);
        bool IsBelow(std::uint32_t wanted) const { return Value && *Value < wanted; }
    };
    Lowest enabled_;
    Lowest calls_;
    Lowest arguments_;
    Lowest results_;
    Lowest callbacks_;
    Lowest payload_;
};

} // namespace marvane::tool
