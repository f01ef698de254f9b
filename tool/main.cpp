#include "platform/terminal.h"
#include "tool/commands/program.h"

int main(int count, char** values)
{
    marvane::platform::PrepareStreams();
    std::vector<std::string> words = marvane::platform::CommandLineWords(count, values);
    if (!words.empty())
        words.erase(words.begin());
    return marvane::tool::RunProgram(words);
}
