// A standard input that nobody should read.
#pragma once

#include <string>

namespace marvane::testing {

/// Makes a pipe the standard input of this process and of the programs that it starts, until its end. Answers
/// to any question wait in it, and its other end is open: a program that reads takes some of them, or waits
/// for more for ever.
class UnreadInput
{
public:
    UnreadInput();
    ~UnreadInput();
    UnreadInput(const UnreadInput&) = delete;
    UnreadInput& operator=(const UnreadInput&) = delete;

    /// The answers that were put into the pipe.
    static std::string Answers();
    /// From here on the pipe has an end, after the answers.
    void CloseOtherEnd();
    /// Closes the other end and takes out what is left of the answers.
    std::string Left();

private:
    int former_; ///< the standard input before
    int writeEnd_;
};

} // namespace marvane::testing
