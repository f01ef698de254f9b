#include "tool/setup/root_sources.h"

#include <gtest/gtest.h>

#include "platform/child_process.h"
#include "platform/environment.h"
#include "platform/files.h"
#include "platform/registry.h"
#include "tests/support/temporary_folder.h"

namespace marvane::tool {
namespace {

/// "path (origin)" of each root description file of the machine.
std::string Sources()
{
    std::string sources;
    for (const RootSource& source : RootSources({}))
        sources += source.Path + " (" + source.Origin + ")\n";
    return sources;
}

/// The value of one view of the registry, set for the length of a test; then the machine has its own again.
class RegisteredRoot
{
public:
    RegisteredRoot(bool isWide, const std::string& path)
        : view_(isWide ? "/reg:64" : "/reg:32"),
          before_(platform::MachineRegistryText(isWide ? platform::RegistryView::Bits64
                                                       : platform::RegistryView::Bits32,
                                                "SOFTWARE\\D-PDU API", Value))
    {
        Set(path);
    }
    ~RegisteredRoot()
    {
        if (before_)
            Set(*before_);
        else
            Registry({"delete", Key, "/v", Value, "/f", view_});
    }

private:
    static constexpr const char* Key = "HKLM\\SOFTWARE\\D-PDU API";
    static constexpr const char* Value = "Root File";

    void Set(const std::string& path) const
    {
        Registry({"add", Key, "/v", Value, "/t", "REG_SZ", "/d", path, "/f", view_});
    }
    static void Registry(std::vector<std::string> words)
    {
        words.insert(words.begin(), platform::ExpandEnvironment("%SystemRoot%\\system32\\reg.exe"));
        EXPECT_EQ(platform::RunChild(words).Status, 0);
    }
    std::string view_;
    std::optional<std::string> before_;
};

TEST(RootSourcesGiven, AreTheOnlyOnes)
{
    const testing::TemporaryFolder folder;
    const std::vector<RootSource> sources = RootSources({folder / "root.xml"});
    ASSERT_EQ(sources.size(), 1u);
    EXPECT_EQ(sources[0].Path, folder / "root.xml");
    EXPECT_EQ(sources[0].Origin, "--root");
}

TEST(RootSourcesOfTheRegistry, AreThoseOfBothViews)
{
    if (platform::PathSeparator != '\\')
        GTEST_SKIP() << "there is no registry here";
    const testing::TemporaryFolder folder;
    const RegisteredRoot wide(true, folder / "wide.xml");
    {
        const RegisteredRoot narrow(false, folder / "narrow.xml");
        EXPECT_EQ(Sources(), (folder / "wide.xml") + " (HKLM\\SOFTWARE\\D-PDU API, 64-bit view)\n" +
                                 (folder / "narrow.xml") + " (HKLM\\SOFTWARE\\D-PDU API, 32-bit view)\n");
    }
    const RegisteredRoot same(false, folder / "wide.xml");
    EXPECT_EQ(Sources(), (folder / "wide.xml") + " (HKLM\\SOFTWARE\\D-PDU API, both views)\n");
}

} // namespace
} // namespace marvane::tool
