// Runs the current test in a second process, in another role.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "tests/support/temporary_folder.h"

namespace marvane::testing {

/// The role of this process; empty in the process that runs the suite.
std::string ChildRole();

/// Runs the current test in another process, where ChildRole returns `role`: the test branches on it.
class ChildProcess
{
public:
    /// `folder` becomes the child's temporary folder and receives its output; it must outlive this object.
    ChildProcess(const std::string& role, const TemporaryFolder& folder);
    /// Kills the child if it still runs.
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    /// Kills the child at once.
    void Kill();
    /// Waits until a condition is true; returns false if the child ends before. Asks it again and again.
    bool RunsUntil(const std::function<bool()>& reached) const;
    /// Waits for its end and returns its exit status; another number than 0 for a signal or a fault, and
    /// NoTestRun if it ended well without running the test.
    int Wait();
    static constexpr int NoTestRun = -1000;
    /// Its output so far, standard error included.
    std::string Output() const { return FileText(output_); }

private:
    std::string output_;
    std::intptr_t process_ = 0; ///< id or handle; 0 once waited for
};

/// Forks this process, runs an action in the child, and waits for the child's normal exit. Returns its exit
/// status, or -1 where the system has no fork.
int RunForked(const std::function<void()>& action);

} // namespace marvane::testing
