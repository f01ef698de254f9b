// The sessions of a log, and what their headers say.
#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string_view>

#include "tool/read/records.h"

namespace marvane::read {

class SessionTable
{
public:
    /// A new session, without a process as yet. The oldest goes if there are too many.
    Session& Begin(Position at, LogTime time, bool hasBeginning);
    std::uint32_t NewProcess() { return ++processes_; }

    Session* Find(std::uint32_t number) const;
    /// The newest session that has not ended, else the newest; null if there is none.
    Session* Newest() const;
    /// The newest session before that one that has not ended, or null.
    Session* NewestBefore(const Session& session) const;
    std::uint64_t Count() const { return count_; }

private:
    std::deque<std::unique_ptr<Session>> sessions_;
    std::uint32_t count_ = 0;
    std::uint32_t processes_ = 0;
};

/// Takes over a line of a header: "KEY = VALUE" after "Config setting: ". Returns the string value that may
/// go on in the next line, or null.
std::string* TakeSetting(Session& session, std::string_view setting);
/// "{Loaded=N}": N.
std::optional<std::uint32_t> LoadedOf(std::string_view header);
/// Takes over a line about the loading of the target library, with its arrow.
void TakeLoading(Session& session, std::string_view line);
/// Takes over a line that goes on with a failed load: the reason.
void TakeLoadFailure(Session& session, std::string_view line);

} // namespace marvane::read
