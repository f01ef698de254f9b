// Copies of hand-made logs that were changed at a known time: a log whose name has no date is dated by its
// last change, which is different in each checkout.
#pragma once

#include <string>

#include "tests/support/temporary_folder.h"

namespace marvane::testing {

class DatedLogs
{
public:
    /// The path of a copy, last changed on 22 Nov 2026 at noon, of a log or folder of logs.
    std::string Path(const std::string& name) const;

private:
    TemporaryFolder folder_;
};

} // namespace marvane::testing
