#include "bench/session.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "platform/files.h"

namespace marvane::bench {

namespace {

std::string BuildFolder()
{
    const std::filesystem::path own = std::filesystem::absolute(platform::OwnModulePath(4096).Path);
    return own.parent_path().lexically_normal().string() + platform::PathSeparator;
}

/// File name of a library, with the same prefix and extension as the logger library's.
std::string LibraryName(const std::string& name)
{
    const std::string own = platform::OwnLibraryName;
    const std::size_t at = own.find("Marvane");
    return own.substr(0, at) + name + own.substr(at + 7);
}

platform::Library Load(const std::string& name)
{
    const platform::LoadedLibrary loaded = platform::LoadTargetLibrary(BuildFolder() + LibraryName(name));
    if (!loaded.Handle) {
        std::fprintf(stderr, "bench: %s\n", loaded.Error.c_str());
        std::exit(1);
    }
    return loaded.Handle;
}

platform::Library Target()
{
    static const platform::Library target = Load("bench_target");
    return target;
}

std::string ConfigurationText(const Settings& settings, const std::string& logFolder)
{
    const auto line = [](const std::string& key, const std::string& type, const std::string& value) {
        return "<Attribute Name=\"" + key + "\" Type=\"" + type + "\" Value=\"" + value + "\"/>\n";
    };
    std::string text = "<?xml version=\"1.0\"?>\n<D_PDU_API_CFG>\n" +
                       line("LogFileDir", "String", logFolder) +
                       line("InstalledPath", "String", BuildFolder()) +
                       line("PDUAPILibDll", "String", LibraryName("bench_target"));
    for (const auto& [key, value] : settings)
        text += line(key, "UNUM32", std::to_string(value));
    return text + "</D_PDU_API_CFG>\n";
}

} // namespace

const CPduDll& BareApi()
{
    static const CPduDll api(Target());
    return api;
}

decltype(&PDUBenchEventCallback) RegisteredEventCallback()
{
    static const auto function = reinterpret_cast<decltype(&PDUBenchEventCallback)>(
        platform::FindFunction(Target(), "PDUBenchEventCallback"));
    return function;
}

decltype(&PDUBenchLogCallback) RegisteredLogCallback()
{
    static const auto function = reinterpret_cast<decltype(&PDUBenchLogCallback)>(
        platform::FindFunction(Target(), "PDUBenchLogCallback"));
    return function;
}

Session::Session(const Settings& settings)
    : configuration_("PDU_CFG_FILE", folder_ / "D_PDU_API_CFG.xml"), temp_("TEMP", folder_.Path().string()),
      appData_("APPDATA", folder_.Path().string())
{
    Target();
    testing::WriteFileBytes(folder_.Path() / "D_PDU_API_CFG.xml",
                            ConfigurationText(settings, folder_ / "logs"));
    library_ = Load("Marvane");
    api_ = std::make_unique<CPduDll>(library_);
    if (api_->PDUConstruct(nullptr, nullptr) != PDU_STATUS_NOERROR) {
        std::fprintf(stderr, "bench: PDUConstruct failed\n");
        std::exit(1);
    }
}

Session::~Session()
{
    api_->PDUDestruct();
    platform::UnloadLibrary(library_);
}

std::string Session::LogText() const
{
    std::string text;
    for (const auto& entry : std::filesystem::directory_iterator(folder_.Path() / "logs"))
        text += testing::FileText(entry.path());
    return text;
}

} // namespace marvane::bench
