// A folder on the network, for tests.
#pragma once

#include <string>

#include "tests/support/temporary_folder.h"

namespace marvane::testing {

/// A new empty folder at a place on the network, removed with its contents at the end.
class NetworkFolder
{
public:
    /// The place is the value of an environment variable: MARVANE_TEST_SHARE ("\\server\share") or
    /// MARVANE_TEST_NETWORK_DRIVE ("N:").
    explicit NetworkFolder(const char* variable);
    ~NetworkFolder();
    NetworkFolder(const NetworkFolder&) = delete;
    NetworkFolder& operator=(const NetworkFolder&) = delete;

    /// False if the environment names no such place.
    bool Exists() const { return !path_.empty(); }
    /// Its path, with a backslash at the end.
    const std::string& Path() const { return path_; }

private:
    std::string path_;
};

} // namespace marvane::testing
