// What is left of an install that something interrupts.
#include <fstream>

#include "tests/support/install_machine.h"

namespace marvane::tool {
namespace {

using Installing = Machines;

TEST_F(Installing, AFaultAtAnyChangeTakesEverythingBack)
{
    WriteRoot(Entry("One"));
    const std::string before = RootBytes();
    int faults = 0;
    for (int wanted = 1;; ++wanted) {
        int changes = 0;
        FileChanges::BeforeChange = [&] {
            if (++changes == wanted)
                throw InstallRefused("a fault");
        };
        if (Refusal(Options()) != "a fault")
            break;
        ++faults;
        EXPECT_EQ(RootBytes(), before) << "fault at change " << wanted;
        EXPECT_EQ(Traces(), "root.xml\n") << "fault at change " << wanted;
    }
    EXPECT_GE(faults, 10);
}

TEST_F(Installing, APowerFailureAtAnyChangeLeavesTheOldOrTheNewFile)
{
    int failures = 0;
    for (int wanted = 1;; ++wanted) {
        WriteRoot(Entry("One"));
        const std::string before = RootBytes();
        int changes = 0;
        FileChanges::Abandoned = true;
        FileChanges::BeforeChange = [&] {
            if (++changes == wanted)
                throw InstallRefused("a power failure");
        };
        const bool failed = Refusal(Options()) == "a power failure";
        FileChanges::BeforeChange = nullptr;
        FileChanges::Abandoned = false;
        if (!failed)
            break;
        ++failures;
        EXPECT_EQ(RootBytes(), before) << "at change " << wanted;
        // The next run finishes what was left, and it can be taken away again.
        Install(Options());
        EXPECT_NE(RootBytes(), before);
        Uninstalled();
        EXPECT_EQ(RootBytes(), before) << "at change " << wanted;
        std::filesystem::remove_all(folder.Path() / "copies");
    }
    EXPECT_GE(failures, 10);
}

TEST_F(Installing, RefusesAFileThatOthersChangeMeanwhile)
{
    WriteRoot(Entry("One"));
    int changes = 0;
    FileChanges::BeforeChange = [&] {
        // Each step in turn; the last look at the file is one of them.
        ++changes;
        std::ofstream(root, std::ios::app) << " ";
    };
    EXPECT_EQ(Refusal(Options()), "DIR/root.xml: the file was changed by another program");
    FileChanges::BeforeChange = nullptr;
    EXPECT_EQ(Traces(), "root.xml\n");
    EXPECT_TRUE(RootBytes().ends_with(std::string(static_cast<std::size_t>(changes), ' ')));
}

} // namespace
} // namespace marvane::tool
