// The logger library as an application has it, with the benchmark's target library behind it.
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

/// The target library, called directly: what a call costs without a logger.
const CPduDll& BareApi();
decltype(&PDUBenchEventCallback) RegisteredEventCallback();
decltype(&PDUBenchLogCallback) RegisteredLogCallback();

/// From PDUConstruct to PDUDestruct, in a folder of its own.
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
