// Standard input for a command that follows it.
#pragma once

#include <memory>
#include <mutex>
#include <string>

#include "tool/read/log_reader.h"

namespace marvane::tool {

/// Standard input, which is read on a thread of its own: nobody knows how long that takes.
class InputPump
{
public:
    InputPump();

    /// Passes on what has come; true if there was anything.
    bool ReadInto(read::LogReader& reader);
    /// True if no more will come, and all was passed on.
    bool IsAtEnd() const;

private:
    struct State
    {
        std::mutex Mutex;
        std::string Bytes;
        bool IsAtEnd = false;
    };
    static void Pump(const std::shared_ptr<State>& state);

    std::shared_ptr<State> state_ = std::make_shared<State>();
};

} // namespace marvane::tool
