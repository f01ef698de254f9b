#include "platform/child_process.h"

#include <algorithm>
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

/// The environment of this process with changes, as NAME=VALUE.
std::vector<std::string> ChangedEnvironment(const EnvironmentChanges& changes)
{
    std::vector<std::string> variables;
    for (char** variable = environ; *variable; ++variable) {
        const std::string text = *variable;
        const bool isChanged = std::any_of(changes.begin(), changes.end(), [&](const auto& change) {
            return text.starts_with(change.first + "=");
        });
        if (!isChanged)
            variables.push_back(text);
    }
    for (const auto& [name, value] : changes)
        if (value)
            variables.push_back(name + "=" + *value);
    return variables;
}

/// The strings as the system takes them: pointers, a null one at the end.
std::vector<char*> Pointers(const std::vector<std::string>& strings)
{
    std::vector<char*> pointers;
    pointers.reserve(strings.size() + 1);
    for (const std::string& string : strings)
        pointers.push_back(const_cast<char*>(string.c_str()));
    pointers.push_back(nullptr);
    return pointers;
}

} // namespace

ChildResult RunChild(const std::vector<std::string>& words, const EnvironmentChanges& changes)
{
    ChildResult result;
    int pipes[2];
    if (pipe2(pipes, O_CLOEXEC) != 0)
        return result;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, pipes[1], STDOUT_FILENO);
    const std::vector<std::string> variables = ChangedEnvironment(changes);
    pid_t child = 0;
    result.Started = posix_spawn(&child, words[0].c_str(), &actions, nullptr, Pointers(words).data(),
                                 Pointers(variables).data()) == 0;
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
