#include "tool/commands/unreadable_roots.h"

namespace marvane::tool {

void ComplainOfUnreadable(const std::vector<ReadRoot>& roots, Console& console)
{
    for (const ReadRoot& root : roots)
        if (!root.File)
            console.Complain(root.Source.Path + " " + root.Fault);
}

} // namespace marvane::tool
