#include "platform/terminal.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace marvane::platform {

namespace {

pid_t PagerProcess = 0;

int DescriptorOf(Stream stream)
{
    return stream == Stream::Output ? STDOUT_FILENO : STDERR_FILENO;
}

/// The child's side of StartPager: becomes the pager.
[[noreturn]] void BecomePager(const int (&ends)[2])
{
    dup2(ends[0], STDIN_FILENO);
    close(ends[0]);
    close(ends[1]);
    std::signal(SIGPIPE, SIG_DFL);
    // Leave at once if all fits on a screen, pass colours on, leave the screen as it is.
    setenv("LESS", "FRX", 0);
    const char* const chosen = std::getenv("PAGER");
    execlp("sh", "sh", "-c", chosen && *chosen ? chosen : "less", nullptr);
    _exit(127);
}

bool ThereIsAPager()
{
    const char* const chosen = std::getenv("PAGER");
    if (chosen && *chosen)
        return std::string_view(chosen) != "cat";
    return std::system("command -v less >/dev/null 2>&1") == 0;
}

} // namespace

bool IsTerminal(Stream stream)
{
    return isatty(DescriptorOf(stream)) == 1;
}

bool InputIsTerminal()
{
    return isatty(STDIN_FILENO) == 1;
}

unsigned TerminalColumns(Stream stream)
{
    winsize size = {};
    return ioctl(DescriptorOf(stream), TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

void PrepareStreams()
{
    std::signal(SIGPIPE, SIG_IGN);
}

bool TakesColour(Stream stream)
{
    return IsTerminal(stream);
}

std::vector<std::string> CommandLineWords(int count, char** values)
{
    return {values, values + count};
}

bool WriteStream(Stream stream, std::string_view bytes, bool& closed)
{
    closed = false;
    while (!bytes.empty()) {
        const ssize_t written = write(DescriptorOf(stream), bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0) {
            closed = errno == EPIPE;
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

bool StartPager()
{
    int ends[2];
    if (!ThereIsAPager() || pipe(ends) != 0)
        return false;
    PagerProcess = fork();
    if (PagerProcess == 0)
        BecomePager(ends);
    close(ends[0]);
    if (PagerProcess > 0)
        dup2(ends[1], STDOUT_FILENO);
    close(ends[1]);
    return PagerProcess > 0;
}

void FinishPager()
{
    if (PagerProcess <= 0)
        return;
    close(STDOUT_FILENO);
    while (waitpid(PagerProcess, nullptr, 0) < 0 && errno == EINTR) {
    }
    PagerProcess = 0;
}

bool ColourIsUnwanted()
{
    const char* const unwanted = std::getenv("NO_COLOR");
    const char* const terminal = std::getenv("TERM");
    return (unwanted && *unwanted) || !terminal || std::string_view(terminal) == "dumb";
}

} // namespace marvane::platform
