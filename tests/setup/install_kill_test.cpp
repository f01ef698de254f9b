// An install that is killed at every change that it asks the system for, and one without the rights for it.
#include <csignal>
#include <cstdint>
#include <functional>

#include <fcntl.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "tests/support/session.h"
#include "tool/setup/folder_findings.h"
#include "tool/setup/install.h"
#include "tool/setup/library_findings.h"

namespace marvane::tool {
namespace {

/// A vendor's library, a root description file that names it, and the options to install in front of it.
class Installation
{
public:
    Installation()
    {
        std::filesystem::create_directory(folder_.Path() / "vendor");
        std::filesystem::copy_file(testing::BuildFolder() + "libSimVci.so",
                                   folder_.Path() / "vendor" / "libSimVci.so");
        testing::WriteFileBytes(Root(), Old());
    }

    const testing::TemporaryFolder& Folder() const { return folder_; }
    std::string Root() const { return folder_ / "root.xml"; }
    std::string Old() const { return RootNaming(folder_ / "vendor/libSimVci.so"); }
    std::string New() const { return RootNaming(folder_ / "copies/SimVci/libMarvane.so"); }

    InstallOptions Options() const
    {
        InstallOptions options;
        options.Roots = {Root()};
        options.Name = "SimVci";
        options.To = folder_ / "copies";
        options.From = testing::BuildFolder();
        options.LogFolder = folder_ / "logs";
        return options;
    }

private:
    static std::string RootNaming(const std::string& library)
    {
        return "<MVCI_PDU_API_ROOT>\n<MVCI_PDU_API><SHORT_NAME>SimVci</SHORT_NAME><LIBRARY_FILE URI='file://" +
               library + "'/></MVCI_PDU_API>\n</MVCI_PDU_API_ROOT>\n";
    }
    testing::TemporaryFolder folder_;
};

/// Whether a system call changes a file or a folder, or opens one for that.
bool IsChange(const user_regs_struct& registers)
{
    switch (registers.orig_rax) {
    case SYS_openat:
        return (registers.rdx & (O_WRONLY | O_RDWR | O_CREAT)) != 0;
    case SYS_write:
    case SYS_fsync:
    case SYS_rename:
    case SYS_unlink:
    case SYS_rmdir:
    case SYS_mkdir:
    case SYS_fchmod:
    case SYS_fchown:
    case SYS_fsetxattr:
        return true;
    default:
        return false;
    }
}

/// Runs `marvane install` and kills it before its `last`th change. False if it ended before that.
bool KilledAtChange(const Installation& installation, int last)
{
    const std::string program = testing::BuildFolder() + "marvane";
    const InstallOptions options = installation.Options();
    const pid_t child = fork();
    if (child == 0) {
        ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
        execl(program.c_str(), "marvane", "install", "SimVci", "--root", options.Roots[0].c_str(), "--to",
              options.To.c_str(), "--from", options.From.c_str(), "--log-dir", options.LogFolder->c_str(),
              "--no-pager", nullptr);
        _exit(127);
    }
    int status = 0;
    waitpid(child, &status, 0);
    ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
    bool isEntry = false;
    int changes = 0;
    for (;;) {
        ptrace(PTRACE_SYSCALL, child, nullptr, nullptr);
        waitpid(child, &status, 0);
        if (WIFEXITED(status) || WIFSIGNALED(status)) {
            EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
            return false;
        }
        if (WSTOPSIG(status) != (SIGTRAP | 0x80))
            continue;
        isEntry = !isEntry;
        user_regs_struct registers = {};
        ptrace(PTRACE_GETREGS, child, nullptr, &registers);
        if (isEntry && IsChange(registers) && ++changes == last) {
            kill(child, SIGKILL);
            waitpid(child, &status, 0);
            return true;
        }
    }
}

TEST(KilledInstall, LeavesTheOldOrTheNewFileAtEveryChange)
{
    int olds = 0;
    int news = 0;
    for (int last = 1;; ++last) {
        const Installation installation;
        if (!KilledAtChange(installation, last))
            break;
        const std::string found = testing::FileBytes(installation.Root());
        EXPECT_TRUE(found == installation.Old() || found == installation.New())
            << "at change " << last << ":\n"
            << found;
        ++(found == installation.New() ? news : olds);
        // Installed again or for the first time, it can be taken away, and the file is the old one.
        Install(installation.Options());
        EXPECT_EQ(testing::FileBytes(installation.Root()), installation.New()) << "at change " << last;
        UninstallOptions uninstall;
        uninstall.To = installation.Options().To;
        Uninstall(uninstall);
        EXPECT_EQ(testing::FileBytes(installation.Root()), installation.Old()) << "at change " << last;
        EXPECT_FALSE(std::filesystem::exists(installation.Folder().Path() / "copies" / "SimVci"))
            << "at change " << last;
    }
    EXPECT_GT(olds, 10);
    EXPECT_GT(news, 0);
}

/// The text that an action returns to another user, in a process of that user.
std::string AsOtherUser(const std::function<std::string()>& action)
{
    int pipes[2];
    if (pipe(pipes) != 0)
        return "no pipe";
    const pid_t child = fork();
    if (child == 0) {
        constexpr unsigned nobody = 65534;
        std::string text;
        if (geteuid() == 0 && (setgid(nobody) != 0 || setuid(nobody) != 0))
            text = "the user can't be changed";
        else
            text = action();
        _exit(write(pipes[1], text.data(), text.size()) == static_cast<ssize_t>(text.size()) ? 0 : 1);
    }
    close(pipes[1]);
    char text[1024];
    const ssize_t size = read(pipes[0], text, sizeof text);
    close(pipes[0]);
    waitpid(child, nullptr, 0);
    return size < 0 ? std::string() : std::string(text, static_cast<std::size_t>(size));
}

/// What Install says to another user.
std::string RefusalAsOtherUser(const InstallOptions& options)
{
    return AsOtherUser([&] {
        try {
            Install(options);
        } catch (const InstallRefused& refused) {
            return std::string(refused.what());
        }
        return std::string("not refused");
    });
}

/// The findings about a log folder, each with its level.
std::string FolderTexts(const std::string& folder)
{
    std::string texts;
    for (const CheckFinding& finding :
         CheckLogFolder(folder, 5, [](const std::string&) { return FolderFacts(); }).All)
        texts += std::to_string(static_cast<int>(finding.Level)) + " " + finding.Text + "\n";
    return texts;
}

TEST(LogFolderOfAnotherUser, CanBeNeitherWrittenNorMade)
{
    const testing::TemporaryFolder folder;
    std::filesystem::permissions(folder.Path(), std::filesystem::perms(0555));
    const std::string path = folder.Path().string();
    EXPECT_EQ(AsOtherUser([&] { return FolderTexts(path); }),
              "3 " + path + "\ncan't be written by this user.\n");
    EXPECT_EQ(AsOtherUser([&] { return FolderTexts(path + "/logs/"); }),
              "3 " + path + "/logs/\ncan't be made by this user: " + path + " can't be written.\n");
    std::filesystem::permissions(folder.Path(), std::filesystem::perms(0755));
}

TEST(FolderThatOthersMayWrite, IsWarnedAbout)
{
    const testing::TemporaryFolder folder;
    const std::string path = folder.Path().string();
    EXPECT_EQ(FolderTexts(path), "0 " + path + "\ncan be written\n");
    std::filesystem::permissions(folder.Path(), std::filesystem::perms(0777));
    EXPECT_EQ(FolderTexts(path), "0 " + path + "\ncan be written\n2 " + path +
                                     "\nEvery user may write to this folder, and change or delete logs.\n");
    const std::string library = folder / "libSimVci.so";
    std::filesystem::copy_file(testing::BuildFolder() + "libSimVci.so", library);
    EXPECT_EQ(CheckTarget(library, OwnMachine()).All.back().Text,
              "Every user may write to its folder: " + path);
}

TEST(InstallWithoutRights, SaysWhichItNeedsAndLeavesNoTrace)
{
    const Installation installation;
    std::filesystem::permissions(installation.Folder().Path(), std::filesystem::perms(0555));
    EXPECT_EQ(RefusalAsOtherUser(installation.Options()), "this needs the right to write to " +
                                                              installation.Folder().Path().string() +
                                                              ": run it as administrator (sudo)");
    std::filesystem::permissions(installation.Folder().Path(), std::filesystem::perms(0755));
    EXPECT_EQ(testing::FileBytes(installation.Root()), installation.Old());
    EXPECT_FALSE(std::filesystem::exists(installation.Folder().Path() / "copies"));
}

TEST(InstallThroughALink, ChangesItsTargetAndKeepsTheLink)
{
    const Installation installation;
    const std::string link = installation.Folder() / "link.xml";
    std::filesystem::create_symlink(installation.Root(), link);
    InstallOptions options = installation.Options();
    options.Roots = {link};
    Install(options);
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    EXPECT_EQ(testing::FileBytes(installation.Root()), installation.New());
    std::filesystem::permissions(installation.Folder().Path(), std::filesystem::perms(0777));
    UninstallOptions uninstall;
    uninstall.To = options.To;
    Uninstall(uninstall);
    EXPECT_EQ(testing::FileBytes(installation.Root()), installation.Old());
    try {
        Install(options);
        FAIL() << "not refused";
    } catch (const InstallRefused& refused) {
        EXPECT_EQ(std::string(refused.what()), link +
                                                   " is a link into a folder that every user may write to: " +
                                                   installation.Folder().Path().string());
    }
}

TEST(InstallThatReplaces, KeepsTheRightsOfTheFile)
{
    const Installation installation;
    std::filesystem::permissions(installation.Root(), std::filesystem::perms(0640));
    Install(installation.Options());
    EXPECT_EQ(std::filesystem::status(installation.Root()).permissions(), std::filesystem::perms(0640));
}

} // namespace
} // namespace marvane::tool
