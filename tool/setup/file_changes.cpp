#include "tool/setup/file_changes.h"

#include "platform/replace_file.h"
#include "tool/setup/install.h"
#include "tool/setup/setup_files.h"

namespace marvane::tool {

namespace fs = std::filesystem;

namespace {

void Announce()
{
    if (FileChanges::BeforeChange)
        FileChanges::BeforeChange();
}

void Require(const std::string& failure, const std::string& path)
{
    if (!failure.empty())
        throw InstallRefused(path + ": " + failure);
}

void RemoveQuietly(const std::string& path)
{
    std::error_code failed;
    fs::remove(FilePath(path), failed);
}

/// A name for a file that is in use: earlier ones may be in use still.
std::string OldName(const std::string& path)
{
    std::string old = path + OldMark;
    for (int number = 2; IsFile(old); ++number)
        old = path + "." + std::to_string(number) + OldMark;
    return old;
}

} // namespace

std::function<void()> FileChanges::BeforeChange;
bool FileChanges::Abandoned = false;

FileChanges::~FileChanges()
{
    if (Abandoned)
        return;
    for (; !undo_.empty(); undo_.pop_back())
        undo_.back()();
}

void FileChanges::MakeFolders(const std::string& path)
{
    std::vector<fs::path> missing;
    for (fs::path folder = FilePath(path); !folder.empty() && !fs::exists(folder);
         folder = folder.parent_path())
        missing.push_back(folder);
    for (; !missing.empty(); missing.pop_back()) {
        Announce();
        const fs::path folder = missing.back();
        std::error_code failed;
        fs::create_directory(folder, failed);
        if (failed)
            throw InstallRefused(PathText(folder) + ": " + failed.message());
        undo_.emplace_back([folder] { RemoveQuietly(PathText(folder)); });
    }
}

void FileChanges::Create(const std::string& path, std::string_view bytes)
{
    const std::string unfinished = std::string(path).append(platform::UnfinishedMark);
    RemoveQuietly(unfinished); // Of a run that was interrupted.
    Announce();
    Require(platform::CreateNewFile(unfinished, bytes), path);
    undo_.emplace_back([unfinished] { RemoveQuietly(unfinished); });
    Announce();
    if (IsFile(path))
        throw InstallRefused(path + ": exists already");
    Require(platform::RenameFile(unfinished, path), path);
    undo_.emplace_back([path] { RemoveQuietly(path); });
}

void FileChanges::Replace(const std::string& path, const std::string& old, std::string_view bytes)
{
    Announce();
    const auto isUnchanged = [&] {
        Announce();
        return ReadFileBytes(path) == old;
    };
    Require(platform::ReplaceFileContents(path, bytes, isUnchanged), path);
    undo_.emplace_back([path, old] { platform::ReplaceFileContents(path, old, [] { return true; }); });
}

void FileChanges::ReplaceInUse(const std::string& path, std::string_view bytes)
{
    const std::string old = OldName(path);
    Announce();
    Require(platform::RenameFile(path, old), path);
    undo_.emplace_back([path, old] { platform::RenameFile(old, path); });
    Create(path, bytes);
}

bool RemoveOrRename(const std::string& path)
{
    RemoveQuietly(path);
    if (!IsFile(path))
        return true;
    platform::RenameFile(path, OldName(path));
    return false;
}

void RemoveOldFiles(const std::string& folder)
{
    for (const std::string& name : NamesIn(folder))
        if (name.ends_with(OldMark))
            RemoveQuietly(PathText(FilePath(folder) / FilePath(name)));
}

} // namespace marvane::tool
