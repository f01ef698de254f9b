// The last things that a sequence did, to be printed when a check fails.
#pragma once

#include <deque>
#include <string>

namespace marvane::testing {

class StepTrace
{
public:
    void Add(const std::string& line)
    {
        lines_.push_back(line + "\n");
        if (lines_.size() > Most)
            lines_.pop_front();
    }

    std::string Text() const
    {
        std::string text;
        for (const std::string& line : lines_)
            text += line;
        return text;
    }

private:
    static constexpr std::size_t Most = 60;
    std::deque<std::string> lines_;
};

} // namespace marvane::testing
