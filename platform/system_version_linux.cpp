#include "platform/system_version.h"

#include <sys/utsname.h>

namespace marvane::platform {

std::string SystemVersion()
{
    utsname names = {};
    if (uname(&names) != 0)
        return "Linux";
    return std::string(names.sysname) + " " + names.release + " " + names.machine;
}

} // namespace marvane::platform
