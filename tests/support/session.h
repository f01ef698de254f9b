// A session of a test with the logger library: configuration, logs, the library loaded as an application
// loads it, and the fake target behind it.
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

/// Folder of the test program, with its separator: all libraries lie there.
std::string BuildFolder();

/// File name of a shared library of the build.
std::string LibraryName(const std::string& name);

/// What "%8p" has to give: glibc's text on Linux, 16 upper-case digits on Windows.
std::string PointerText(const void* pointer);

/// Replaces each well-formed stamp by "{stamp} ".
std::string WithoutStamps(const std::string& text);

/// A call as the fake target saw it.
struct SeenCall
{
    std::string Function;
    std::vector<std::uint64_t> Arguments;
};

/// The fake target of a session. It is loaded before the logger loads it, so both hold the same one.
class Target
{
public:
    explicit Target(const std::string& path);
    ~Target();
    Target(const Target&) = delete;
    Target& operator=(const Target&) = delete;

    /// Answers calls; if it is not set, all return 0. Set it while no call runs.
    std::function<T_PDU_ERROR(const FakeCall&)> Answer;

    /// The calls so far, and forgets them.
    std::vector<SeenCall> TakeCalls();
    /// Names of the calls so far in one line, and forgets them.
    std::string TakeNames();
    /// Keeps no more calls from now on, for tests that make endlessly many.
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

/// A logger library under a configuration of its own; PDUDestruct and unloading come at the end.
class Session
{
public:
    /// `changes` are laid over LogEnabled 1, LogFnCalls 2, LogFlush 1 and the paths of the fake target and
    /// the log folder. A value of "-" leaves the key out.
    explicit Session(Changes changes = {}, const std::string& target = "fake_target");
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /// Writes the configuration anew with other changes, for the next PDUConstruct.
    void Configure(Changes changes);
    /// Writes the configuration file as it stands here.
    void ConfigureText(const std::string& text);

    /// The logger library's functions.
    const CPduDll& Api() const { return *api_; }
    /// The fake target; null for a target that is no fake.
    Target& Fake() { return *target_; }

    T_PDU_ERROR Construct() { return Api().PDUConstruct(nullptr, nullptr); }

    const TemporaryFolder& Folder() const { return folder_; }
    std::filesystem::path LogFolder() const { return folder_.Path() / "logs"; }
    std::string ConfigurationPath() const { return folder_ / "D_PDU_API_CFG.xml"; }
    std::string TargetPath() const { return targetPath_; }

    /// Names of the files of a family in the log folder, sorted.
    std::vector<std::string> LogNames(const std::string& family = "D-PDU_API_Logger") const;
    /// Text of the one API log file, or of all in the order of their names.
    std::string Log() const;
    /// What an action adds to the log, without stamps.
    std::string Logged(const std::function<void()>& action) const;
    /// The diagnostic log of the running logger.
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
