// A session of a test: the logger library, loaded as an application loads it, its configuration, its logs,
// and the fake target that it forwards to.
#pragma once

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "logger/state/settings.h"
#include "logger/target/target_library.h"
#include "platform/library.h"
#include "tests/support/temporary_folder.h"
#include "tests/target/fake_target.h"

namespace marvane::testing {

/// Folder of the test program and of all libraries, with a separator at its end.
std::string BuildFolder();

/// File name of a shared library of the build, from its CMake target.
std::string LibraryName(const std::string& name);

/// The expected text of a "%8p" conversion: as glibc prints it on Linux, 16 upper-case digits on Windows.
std::string PointerText(const void* pointer);

/// Replaces each well-formed stamp, with the blank after it, by "{stamp} ".
std::string WithoutStamps(const std::string& text);

/// A call as the fake target received it.
struct SeenCall
{
    std::string Function;
    std::vector<std::uint64_t> Arguments;
};

/// The fake target of a session. Loaded before the logger loads it, so that both share one instance. Calls
/// may come from any thread.
class Target
{
public:
    explicit Target(const std::string& path);
    ~Target();
    Target(const Target&) = delete;
    Target& operator=(const Target&) = delete;

    /// Returns the status of each call; if empty, all return 0. Change it only while no call is under way.
    std::function<T_PDU_ERROR(const FakeCall&)> Answer;

    /// Returns the calls recorded so far and clears the record.
    std::vector<SeenCall> TakeCalls();
    /// Returns the names of the calls recorded so far, separated by blanks, and clears the record.
    std::string TakeNames();
    /// Stops recording calls, for tests that make very many.
    void Discard() { keeps_ = false; }

private:
    static T_PDU_ERROR OnCall(void* context, const FakeCall* call);

    platform::Library library_;
    std::mutex mutex_;
    std::vector<SeenCall> calls_;
    std::atomic<bool> keeps_ = true;
};

using Settings = std::map<std::string, std::string>;
using Changes = std::initializer_list<Settings::value_type>;

/// The logger library with a configuration, a log folder and a temporary folder of its own. Calls PDUDestruct
/// and unloads the library at the end. One at a time in a process: it sets environment variables. Throws
/// std::runtime_error if a library does not load.
class Session
{
public:
    /// The configuration is LogEnabled 1, LogFnCalls 2, LogFlush 1 and the paths of the target and the log
    /// folder, with these changes. The value "-" leaves a key out.
    explicit Session(Changes changes = {}, const std::string& target = "fake_target",
                     const std::string& library = "Marvane");
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /// Rewrites the configuration with other changes, for the next PDUConstruct.
    void Configure(Changes changes);
    /// Rewrites the configuration file with this text.
    void ConfigureText(const std::string& text);

    /// A function that the logger library exports, by name; null if there is none.
    void* FindFunction(const char* name) const;
    /// The logger library's functions.
    const CPduDll& Api() const { return *api_; }
    /// The fake target. Only for a session whose target is one.
    Target& Fake() { return *target_; }

    T_PDU_ERROR Construct() { return Api().PDUConstruct(nullptr, nullptr); }

    const TemporaryFolder& Folder() const { return folder_; }
    std::filesystem::path LogFolder() const { return folder_.Path() / "logs"; }
    std::string ConfigurationPath() const { return folder_ / "D_PDU_API_CFG.xml"; }
    std::string TargetPath() const { return targetPath_; }

    /// Names of the files in the log folder that begin with `family`, sorted.
    std::vector<std::string> LogNames(const std::string& family = "D-PDU_API_Logger") const;
    /// Text of all API log files in the order of their names, line ends as line feeds.
    std::string Log() const;
    /// The text that an action adds to the log, stamps replaced as by WithoutStamps.
    std::string Logged(const std::function<void()>& action) const;
    /// Text of the running logger's diagnostic log.
    std::string Diagnostics() const { return FileText(folder_.Path() / "d-pdu-api-logger.log"); }

private:
    TemporaryFolder folder_;
    std::vector<std::unique_ptr<EnvironmentValue>> environment_;
    std::string targetPath_;
    std::string targetName_;
    std::unique_ptr<Target> target_;
    platform::Library library_ = nullptr;
    std::unique_ptr<CPduDll> api_;
};

} // namespace marvane::testing
