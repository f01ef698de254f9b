#include "platform/child_process.h"

#include <cerrno>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace marvane::platform {

namespace {

void ReadAll(int pipe, std::string& output)
{
    char buffer[4096];
    for (;;) {
        const ssize_t size = read(pipe, buffer, sizeof buffer);
        if (size < 0 && errno == EINTR)
            continue;
        if (size <= 0)
            return;
        output.append(buffer, static_cast<std::size_t>(size));
    }
}

} // namespace

ChildResult RunChild(const std::vector<std::string>& words)
{
    ChildResult result;
    int pipes[2];
    if (pipe2(pipes, O_CLOEXEC) != 0)
        return result;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, pipes[1], STDOUT_FILENO);
    std::vector<char*> arguments;
    arguments.reserve(words.size() + 1);
    for (const std::string& word : words)
        arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    pid_t child = 0;
    result.Started = posix_spawn(&child, words[0].c_str(), &actions, nullptr, arguments.data(), environ) == 0;
    posix_spawn_file_actions_destroy(&actions);
    close(pipes[1]);
    if (result.Started) {
        ReadAll(pipes[0], result.Output);
        int status = 0;
        while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
        }
        result.Ended = WIFEXITED(status);
        result.Status = result.Ended ? WEXITSTATUS(status) : WTERMSIG(status);
    }
    close(pipes[0]);
    return result;
}

std::string ProgramPath()
{
    char path[4096];
    const ssize_t size = readlink("/proc/self/exe", path, sizeof path);
    return size < 0 ? std::string() : std::string(path, static_cast<std::size_t>(size));
}

} // namespace marvane::platform
