#include "tests/support/session.h"

#include <algorithm>
#include <cstdio>
#include <stdexcept>

#include <gtest/gtest.h>

#include "line/stamp.h"
#include "platform/files.h"

namespace marvane::testing {

namespace {

bool IsText(const std::string& key)
{
    return key == "LogFileDir" || std::any_of(StringKeyNames.begin(), StringKeyNames.end(),
                                              [&](const auto& known) { return key == known.Name; });
}

std::string ConfigurationText(const Settings& settings)
{
    std::string text = "<?xml version=\"1.0\"?>\n<D_PDU_API_CFG>\n";
    for (const auto& [key, value] : settings)
        if (value != "-")
            text += "\t<Attribute Name=\"" + key + "\" Type=\"" + (IsText(key) ? "String" : "UNUM32") +
                    "\" Value=\"" + value + "\"/>\n";
    return text + "</D_PDU_API_CFG>\n";
}

} // namespace

std::string BuildFolder()
{
    // The program may have been started with a relative path.
    const std::string own =
        std::filesystem::absolute(platform::OwnModulePath(4096).Path).lexically_normal().string();
    return own.substr(0, own.rfind(platform::PathSeparator) + 1);
}

std::string LibraryName(const std::string& name)
{
    // Prefix and extension are those of the logger library.
    const std::string own = platform::OwnLibraryName;
    const std::size_t at = own.find("Marvane");
    return own.substr(0, at) + name + own.substr(at + 7);
}

std::string PointerText(const void* pointer)
{
    char text[40];
    if (platform::PathSeparator == '/')
        std::snprintf(text, sizeof text, "%8p", pointer);
    else
        std::snprintf(text, sizeof text, "%0*llX", static_cast<int>(2 * sizeof pointer),
                      static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(pointer)));
    return text;
}

std::string WithoutStamps(const std::string& text)
{
    const std::string_view rest = text;
    std::string stripped;
    for (std::size_t at = 0; at < text.size();)
        if (ParseStamp(rest.substr(at))) {
            stripped += "{stamp} ";
            at += StampLength;
        } else
            stripped += text[at++];
    return stripped;
}

Target::Target(const std::string& path)
{
    const platform::LoadedLibrary loaded = platform::LoadTargetLibrary(path);
    if (!loaded.Handle)
        throw std::runtime_error("the fake target does not load: " + loaded.Error);
    library_ = loaded.Handle;
    const auto control =
        reinterpret_cast<GetFakeTargetControl_t>(platform::FindFunction(library_, "PDUFakeTargetControl"))();
    control->Context = this;
    control->OnCall = OnCall;
}

Target::~Target()
{
    platform::UnloadLibrary(library_);
}

T_PDU_ERROR Target::OnCall(void* context, const FakeCall* call)
{
    auto& self = *static_cast<Target*>(context);
    if (self.keeps_) {
        const std::lock_guard hold(self.mutex_);
        self.calls_.push_back({call->Function, {call->Arguments, call->Arguments + call->Count}});
    }
    return self.Answer ? self.Answer(*call) : PDU_STATUS_NOERROR;
}

std::vector<SeenCall> Target::TakeCalls()
{
    const std::lock_guard hold(mutex_);
    return std::exchange(calls_, {});
}

std::string Target::TakeNames()
{
    std::string names;
    for (const SeenCall& call : TakeCalls())
        names += (names.empty() ? "" : " ") + call.Function;
    return names;
}

Session::Session(Changes changes, const std::string& target, const std::string& library)
    : targetPath_(BuildFolder()), targetName_(LibraryName(target))
{
    const std::string folder = folder_.Path().string();
    for (const char* name : {"TEMP", "TMP", "APPDATA"})
        environment_.push_back(std::make_unique<EnvironmentValue>(name, folder));
    environment_.push_back(std::make_unique<EnvironmentValue>("PDU_CFG_FILE", ConfigurationPath()));
    Configure(changes);
    if (target.starts_with("fake_target"))
        target_ = std::make_unique<Target>(targetPath_ + targetName_);
    const platform::LoadedLibrary loaded = platform::LoadTargetLibrary(BuildFolder() + LibraryName(library));
    if (!loaded.Handle)
        throw std::runtime_error("the logger library does not load: " + loaded.Error);
    library_ = loaded.Handle;
    api_ = std::make_unique<CPduDll>(library_);
}

Session::~Session()
{
    // The answer of the test may refer to objects that no longer exist.
    if (target_)
        target_->Answer = nullptr;
    Api().PDUDestruct();
#ifndef MARVANE_SANITIZED
    // A leak checker finds what the library keeps for good only while the library is loaded.
    platform::UnloadLibrary(library_);
#endif
}

void* Session::FindFunction(const char* name) const
{
    return platform::FindFunction(library_, name);
}

void Session::Configure(Changes changes)
{
    Settings settings = {{"LogEnabled", "1"},
                         {"LogFnCalls", "2"},
                         {"LogFlush", "1"},
                         {"InstalledPath", targetPath_},
                         {"PDUAPILibDll", targetName_},
                         {"LogFileDir", LogFolder().string()}};
    for (const auto& [key, value] : changes)
        settings[key] = value;
    ConfigureText(ConfigurationText(settings));
}

void Session::ConfigureText(const std::string& text)
{
    WriteFileBytes(ConfigurationPath(), text);
}

std::vector<std::string> Session::LogNames(const std::string& family) const
{
    std::vector<std::string> names;
    std::error_code none;
    for (const auto& entry : std::filesystem::directory_iterator(LogFolder(), none))
        if (entry.path().filename().string().starts_with(family))
            names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

std::string Session::Log() const
{
    std::string text;
    for (const std::string& name : LogNames())
        text += FileText(LogFolder() / name);
    return text;
}

std::string Session::Logged(const std::function<void()>& action) const
{
    // Only new text is read: some tests log thousands of calls.
    std::map<std::string, std::uintmax_t> before;
    for (const std::string& name : LogNames())
        before[name] = std::filesystem::file_size(LogFolder() / name);
    action();
    std::string text;
    for (const std::string& name : LogNames())
        text += FileText(LogFolder() / name, before[name]);
    return WithoutStamps(text);
}

} // namespace marvane::testing
