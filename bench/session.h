// The logger library, loaded as an application loads it, with the benchmark's target library.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "bench/target.h"
#include "logger/target/target_library.h"
#include "platform/library.h"
#include "tests/support/temporary_folder.h"

namespace marvane::bench {

using Settings = std::vector<std::pair<const char*, unsigned>>;

/// The functions of the target library itself: what a call costs without a logger.
const CPduDll& BareApi();
/// The functions that return the callbacks registered with the target library.
decltype(&PDUBenchEventCallback) RegisteredEventCallback();
decltype(&PDUBenchLogCallback) RegisteredLogCallback();

/// A logger session from PDUConstruct to PDUDestruct, in a temporary folder of its own. Ends the process with
/// a message if it can't be started.
class Session
{
public:
    explicit Session(const Settings& settings);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    const CPduDll& Api() const { return *api_; }
    std::string LogText() const;

private:
    testing::TemporaryFolder folder_;
    testing::EnvironmentValue configuration_, temp_, appData_;
    platform::Library library_ = nullptr;
    std::unique_ptr<CPduDll> api_;
};

} // namespace marvane::bench
