// The reader itself: from lines to records. LogReader is its door.
#pragma once

#include <array>
#include <map>
#include <string>
#include <vector>

#include "line/stamp.h"
#include "tool/read/items.h"
#include "tool/read/line_clock.h"
#include "tool/read/line_kind.h"
#include "tool/read/log_reader.h"
#include "tool/read/open_report.h"
#include "tool/read/sessions.h"
#include "tool/read/split_lines.h"
#include "tool/read/threads.h"

namespace marvane::read {

class LogReader::Engine
{
public:
    Engine(LogSink& sink, Wants wants) : sink_(sink), wants_(wants) {}

    void BeginFile(const FileBegin& file);
    void Feed(std::string_view bytes);
    void Skip(std::uint64_t bytes, std::uint64_t lines);
    void EndFile();
    void Suspend();
    void Resume(std::uint32_t file);
    void Finish();
    void Report(ProblemKind what, std::string_view text);

    LogSink& Sink() const { return sink_; }
    const ReadCounts& Counts() const { return counts_; }
    const SessionTable& Sessions() const { return sessions_; }

private:
    /// What the last line was, as far as a line without stamp can continue it.
    enum class Tail : std::uint8_t
    {
        Nothing,
        Entry,
        Decoded,
        ReportTitle,
        ReportLine,
        Setting,
        LoadFailure,
        Exit,
        StampedMark ///< the mark of a full buffer after a stamp: the next line shows whether it is an indent
    };

    // engine.cpp: lines
    void ReadLine(std::string_view whole, std::size_t length, bool hasEnd);
    bool ReadStamp(std::string_view whole);
    void ReadStamped(std::string_view whole);
    void Dispatch(const KnownLine& line, bool isCut);
    void ReadDecoded(std::string_view text, bool isCut);
    void ReadOther(std::string_view text);
    void ReadReportTitle(std::string_view text, bool isCut);
    void ReadMark(std::string_view text);
    void CloseReport(bool isCut);
    void Damaged(std::string_view line);
    void Tell(ProblemKind what, Position at, const Call* call, std::string_view text);
    void TellLine(LineKind kind, std::string_view text, std::string_view whole, bool hasStamp);
    bool Wanted(Wants one) const { return Has(wants_, one); }

    // engine_unstamped.cpp: lines without a stamp
    void ReadUnstamped(std::string_view whole);
    bool Continue(std::string_view text);
    bool ContinueSetting(std::string_view text);
    void MarkFull();
    void SettleMark();

    /// The settings that decide how calls are told apart, if the header has them.
    struct CallSettings
    {
        std::uint32_t Session = 0; ///< whose they are; 0: of none
        std::optional<std::uint32_t> FnCalls;
        std::optional<std::uint32_t> CbCalls;
        std::optional<std::uint32_t> CallOuts;
    };

    // engine_sessions.cpp: sessions
    const CallSettings& Settings();
    void Assign(const KnownLine& line);
    bool IsStale(const KnownLine& line) const;
    void BeginSession();
    void ReadHeader(std::string_view rest);
    void ReadSetting(std::string_view rest);
    void EndSession();
    void ReplaceSession(Session& old);
    void EndDeadSession(Session& old);
    void EndHeader(ThreadState& thread);

    // engine_calls.cpp: calls
    void ReadEntry(std::string_view rest, bool isCut);
    void ReadCallOut(std::string_view name);
    void ReadExit(std::string_view rest);
    void ReadNotLoaded(std::string_view name);
    bool AddToFrame(std::string_view line);
    bool IsLost(const Frame& frame, bool nextIsEvent) const;
    bool IsDoubtful(const Frame& frame, bool nextIsEvent);
    bool BeginsResultsOf(const Frame& frame, std::string_view line);
    Frame* FindFrame(std::string_view name);
    void TakeLost(bool nextIsEvent);

    // engine_frames.cpp: open calls
    Frame& Open(std::string_view entry);
    Frame& OpenOrphan();
    void LeaveAbove(const Frame& frame);
    void Close(ThreadState& thread, CallState state);
    void Deliver(Frame& frame);
    void DropOrphan(Frame& frame);
    void Forget(ThreadState& thread);
    void DropOldest();
    void KeepBounds();
    void LeaveAll(std::uint32_t session);
    void ForgetAll();

    LogSink& sink_;
    Wants wants_;
    ReadCounts counts_;

    // The place in the files.
    /// A file that is left while another is read.
    struct SuspendedFile
    {
        bool IsComms;
        bool IsFresh;
        std::uint32_t Headers;
        std::uint64_t Offset;
        std::uint64_t Lines;
        LineSplitter Splitter;
        LineClock Clock;
    };
    std::map<std::uint32_t, SuspendedFile> suspended_; ///< by number

    bool hasFile_ = false;
    bool isComms_ = false;
    bool isFileFresh_ = false; ///< no stamped line was read of it
    bool hasSkipped_ = false;  ///< so that second halves without first are no wonder
    std::uint32_t files_ = 0;
    std::uint32_t number_ = 0; ///< of the file that is being read
    std::uint32_t headersInFile_ = 0;
    std::uint64_t offset_ = 0;
    std::uint64_t lines_ = 0;
    Position at_;
    bool hasLineEnd_ = true;
    LineSplitter splitter_;
    LineClock clock_;

    // The last stamp: most lines have that of the line before them.
    std::array<char, StampLength> stamp_{};
    Stamp parsed_;
    bool hasStamp_ = false;
    bool isNewStamp_ = false;
    LogTime time_;
    ThreadState* thread_ = nullptr;
    Session* session_ = nullptr;

    Tail tail_ = Tail::Nothing;
    Position markAt_;
    std::string* openSetting_ = nullptr;

    CallSettings settings_; ///< of the current session, looked up once
    SessionTable sessions_;
    ThreadTable threads_;
    FramePool pool_;
    OpenReport report_;
    ItemReader items_;
    std::vector<CallLine> storage_;
    std::size_t openFrames_ = 0;
    std::size_t openBytes_ = 0;
};

} // namespace marvane::read
