#include "platform/child_process.h"

#include "platform/utf8_windows.h"

namespace marvane::platform {

namespace {

/// An argument in quotes, as the C runtime of the child takes it apart.
std::wstring Quoted(const std::wstring& word)
{
    std::wstring quoted = L"\"";
    std::size_t backslashes = 0;
    for (const wchar_t character : word) {
        if (character == L'"')
            quoted.append(backslashes + 1, L'\\');
        backslashes = character == L'\\' ? backslashes + 1 : 0;
        quoted += character;
    }
    return quoted.append(backslashes, L'\\') + L"\"";
}

void ReadAll(HANDLE pipe, std::string& output)
{
    char buffer[4096];
    DWORD size = 0;
    while (ReadFile(pipe, buffer, sizeof buffer, &size, nullptr) && size != 0)
        output.append(buffer, size);
}

} // namespace

ChildResult RunChild(const std::vector<std::string>& words)
{
    ChildResult result;
    std::wstring line;
    for (const std::string& word : words)
        line += (line.empty() ? L"" : L" ") + Quoted(WideFromUtf8(word));
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    HANDLE reading = nullptr;
    HANDLE writing = nullptr;
    if (!CreatePipe(&reading, &writing, &inherited, 0))
        return result;
    SetHandleInformation(reading, HANDLE_FLAG_INHERIT, 0);
    STARTUPINFOW start = {};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdOutput = writing;
    start.hStdError = GetStdHandle(STD_ERROR_HANDLE);
    PROCESS_INFORMATION process = {};
    result.Started = CreateProcessW(WideFromUtf8(words[0]).c_str(), line.data(), nullptr, nullptr, TRUE, 0,
                                    nullptr, nullptr, &start, &process);
    CloseHandle(writing);
    if (result.Started) {
        ReadAll(reading, result.Output);
        WaitForSingleObject(process.hProcess, INFINITE);
        DWORD status = 0;
        GetExitCodeProcess(process.hProcess, &status);
        result.Status = static_cast<int>(status);
        // Exceptions end a process with codes of this kind.
        result.Ended = status < 0xC0000000;
        CloseHandle(process.hThread);
        CloseHandle(process.hProcess);
    }
    CloseHandle(reading);
    return result;
}

std::string ProgramPath()
{
    std::wstring path(32768, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    return Utf8FromWide(path);
}

} // namespace marvane::platform
