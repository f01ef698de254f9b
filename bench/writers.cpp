#include "bench/writers.h"

#include <chrono>
#include <cstdio>

#ifdef MARVANE_BENCH_SPDLOG
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/spdlog.h>
#endif

#include "logger/diagnostics/CMutexWindows.h"
#include "platform/files.h"
#include "tests/support/temporary_folder.h"

namespace marvane::bench {

struct FloorWriter::Parts
{
    testing::TemporaryFolder Folder;
    Phases Texts;
    bool Flush;
    CMutexWindows Lock; // the same class as the log mutex
    std::FILE* File;
    volatile std::chrono::system_clock::rep Clock = 0;
};

namespace {

/// A text with the line ends of a log file, so that writing it converts nothing.
std::string AsInTheFile(const std::string& text)
{
    if (platform::PathSeparator == '/')
        return text;
    std::string converted;
    for (const char c : text)
        converted += c == '\n' ? "\r\n" : std::string(1, c);
    return converted;
}

} // namespace

FloorWriter::FloorWriter(const Phases& phases, bool flush) : parts_(std::make_unique<Parts>())
{
    for (const std::string& phase : phases)
        parts_->Texts.push_back(AsInTheFile(phase));
    parts_->Flush = flush;
    parts_->File = std::fopen((parts_->Folder / "floor.log").c_str(), "ab");
}

FloorWriter::~FloorWriter()
{
    std::fclose(parts_->File);
}

std::size_t FloorWriter::PhaseCount() const
{
    return parts_->Texts.size();
}

void FloorWriter::Write(std::size_t phase)
{
    Parts& parts = *parts_;
    const auto now = std::chrono::system_clock::now().time_since_epoch().count();
    if (now == 0)
        parts.Clock = now;
    const std::string& text = parts.Texts[phase];
    parts.Lock.CMutexWindows::Lock();
    std::fwrite(text.data(), 1, text.size(), parts.File);
    if (parts.Flush)
        std::fflush(parts.File);
    parts.Lock.CMutexWindows::Unlock();
}

#ifdef MARVANE_BENCH_SPDLOG

struct SpdlogWriter::Parts
{
    testing::TemporaryFolder Folder;
    std::vector<std::vector<std::string>> Lines; // of each phase, without stamp and line end
    std::shared_ptr<spdlog::logger> Log;
};

SpdlogWriter::SpdlogWriter(Phases phases, bool flush) : parts_(std::make_unique<Parts>())
{
    constexpr std::size_t stampLength = 26;
    for (const std::string& phase : phases) {
        auto& lines = parts_->Lines.emplace_back();
        for (std::size_t at = 0, end; (end = phase.find('\n', at)) != std::string::npos; at = end + 1)
            lines.push_back(phase[at] == '{' ? phase.substr(at + stampLength, end - at - stampLength)
                                             : phase.substr(at, end - at));
    }
    parts_->Log = std::make_shared<spdlog::logger>(
        "bench", std::make_shared<spdlog::sinks::basic_file_sink_mt>(parts_->Folder / "spdlog.log"));
    parts_->Log->set_pattern("{%H:%M:%S.%e - %t} %v");
    if (flush)
        parts_->Log->flush_on(spdlog::level::info);
}

SpdlogWriter::~SpdlogWriter()
{
    parts_->Log.reset(); // closes the file before its folder is removed
}

std::size_t SpdlogWriter::PhaseCount() const
{
    return parts_->Lines.size();
}

void SpdlogWriter::WriteLockEntry(unsigned hMod, unsigned hCLL, unsigned mask)
{
    parts_->Log->info("+ PDULockResource(hMod=0x{:08X}, hCLL=0x{:08X}, LockMask={})", hMod, hCLL, mask);
}

void SpdlogWriter::WriteLockExit(unsigned status)
{
    parts_->Log->info("- PDULockResource<{} (0x{:04X})>", "PDU_STATUS_NOERROR", status);
}

void SpdlogWriter::Write(std::size_t phase)
{
    for (const std::string& line : parts_->Lines[phase])
        parts_->Log->info("{}", line);
}

#endif

} // namespace marvane::bench
