#include "tool/input/input_pump.h"

#include <cstdio>
#include <thread>

namespace marvane::tool {

InputPump::InputPump()
{
    std::thread(Pump, state_).detach();
}

bool InputPump::ReadInto(read::LogReader& reader)
{
    std::string bytes;
    {
        const std::lock_guard hold(state_->Mutex);
        bytes.swap(state_->Bytes);
    }
    reader.Feed(bytes);
    return !bytes.empty();
}

bool InputPump::IsAtEnd() const
{
    const std::lock_guard hold(state_->Mutex);
    return state_->IsAtEnd && state_->Bytes.empty();
}

/// Line by line, so that none waits for a full buffer.
void InputPump::Pump(const std::shared_ptr<State>& state)
{
    std::string line;
    for (int byte = std::getc(stdin); byte != EOF; byte = std::getc(stdin)) {
        line += static_cast<char>(byte);
        if (byte != '\n')
            continue;
        const std::lock_guard hold(state->Mutex);
        state->Bytes += line;
        line.clear();
    }
    const std::lock_guard hold(state->Mutex);
    state->Bytes += line;
    state->IsAtEnd = true;
}

} // namespace marvane::tool
