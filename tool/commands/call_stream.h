// A log as a stream of whole calls: all lines of a call together, in the order of the entry lines.
#pragma once

#include <deque>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

#include "tool/commands/log_lines.h"
#include "tool/read/log_reader.h"

namespace marvane::tool {

/// A call, a callback, or lines that belong to neither: a header, a mark, a comms report, damage.
struct Unit
{
    read::Position At; ///< its first line
    read::LogTime Time;
    std::uint32_t Thread = 0;
    std::uint64_t Seq = 0; ///< of a call
    bool IsSelected = false;
    bool HasFailed = false;
    LogLines Lines;
};

/// What makes of the reader's records a stream of units. Calls are given out in the order of their entry
/// lines, so one that has not returned holds back those that entered after it, but never more than MostBytes
/// of them.
class CallStream : public read::LogSink
{
public:
    static constexpr std::size_t MostBytes = 16 * 1024 * 1024;

    void OnLine(const read::Line& line) override;
    void OnEntry(const read::Call& call, bool isEvent) override;
    void OnCall(const read::Call& call) override { Take(call, false); }
    void OnEvent(const read::Event& event) override { Take(event, true); }

    /// Gives out what has been held back, calls that have not returned apart. For following: whoever looks on
    /// wants to see it now.
    void Release();
    /// The log has ended: gives out everything.
    void Finish();

protected:
    /// Whether a call is wanted. `unit` is complete but for IsSelected.
    virtual bool Select(const read::Call& call, bool isEvent, const Unit& unit) = 0;
    /// Whether lines that belong to no call are wanted.
    virtual bool SelectLoose(const Unit& unit) = 0;
    /// Whether units that are not selected are to be given out too.
    virtual bool WantsAll() const = 0;
    /// The next unit.
    virtual void Give(const Unit& unit) = 0;

private:
    struct ThreadState
    {
        LogLines Lines; ///< that no call has claimed yet
        std::size_t OpenCalls = 0;
    };

    ThreadState& ThreadOf(std::uint32_t id);
    void Take(const read::Call& call, bool isEvent);
    void TakeLoose();
    void PutLast();
    void Put(std::unique_ptr<Unit> unit);
    void GiveBefore(read::Position limit);
    std::unique_ptr<Unit> NewUnit();

    std::unordered_map<std::uint32_t, ThreadState> threads_;
    ThreadState* lastThread_ = nullptr; ///< the one that was asked for last; they stay where they are
    std::uint32_t lastId_ = 0;
    std::unique_ptr<Unit>
        last_; ///< the call that returned last: a mark of a full buffer may follow its exit line
    std::vector<read::Position> open_;          ///< entry lines of calls that have not returned
    std::deque<std::unique_ptr<Unit>> waiting_; ///< in the order of their entry lines
    std::vector<std::unique_ptr<Unit>> unused_;
    std::size_t waitingBytes_ = 0;
    std::optional<std::uint32_t> loose_; ///< the thread whose lines outside of calls are being gathered
};

} // namespace marvane::tool
