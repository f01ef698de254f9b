// Events of Chrome's trace format, one a line.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tool/export/sink.h"

namespace marvane::tool::trace {

/// A row of the viewer: a thread of a process.
struct Row
{
    std::uint32_t Process = 0;
    std::uint32_t Thread = 0;
    friend auto operator<=>(const Row&, const Row&) = default;
};

struct Event
{
    char Phase = 'B';
    Row On;
    std::int64_t Us = 0;
    std::string_view Name{};
    std::string_view Category{};
    std::uint64_t Id = 0; ///< of asynchronous events and flows
    /// Empty values are left out.
    std::vector<std::pair<std::string_view, std::string>> Arguments{};
};

/// Writes the document around the events too.
class EventWriter
{
public:
    /// `out` outlives it.
    explicit EventWriter(Sink& out) : out_(out) {}

    void Write(const Event& event);
    /// "process_name", "thread_name": what a row is called.
    void WriteName(std::string_view what, Row on, std::string_view name);
    /// The end of the document; `arguments` say what it is.
    void Finish(const std::vector<std::pair<std::string_view, std::string>>& arguments);

private:
    void Begin();

    Sink& out_;
    std::string line_;
    bool hasEvents_ = false;
};

} // namespace marvane::tool::trace
