#include "logger/log/log_files.h"

#include <chrono>
#include <thread>

#include "config/paths.h"
#include "line/file_names.h"
#include "logger/diagnostics/CMutexWindows.h"
#include "logger/log/log_trimming.h"
#include "logger/state/process_texts.h"
#include "logger/state/settings.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/narrow_text.h"
#include "platform/process.h"

namespace marvane {

LogStream ApiLogFile = nullptr;
LogStream CommsLogFile = nullptr;
std::atomic<bool> ReopeningFailed = false;

namespace {

// The folder is created once in a process: one that is deleted later is not created again.
std::atomic<bool> LogDirectoryReady = false;

template <class Action> void ForEachOpenFile(Action action)
{
    for (const LogStream* stream : {&ApiLogFile, &CommsLogFile})
        if (LogFile* const file = *stream)
            action(*file);
}

/// Flushes the files when this library is unloaded or the process exits, whether the log was closed or not.
struct WriteOutAtEnd
{
    ~WriteOutAtEnd()
    {
        LogMutexHold hold;
        LogFile::EndBuffering();
        ForEachOpenFile([](LogFile& file) { file.Flush(); });
    }
} const AtEnd;

void PrepareForFork()
{
    LogMutex.Lock();
    ForEachOpenFile([](LogFile& file) { file.Share(); });
}

void LeaveFork()
{
    LogMutex.Unlock();
}

// A forked child must not write buffered text of its parent a second time, nor find the log locked.
const bool ForksSeen = (platform::CallAtFork(PrepareForFork, LeaveFork), true);

} // namespace

bool MakeLogDirectory(const std::string& directory)
{
    bool made = true;
    // In UTF-8 a part of a path has the encoding of the whole.
    const std::string path = platform::Utf8FromNarrow(directory);
    for (const std::string& folder : FoldersToMake(path, platform::PathSeparator))
        if (!platform::PathExists(folder) && !platform::MakeDirectory(folder))
            made = false;
    return made;
}

LogPaths ComposeLogPaths(const std::string& directory, bool withComms)
{
    std::string soleApi;
    std::string soleComms;
    TrimLogFiles(LogFamily::Api, soleApi);
    if (withComms)
        TrimLogFiles(LogFamily::Comms, soleComms);

    const std::string folder = directory + platform::PathSeparator;
    if (!soleApi.empty())
        return {folder + soleApi, withComms ? folder + soleComms : std::string()};
    const std::tm now = platform::LocalCalendarTime();
    // No separator before the comms name: without one at the end of `directory` the file is created beside
    // the folder. Kept: log readers expect it there.
    return {folder + MakeLogFileName(LogFamily::Api, now),
            withComms ? directory + MakeLogFileName(LogFamily::Comms, now) : std::string()};
}

int OpenLogFile(const std::string& directory)
{
    if (!LogDirectoryReady) {
        if (!MakeLogDirectory(directory))
            return 1;
        LogDirectoryReady = true;
    }
    const bool withComms = (Setting(NumericKey::LogCommsFile) & 1) != 0;
    const LogPaths paths = ComposeLogPaths(directory, withComms);

    LogMutexHold hold;
    CloseLogFiles();
    ApiLogFile = LogFile::Open(paths.Api).release();
    int result = ApiLogFile ? 0 : 1;
    if (!withComms || Setting(NumericKey::LogDoIPComms) == 0) {
        CommsLogFile = ApiLogFile.load();
        return result;
    }
    CommsLogFile = LogFile::Open(paths.Comms).release();
    return CommsLogFile ? 0 : result;
}

void ReopenLogFile()
{
    OpenLogFile(LogDirectory);
    for (const int milliseconds : {1, 4, 10}) {
        if (ApiLogFile)
            break;
        std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
        OpenLogFile(LogDirectory);
    }
    ReopeningFailed = !ApiLogFile;
}

void CloseLogFiles()
{
    LogMutexHold hold;
    ReopeningFailed = false;
    LogFile* const api = ApiLogFile.exchange(nullptr);
    LogFile* const comms = CommsLogFile.exchange(nullptr);
    if (comms != api)
        delete comms;
    delete api;
}

std::uint32_t GetLogFileSize()
{
    if (!ApiLogFile.load(std::memory_order_relaxed))
        return 0;
    LogMutexHold hold;
    LogFile* const file = ApiLogFile;
    return file ? static_cast<std::uint32_t>(file->FlushedSize()) : 0;
}

void WriteToLog(const LogStream& stream, std::string_view text)
{
    const bool flush = Setting(NumericKey::LogFlush) == 1;
    if (text.empty() && !flush)
        return;
    LogMutexHold hold;
    if (LogFile* const file = stream.load(std::memory_order_relaxed))
        file->Write(text, flush);
}

} // namespace marvane
