#include "tests/support/unread_input.h"

#include <stdexcept>
#include <utility>

#include <fcntl.h>
#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

namespace marvane::testing {

namespace {

constexpr int StandardInput = 0;

#ifdef _WIN32

int MakePipe(int* ends)
{
    return _pipe(ends, 4096, _O_BINARY | _O_NOINHERIT);
}

#else

int MakePipe(int* ends)
{
    return pipe2(ends, O_CLOEXEC);
}

#endif

} // namespace

UnreadInput::UnreadInput() : former_(dup(StandardInput))
{
    int ends[2];
    const auto length = static_cast<unsigned>(Answers().size());
    if (former_ < 0 || MakePipe(ends) != 0 || dup2(ends[0], StandardInput) < 0 ||
        write(ends[1], Answers().data(), length) != static_cast<int>(length))
        throw std::runtime_error("no pipe for standard input");
    close(ends[0]);
    writeEnd_ = ends[1];
}

UnreadInput::~UnreadInput()
{
    dup2(former_, StandardInput);
    close(former_);
    CloseOtherEnd();
}

void UnreadInput::CloseOtherEnd()
{
    if (writeEnd_ >= 0)
        close(std::exchange(writeEnd_, -1));
}

std::string UnreadInput::Answers()
{
    std::string answers;
    for (int i = 0; i < 100; ++i)
        answers += "yes\n";
    return answers;
}

std::string UnreadInput::Left()
{
    CloseOtherEnd();
    std::string left;
    char part[64];
    for (auto count = read(StandardInput, part, sizeof part); count > 0;
         count = read(StandardInput, part, sizeof part))
        left.append(part, static_cast<std::size_t>(count));
    return left;
}

} // namespace marvane::testing
