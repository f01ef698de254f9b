// Reads logs in one pass and passes what they contain to a sink.
//
//     struct Counter : marvane::read::LogSink {
//         std::uint64_t Failed = 0;
//         void OnCall(const Call& call) override { Failed += call.HasFailed(); }
//     };
//     Counter counter;
//     LogReader reader(counter, Wants::Calls);
//     for (const LogFile& file : FindLogFiles(paths).Files)   // log_files.h: in the order of their time
//         ReadLogFile(file, reader);
//     reader.Finish();
//
// Memory is bounded whatever the length of the log: a call is held from its entry line to its exit line and
// no longer. The hot path allocates nothing per line.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "tool/read/byte_filter.h"
#include "tool/read/records.h"

namespace marvane::read {

/// What is passed to a sink. What it does not want costs nothing. Combine them with |.
enum class Wants : std::uint32_t
{
    Lines = 1,   ///< OnLine: every line of every file, in order
    Calls = 2,   ///< OnEntry, OnCall, OnEvent
    Comms = 4,   ///< OnComms
    Items = 8,   ///< OnItem, after the OnCall of its PDUGetEventItem
    Params = 16, ///< OnParam, after the OnCall of its PDUGetComParam or PDUSetComParam
    All = 31
};
constexpr Wants operator|(Wants left, Wants right)
{
    return static_cast<Wants>(static_cast<std::uint32_t>(left) | static_cast<std::uint32_t>(right));
}
constexpr bool Has(Wants all, Wants one)
{
    return (static_cast<std::uint32_t>(all) & static_cast<std::uint32_t>(one)) != 0;
}

/// Receives what is read. Calls, events and reports arrive when they are complete: in the order of their last
/// lines, and a call after all that happened inside it.
class LogSink
{
public:
    virtual ~LogSink() = default;

    /// A file begins; `file` is its number in Position, `name` without folder.
    virtual void OnFile(std::uint32_t file, std::string_view name);
    /// A session's header is complete, or its first line without header was read. The session goes on
    /// changing; the reference stays good, see Session.
    virtual void OnSession(const Session& session);
    virtual void OnLine(const Line& line);
    /// The first half of a call or callback has begun: only its name, arguments and handles are known yet
    /// (arguments that go on in a second line, up to the first). `isEvent` for a callback.
    virtual void OnEntry(const Call& call, bool isEvent);
    virtual void OnCall(const Call& call);
    virtual void OnEvent(const Event& event);
    virtual void OnItem(const Item& item);
    virtual void OnComms(const Comms& report);
    virtual void OnParam(const Param& param);
    virtual void OnMark(const Mark& mark);
    virtual void OnProblem(const Problem& problem);
    /// Asked after each buffer of input and before each file: true ends the reading.
    virtual bool IsEnough() const { return false; }
};

/// A file as the reader needs to know it.
struct FileBegin
{
    std::string Name{}; ///< without folder, for OnFile
    LogTime
        NameTime{}; ///< the time in its name, else its last change; only the date of its lines hangs on it
    bool HasNameTime = false; ///< false: NameTime is a guess
    bool IsComms = false;     ///< holds comms reports alone, and no headers
};

/// Numbers over all that was read.
struct ReadCounts
{
    std::uint64_t Bytes = 0;
    std::uint64_t Lines = 0;
    std::uint64_t Calls = 0;
    std::uint64_t Events = 0;
    std::uint64_t Items = 0; ///< if they are wanted
    std::uint64_t Comms = 0;
    std::uint64_t Params = 0; ///< if they are wanted
    std::uint64_t Marks = 0;
    std::uint64_t Sessions = 0;
    std::uint64_t DamagedLines = 0; ///< lines that belong to nothing; each is a Problem too
};

class LogReader
{
public:
    /// `sink` outlives the reader.
    explicit LogReader(LogSink& sink, Wants wants = Wants::All);
    ~LogReader();
    LogReader(const LogReader&) = delete;
    LogReader& operator=(const LogReader&) = delete;

    /// From here on everything passes through a filter, which outlives the reader. Null: none.
    void FilterBy(ByteFilter* filter) { filter_ = filter; }

    /// The next file in the order of time. Calls that are open stay open: their second half may follow in it.
    void BeginFile(const FileBegin& file);
    /// The next bytes of the file, cut anywhere. A line is read when its line end has come.
    void Feed(std::string_view bytes);
    /// The next `bytes` of the file, which are `lines` whole lines, are not read. To be called where a line
    /// begins. Calls that are open there are not reported.
    /// From then on second halves without a first half are no problem.
    void Skip(std::uint64_t bytes, std::uint64_t lines);
    /// The file ends; a last line without line end is read as it is.
    void EndFile();
    /// Leaves the file, to go on with it later: of two files that grow at a time. Best where a phase has
    /// ended.
    void Suspend();
    /// Goes on with a file that was left, by its number in Position.
    void Resume(std::uint32_t file);
    /// No more files: delivers what is in flight. To be called once.
    void Finish();

    /// Reports trouble with the current file (or one that could not be opened) to the sink.
    void Report(ProblemKind what, std::string_view text);

    bool IsEnough() const;
    const ReadCounts& Counts() const;
    /// The session of that number, or null.
    const Session* FindSession(std::uint32_t number) const;

private:
    class Engine;
    void EndFilter();

    std::unique_ptr<Engine> engine_;
    ByteFilter* filter_ = nullptr;
    std::string filtered_;
    std::uint32_t files_ = 0;
    std::uint32_t file_ = 0; ///< the number of the file that is read
    bool hasFile_ = false;
};

} // namespace marvane::read
