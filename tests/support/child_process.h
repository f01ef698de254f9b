// A second process of the test program: the same test once more, in a role of its own.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "tests/support/temporary_folder.h"

namespace marvane::testing {

/// The role that this process was started in; empty in the process that runs the suite.
std::string ChildRole();

/// Runs the current test in a process of its own. The test asks ChildRole and plays that part.
class ChildProcess
{
public:
    /// `folder` is the child's temporary folder, for all that it leaves behind, and takes what it prints.
    ChildProcess(const std::string& role, const TemporaryFolder& folder);
    /// Ends a child that still runs.
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    /// Ends the child at once, wherever it is.
    void Kill();
    /// Waits for its end: 0 if all went well; a signal or a fault is another number.
    int Wait();
    /// What it printed.
    std::string Output() const { return FileText(output_); }

private:
    std::string output_;
    std::intptr_t process_ = 0; ///< id or handle; 0 once waited for
};

/// Forks this process, has the child perform an action and end as processes do, and waits for that: its exit
/// status, or -1 where the system has no fork.
int RunForked(const std::function<void()>& action);

} // namespace marvane::testing
