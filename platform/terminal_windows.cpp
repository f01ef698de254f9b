#include "platform/terminal.h"

#include <cstdio>
#include <cstdlib>

#include <windows.h>

#include <fcntl.h>
#include <io.h>
#include <shellapi.h>

namespace marvane::platform {

namespace {

HANDLE HandleOf(Stream stream)
{
    return GetStdHandle(stream == Stream::Output ? STD_OUTPUT_HANDLE : STD_ERROR_HANDLE);
}

std::string Utf8(const wchar_t* text)
{
    const int size = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
    std::string bytes(size > 0 ? static_cast<std::size_t>(size) : 1, '\0');
    WideCharToMultiByte(CP_UTF8, 0, text, -1, bytes.data(), size, nullptr, nullptr);
    bytes.pop_back(); // The terminator.
    return bytes;
}

/// The console keeps its code page after the process has ended, so it is put back.
void RestoreCodePage(UINT codePage)
{
    static UINT former;
    former = codePage;
    std::atexit([] { SetConsoleOutputCP(former); });
}

} // namespace

bool IsTerminal(Stream stream)
{
    DWORD mode = 0;
    return GetConsoleMode(HandleOf(stream), &mode) != 0;
}

bool InputIsTerminal()
{
    DWORD mode = 0;
    return GetConsoleMode(GetStdHandle(STD_INPUT_HANDLE), &mode) != 0;
}

unsigned TerminalColumns(Stream stream)
{
    CONSOLE_SCREEN_BUFFER_INFO info = {};
    if (!GetConsoleScreenBufferInfo(HandleOf(stream), &info))
        return 0;
    return static_cast<unsigned>(info.srWindow.Right - info.srWindow.Left + 1);
}

void PrepareStreams()
{
    // Else CR LF becomes LF, and a byte 1A ends the input.
    _setmode(_fileno(stdin), _O_BINARY);
    const UINT codePage = GetConsoleOutputCP();
    if (codePage != 0 && codePage != CP_UTF8 && SetConsoleOutputCP(CP_UTF8))
        RestoreCodePage(codePage);
}

bool TakesColour(Stream stream)
{
    DWORD mode = 0;
    return GetConsoleMode(HandleOf(stream), &mode) &&
           SetConsoleMode(HandleOf(stream), mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
}

std::vector<std::string> CommandLineWords(int, char**)
{
    // The narrow arguments have lost what the code page does not hold.
    int count = 0;
    wchar_t** const wide = CommandLineToArgvW(GetCommandLineW(), &count);
    std::vector<std::string> words;
    for (int i = 0; wide && i < count; ++i)
        words.push_back(Utf8(wide[i]));
    LocalFree(wide);
    return words;
}

bool WriteStream(Stream stream, std::string_view bytes, bool& closed)
{
    constexpr std::size_t most = 32 * 1024; // A console refuses more at once.
    closed = false;
    while (!bytes.empty()) {
        DWORD written = 0;
        const auto size = static_cast<DWORD>(bytes.size() < most ? bytes.size() : most);
        if (!WriteFile(HandleOf(stream), bytes.data(), size, &written, nullptr)) {
            const DWORD error = GetLastError();
            closed = error == ERROR_BROKEN_PIPE || error == ERROR_NO_DATA;
            return false;
        }
        if (written == 0)
            return false; // No error, and no end of it either.
        bytes.remove_prefix(written);
    }
    return true;
}

bool StartPager()
{
    return false;
}

void FinishPager() {}

bool ColourIsUnwanted()
{
    return GetEnvironmentVariableA("NO_COLOR", nullptr, 0) > 1;
}

} // namespace marvane::platform
