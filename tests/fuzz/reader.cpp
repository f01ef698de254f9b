// The reader of logs over any bytes, as a log and as a file: no line is lost, and what is read does not
// depend on the pieces in which it comes.
#include <filesystem>
#include <fstream>

#include "tests/fuzz/fuzz_target.h"
#include "tool/read/call_text.h"
#include "tool/read/log_files.h"
#include "tool/read/reader_test_kit.h"

using namespace marvane::read;
using namespace marvane::testing;

namespace {

/// Counts what must fit each other.
class CountingSink : public LogSink
{
public:
    std::uint64_t Lines = 0;
    std::uint64_t Entered = 0;
    std::uint64_t Left = 0;
    std::uint64_t NotLoaded = 0;
    std::uint64_t Damaged = 0;
    std::uint64_t EntryLines = 0;

    void OnLine(const Line& line) override
    {
        Lines += line.At.Line == lastLine_ ? 0 : 1; // one line has two stamps
        lastLine_ = line.At.Line;
        EntryLines += line.Kind == LineKind::Entry ? 1 : 0;
    }
    void OnEntry(const Call& call, bool) override { Entered += CallText(call); }
    void OnCall(const Call& call) override { Count(call); }
    void OnEvent(const Event& event) override { Count(event); }
    void OnProblem(const Problem& problem) override
    {
        Damaged += problem.What == ProblemKind::Damaged ? 1 : 0;
    }

private:
    /// Reads what a call says of itself. Returns 1.
    static std::uint64_t CallText(const Call& call)
    {
        std::vector<std::uint8_t> storage;
        const Payload request = RequestOf(call, storage);
        Require(request.Shown.size() <= request.Size, "no more bytes are shown than there are");
        for (const auto& lines : {call.LinesIn, call.LinesOut})
            for (const CallLine& line : lines)
                NumberInValue(line.Decode().Value);
        return 1;
    }

    void Count(const Call& call)
    {
        CallText(call);
        Require(call.Begin <= call.End, "a call ends after its beginning");
        Require(call.State != CallState::Returned || call.Status || call.Which == Function::CallbackTrap,
                "a call that returned has a status");
        ++(call.State == CallState::NotLoaded ? NotLoaded : Left);
    }

    std::uint64_t lastLine_ = 0;
};

std::string_view TextOf(const std::uint8_t* data, std::size_t size)
{
    return {reinterpret_cast<const char*>(data), size};
}

void CheckCounts(std::string_view log)
{
    CountingSink sink;
    LogReader reader(sink);
    reader.BeginFile({.Name = "log"});
    reader.Feed(log);
    reader.Finish();
    const ReadCounts& counts = reader.Counts();
    Require(counts.Bytes == log.size(), "all bytes are read");
    Require(counts.Lines == sink.Lines, "each line is told");
    Require(sink.Entered == sink.EntryLines, "each entry line is an entry");
    Require(sink.Entered == sink.Left, "what has entered is told once");
    Require(counts.Calls + counts.Events == sink.Left + sink.NotLoaded, "calls and events are counted");
    Require(counts.DamagedLines == sink.Damaged, "each damaged line is a problem");
}

void CheckFile(std::string_view content)
{
    const std::filesystem::path path = FuzzFolder().Path() / "D-PDU_API_Logger_21-11-2026_10-00-00.LGR";
    std::ofstream(path, std::ios::binary).write(content.data(), static_cast<std::streamsize>(content.size()));
    LogSink sink;
    LogReader reader(sink);
    for (const LogFile& file : FindLogFiles({path.string()}).Files)
        ReadLogFile(file, reader, {.Since = LogTime{file.Begin.NameTime.Ms + 1000}});
    reader.Finish();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 2)
        return 0;
    const std::size_t piece = data[0] + 1u;
    const std::string_view log = TextOf(data + 2, size - 2);
    if (data[1] % 16 == 0)
        CheckFile(log);
    CheckCounts(log);
    const std::string whole = marvane::read::testing::ReadText(log);
    Require(marvane::read::testing::ReadText(log, piece) == whole, "pieces change nothing", whole);
    Argument(log, log.substr(0, piece));
    NumberInValue(log);
    return 0;
}
