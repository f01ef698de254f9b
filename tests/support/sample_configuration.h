// Path of the sample configuration that the build copies for the tests.
#pragma once

#include "platform/files.h"
#include "tests/support/session.h"

namespace marvane::testing {

inline std::string SampleConfigurationPath()
{
    return BuildFolder() + "sample" + platform::PathSeparator + "D_PDU_API_CFG.xml";
}

} // namespace marvane::testing
