#include "platform/replace_file.h"

#include <memory>

#include "platform/utf8_windows.h"

#include <aclapi.h>

namespace marvane::platform {

namespace {

std::string LastError()
{
    return SystemMessage(GetLastError());
}

class OpenHandle
{
public:
    explicit OpenHandle(HANDLE handle) : handle_(handle) {}
    ~OpenHandle()
    {
        if (IsOpen())
            CloseHandle(handle_);
    }
    OpenHandle(const OpenHandle&) = delete;
    OpenHandle& operator=(const OpenHandle&) = delete;
    bool IsOpen() const { return handle_ != INVALID_HANDLE_VALUE; }
    HANDLE Get() const { return handle_; }

private:
    HANDLE handle_;
};

bool WriteAll(HANDLE file, std::string_view bytes)
{
    while (!bytes.empty()) {
        const DWORD part = static_cast<DWORD>(bytes.size() < (1u << 20) ? bytes.size() : 1u << 20);
        DWORD written = 0;
        if (!WriteFile(file, bytes.data(), part, &written, nullptr))
            return false;
        bytes.remove_prefix(written);
    }
    return true;
}

std::string Create(const std::wstring& path, std::string_view bytes)
{
    std::string failure;
    {
        const OpenHandle file(
            CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
        if (!file.IsOpen())
            return LastError();
        if (!WriteAll(file.Get(), bytes) || !FlushFileBuffers(file.Get()))
            failure = LastError();
    }
    if (!failure.empty())
        DeleteFileW(path.c_str());
    return failure;
}

/// True if an entry of a list of rights lets one of the groups that hold every user create files.
bool LetsEverybodyWrite(const ACCESS_ALLOWED_ACE& entry)
{
    constexpr DWORD writing = FILE_ADD_FILE | GENERIC_WRITE | GENERIC_ALL;
    if (entry.Header.AceType != ACCESS_ALLOWED_ACE_TYPE || (entry.Header.AceFlags & INHERIT_ONLY_ACE) != 0 ||
        (entry.Mask & writing) == 0)
        return false;
    PSID const user = const_cast<DWORD*>(&entry.SidStart);
    return IsWellKnownSid(user, WinWorldSid) || IsWellKnownSid(user, WinAuthenticatedUserSid) ||
           IsWellKnownSid(user, WinBuiltinUsersSid);
}

} // namespace

std::string CreateNewFile(const std::string& path, std::string_view bytes)
{
    return Create(WideFromUtf8(path), bytes);
}

std::string ReplaceFileContents(const std::string& path, std::string_view bytes,
                                const std::function<bool()>& unchanged)
{
    const std::wstring target = WideFromUtf8(path);
    const DWORD attributes = GetFileAttributesW(target.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES)
        return LastError();
    if ((attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT)) != 0)
        return "not a regular file";
    // Left by a run that was interrupted.
    const std::wstring beside = target + WideFromUtf8(std::string(UnfinishedMark));
    DeleteFileW(beside.c_str());
    std::string failure = Create(beside, bytes);
    if (!failure.empty())
        return failure;
    const auto remove = [](const std::wstring* file) { DeleteFileW(file->c_str()); };
    const std::unique_ptr<const std::wstring, decltype(remove)> removed(&beside, remove);
    if (!unchanged())
        return "the file was changed by another program";
    if (!ReplaceFileW(target.c_str(), beside.c_str(), nullptr, 0, nullptr, nullptr))
        return LastError();
    return {};
}

std::string RenameFile(const std::string& from, const std::string& to)
{
    if (!MoveFileExW(WideFromUtf8(from).c_str(), WideFromUtf8(to).c_str(),
                     MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
        return LastError();
    return {};
}

bool CanWriteInFolder(const std::string& folder)
{
    const OpenHandle handle(CreateFileW(WideFromUtf8(folder).c_str(), FILE_ADD_FILE,
                                        FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                        OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    return handle.IsOpen();
}

bool OthersMayWriteInFolder(const std::string& folder)
{
    PACL rights = nullptr;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (GetNamedSecurityInfoW(WideFromUtf8(folder).c_str(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION,
                              nullptr, nullptr, &rights, nullptr, &descriptor) != ERROR_SUCCESS)
        return false;
    bool others = rights == nullptr;
    for (DWORD i = 0; rights && i < rights->AceCount && !others; ++i) {
        void* entry = nullptr;
        others = GetAce(rights, i, &entry) && LetsEverybodyWrite(*static_cast<ACCESS_ALLOWED_ACE*>(entry));
    }
    LocalFree(descriptor);
    return others;
}

} // namespace marvane::platform
