#include "platform/child_process.h"

#include <cwchar>

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

/// Whether "NAME=VALUE" sets one of the changed variables. Names are compared without case.
bool SetsOneOf(const wchar_t* variable, const EnvironmentChanges& changes)
{
    for (const auto& [name, value] : changes) {
        const std::wstring begin = WideFromUtf8(name) + L"=";
        const int length = static_cast<int>(begin.size());
        if (std::wcslen(variable) >= begin.size() &&
            CompareStringOrdinal(variable, length, begin.c_str(), length, TRUE) == CSTR_EQUAL)
            return true;
    }
    return false;
}

/// The environment block of this process with changes.
std::wstring ChangedEnvironment(const EnvironmentChanges& changes)
{
    std::wstring block;
    wchar_t* const own = GetEnvironmentStringsW();
    for (const wchar_t* variable = own; *variable != L'\0'; variable += std::wcslen(variable) + 1)
        if (!SetsOneOf(variable, changes))
            block.append(variable).push_back(L'\0');
    FreeEnvironmentStringsW(own);
    for (const auto& [name, value] : changes)
        if (value)
            block.append(WideFromUtf8(name + "=" + *value)).push_back(L'\0');
    block.push_back(L'\0');
    return block;
}

} // namespace

ChildResult RunChild(const std::vector<std::string>& words, const EnvironmentChanges& changes)
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
    result.Started = CreateProcessW(WideFromUtf8(words[0]).c_str(), line.data(), nullptr, nullptr, TRUE,
                                    CREATE_UNICODE_ENVIRONMENT, ChangedEnvironment(changes).data(), nullptr,
                                    &start, &process);
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
