// What happened on each thread in a short time: the scene that `around` draws.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tool/read/log_reader.h"

namespace marvane::tool {

/// A call, a callback or a comms report that is in the window, wholly or in part.
struct Act
{
    std::uint32_t Thread = 0;
    read::Position Begin;
    read::LogTime BeginTime;
    std::optional<read::Position> End; ///< none if the log does not show it
    read::LogTime EndTime;
    bool IsReport = false; ///< of one moment, with a Begin alone
    bool IsByTheLibrary = false;
    bool HasFailed = false;
    bool HasItem = false; ///< it fetched one
    std::string Name;     ///< short, with what is known at its beginning
    std::string Result;   ///< short, may be empty
};

struct Scene
{
    read::LogTime Zero; ///< the beginning of the session
    read::LogTime Begin;
    read::LogTime End;
    std::uint64_t Line = 0; ///< of the first file, if that is what was asked for; else 0
    std::vector<Act> Acts;  ///< in the order of their beginnings
};

/// Gathers the acts of a window while a log is read, up to a number that nobody reads to its end.
class SceneSink : public read::LogSink
{
public:
    static constexpr std::size_t MostActs = 50'000;

    SceneSink(read::LogTime begin, read::LogTime end) { scene_.Begin = begin, scene_.End = end; }

    void OnSession(const read::Session& session) override;
    void OnEntry(const read::Call& call, bool isEvent) override;
    void OnCall(const read::Call& call) override { Close(call, false); }
    void OnEvent(const read::Event& event) override { Close(event, true); }
    void OnItem(const read::Item& item) override;
    void OnComms(const read::Comms& report) override;
    bool IsEnough() const override { return IsFull() || (isPast_ && open_.empty()); }

    /// The window holds more than MostActs; the rest is not in the scene.
    bool IsFull() const { return isFull_; }

    /// The scene, once all was read.
    Scene Finish();

private:
    void Close(const read::Call& call, bool isEvent);
    void Add(Act act);
    bool IsInside(read::LogTime begin, read::LogTime end) const
    {
        return end >= scene_.Begin && begin <= scene_.End;
    }

    Scene scene_;
    std::vector<Act> open_; ///< entered before the end of the window, not yet returned
    bool isPast_ = false;
    bool isFull_ = false;
};

} // namespace marvane::tool
