#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>
#include <zlib.h>

#include "tests/support/network_folder.h"
#include "tests/support/temporary_folder.h"
#include "tool/read/log_files.h"
#include "tool/read/reader_test_kit.h"

namespace marvane::read::testing {

namespace {

namespace fs = std::filesystem;

const std::string Start = LogOf("1 ########## INITIALISE ##########\n"
                                "1 LogHeader{Loaded=0}\n"
                                "1 - LOGGER_Initialise<PDU_STATUS_NOERROR (0x0000)>\n");
const std::string Continuation = LogOf("1 # PDUConnect - Continuation file\n");

class LogFilesTest : public ::testing::Test
{
protected:
    std::string Put(const std::string& name, const std::string& content)
    {
        const fs::path path = Folder() / name;
        fs::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary) << content;
        return path.string();
    }

    fs::path Folder() const { return folder_.Path(); }

    /// Names of the files found, then the failures.
    std::vector<std::string> Find(const std::vector<std::string>& paths)
    {
        const FoundFiles found = FindLogFiles(paths);
        std::vector<std::string> names;
        for (const LogFile& file : found.Files)
            names.push_back(file.Begin.Name);
        for (const FoundFiles::Failure& failure : found.Failures)
            names.push_back(fs::path(failure.Path).filename().string() + ": " + failure.Reason);
        return names;
    }

    std::string Read(const std::string& path)
    {
        TextSink sink;
        LogReader reader(sink);
        for (const LogFile& file : FindLogFiles({path}).Files)
            ReadLogFile(file, reader);
        reader.Finish();
        return sink.Text();
    }

private:
    marvane::testing::TemporaryFolder folder_;
};

std::string Packed(const std::string& text)
{
    std::vector<unsigned char> packed(compressBound(static_cast<uLong>(text.size())) + 32);
    z_stream stream{};
    deflateInit2(&stream, 9, Z_DEFLATED, MAX_WBITS + 16, 8, Z_DEFAULT_STRATEGY);
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(text.data()));
    stream.avail_in = static_cast<uInt>(text.size());
    stream.next_out = packed.data();
    stream.avail_out = static_cast<uInt>(packed.size());
    deflate(&stream, Z_FINISH);
    const std::string result(packed.begin(), packed.begin() + static_cast<std::ptrdiff_t>(stream.total_out));
    deflateEnd(&stream);
    return result;
}

using Names = std::vector<std::string>;

} // namespace

TEST_F(LogFilesTest, OrdersTheLogsOfAFolderByTheTimeInTheirNames)
{
    Put("D-PDU_API_Logger_01-02-2026_00-00-00.LGR", Start);
    Put("D-PDU_API_Logger_31-01-2026_23-59-59.LGR.gz", Start);
    Put("D-PDU_API_Comms_31-01-2026_23-59-59.LGR", Start);
    Put("notes.txt", "no log");
    EXPECT_EQ(Find({Folder().string()}),
              (Names{"D-PDU_API_Logger_31-01-2026_23-59-59.LGR.gz", "D-PDU_API_Comms_31-01-2026_23-59-59.LGR",
                     "D-PDU_API_Logger_01-02-2026_00-00-00.LGR"}));
}

TEST_F(LogFilesTest, FindsCommsLogsBesideTheFolder)
{
    Put("logs/D-PDU_API_Logger_01-02-2026_00-00-00.LGR", Start);
    Put("logsD-PDU_API_Comms_01-02-2026_00-00-00.LGR", Start);
    Put("otherD-PDU_API_Comms_01-02-2026_00-00-00.LGR", Start);
    const Names expected = {"D-PDU_API_Logger_01-02-2026_00-00-00.LGR",
                            "logsD-PDU_API_Comms_01-02-2026_00-00-00.LGR"};
    EXPECT_EQ(Find({(Folder() / "logs").string()}), expected);
    EXPECT_EQ(Find({(Folder() / "logs/").string()}), expected);
}

TEST_F(LogFilesTest, FindsThemOnAShare)
{
    const marvane::testing::NetworkFolder network("MARVANE_TEST_SHARE");
    if (!network.Exists())
        GTEST_SKIP() << "the environment names no share";
    const fs::path share = marvane::testing::FilePath(network.Path());
    fs::create_directory(share / "logs");
    std::ofstream(share / "logs" / "D-PDU_API_Logger_16-11-2026_14-03-07.LGR") << Start;
    std::ofstream(share / "logsD-PDU_API_Comms_16-11-2026_14-03-08.LGR") << Start;
    const std::vector<std::string> names = {"D-PDU_API_Logger_16-11-2026_14-03-07.LGR",
                                            "logsD-PDU_API_Comms_16-11-2026_14-03-08.LGR"};
    EXPECT_EQ(Find({network.Path() + "logs"}), names);
    EXPECT_EQ(Find({network.Path() + "logs", network.Path() + "logs\\..\\logs"}), names);
}

TEST_F(LogFilesTest, FindsFilesByPatternAndEachOnce)
{
    const std::string first = Put("a1.LGR", Start);
    Put("a2.LGR", Start);
    Put("b1.LGR", Start);
    EXPECT_EQ(Find({(Folder() / "a?.LGR").string(), first}), (Names{"a1.LGR", "a2.LGR"}));
    EXPECT_EQ(Find({(Folder() / "*1*").string()}), (Names{"a1.LGR", "b1.LGR"}));
}

TEST_F(LogFilesTest, NamesWhatCanNotBeFound)
{
    Put("empty/x.txt", "");
    EXPECT_EQ(
        Find({(Folder() / "none.LGR").string(), (Folder() / "empty").string(), (Folder() / "z*").string()}),
        (Names{"none.LGR: no such file", "empty: no logs in this folder", "z*: no file has such a name"}));
}

TEST_F(LogFilesTest, ReadsPackedFilesOfSeveralParts)
{
    const std::string log =
        Put("a.LGR.gz", Packed(Start) + Packed(LogOf("1 # PDUDestruct - Close this log file\n")));
    EXPECT_EQ(Read(log), "session 1 process 1\n4 mark PDUDestruct - Close this log file\n");
}

TEST_F(LogFilesTest, ReadsAPackedFileUpToItsDamage)
{
    const std::string packed = Packed(Start);
    const std::string text = Read(Put("a.LGR.gz", packed.substr(0, packed.size() - 4)));
    EXPECT_EQ(text, "session 1 process 1\n3 file trouble: a.LGR.gz: the compressed file ends too early\n");
}

TEST_F(LogFilesTest, SaysWhatIsNoLog)
{
    EXPECT_EQ(Read(Put("a.LGR", "")), "0 file trouble: a.LGR: is empty\n");
    EXPECT_EQ(Read(Put("b.LGR", std::string(1000, '\0'))), "0 file trouble: b.LGR: is no log\n");
}

TEST_F(LogFilesTest, SaysThatAFileBecameShorterOrVanished)
{
    const std::string path = Put("a.LGR", Start);
    std::vector<LogFile> files = FindLogFiles({path}).Files;
    files[0].Size += 1;
    TextSink sink;
    LogReader reader(sink);
    EXPECT_TRUE(ReadLogFile(files[0], reader));
    fs::remove(path);
    EXPECT_FALSE(ReadLogFile(files[0], reader));
    reader.Finish();
    EXPECT_EQ(sink.Text(), "session 1 process 1\n"
                           "3 file changed: a.LGR: became shorter while it was read\n"
                           "0 file trouble: a.LGR: can't be opened\n");
}

TEST_F(LogFilesTest, TakesTheFilesOfTheNewestSession)
{
    Put("D-PDU_API_Logger_01-02-2026_10-00-00.LGR", Start);
    Put("D-PDU_API_Logger_01-02-2026_11-00-00.LGR", Start);
    Put("D-PDU_API_Comms_01-02-2026_11-00-00.LGR", "");
    Put("D-PDU_API_Logger_01-02-2026_12-00-00.LGR", Continuation);
    Names names;
    for (const LogFile& file : NewestSession(FindLogFiles({Folder().string()}).Files))
        names.push_back(file.Begin.Name);
    EXPECT_EQ(names,
              (Names{"D-PDU_API_Logger_01-02-2026_11-00-00.LGR", "D-PDU_API_Comms_01-02-2026_11-00-00.LGR",
                     "D-PDU_API_Logger_01-02-2026_12-00-00.LGR"}));
}

TEST_F(LogFilesTest, BridgesTheFilesOfASession)
{
    Put("D-PDU_API_Logger_31-01-2026_10-00-00.LGR",
        Start + LogOf("1 + PDUConnect\n1 # PDUGetStatus - Changing log file\n"));
    Put("D-PDU_API_Logger_01-02-2026_10-00-00.LGR",
        Continuation + LogOf("1 - PDUConnect<PDU_STATUS_NOERROR (0x0000)>\n"));
    EXPECT_EQ(Read(Folder().string()),
              "session 1 process 1\n"
              "5 mark PDUGetStatus - Changing log file\n"
              "1 mark PDUConnect - Continuation file\n"
              "4..2 call PDUConnect returned 0 thread 1 depth 0 in 0 out 0 86400000 ms\n");
}

/// A log of `hours` hours from 20:00 on with a call each second, and a line that tells its time.
std::string LongLog(int hours)
{
    std::string log =
        "{20:00:00.000 - 00000001} ########## INITIALISE ##########\n"
        "{20:00:00.000 - 00000001} Config setting: LogCbCalls           =         1 (0x00000001)\n";
    for (int second = 1; second < hours * 3600; ++second) {
        char line[128];
        const int day = 20 * 3600 + second;
        std::snprintf(line, sizeof line, "{%02d:%02d:%02d.000 - 00000001} ", day / 3600 % 24, day / 60 % 60,
                      day % 60);
        log.append(line).append("+ PDUGetStatus\n").append(line);
        log.append("- PDUGetStatus<PDU_STATUS_NOERROR (0x0000)>\n");
    }
    return log;
}

/// Counts calls from a time on, and all of them.
struct CountSince : LogSink
{
    LogTime Since;
    std::uint64_t Later = 0;
    std::uint64_t All = 0;
    std::uint64_t FirstLine = 0;
    std::uint64_t Problems = 0;

    void OnCall(const Call& call) override
    {
        ++All;
        if (call.BeginTime < Since)
            return;
        if (++Later == 1)
            FirstLine = call.Begin.Line;
    }
    void OnProblem(const Problem&) override { ++Problems; }
};

TEST_F(LogFilesTest, SkipsWhatIsBeforeATime)
{
    const std::string path = Put("D-PDU_API_Logger_31-01-2026_20-00-00.LGR", LongLog(6));
    std::vector<LogFile> files = FindLogFiles({path}).Files;
    files[0].LastChange = {files[0].Begin.NameTime.Ms + 6 * 3600 * 1000};
    CountSince sink;
    sink.Since = {files[0].Begin.NameTime.Ms + 5 * 3600 * 1000}; // after midnight
    LogReader reader(sink);
    EXPECT_TRUE(ReadLogFile(files[0], reader, {.Since = sink.Since}));
    reader.Finish();
    EXPECT_EQ(sink.Later, 3600u);
    EXPECT_LT(sink.All, 3600u + 500u);
    EXPECT_EQ(sink.FirstLine, 3u + (5 * 3600 - 1) * 2);
    EXPECT_EQ(sink.Problems, 0u);
    EXPECT_EQ(reader.FindSession(1)->NumberOf("LogCbCalls"), 1u);
}

TEST_F(LogFilesTest, ReadsAllOfAFileThatMayBeLongerThanADay)
{
    const std::string path = Put("D-PDU_API_Logger_31-01-2026_20-00-00.LGR", LongLog(6));
    std::vector<LogFile> files = FindLogFiles({path}).Files;
    files[0].LastChange = {files[0].Begin.NameTime.Ms + 3 * MillisecondsPerDay};
    CountSince sink;
    LogReader reader(sink);
    ReadLogFile(files[0], reader, {.Since = LogTime{files[0].Begin.NameTime.Ms + 5 * 3600 * 1000}});
    reader.Finish();
    EXPECT_EQ(sink.All, 6u * 3600 - 1);
}

/// The beginnings of the calls that were told, "ms" from the beginning of the file.
struct CallsFrom : LogSink
{
    std::string Open; ///< those of thread 2

    void OnCall(const Call& call) override
    {
        if (call.Thread == 2)
            Open += std::string(call.Name) + " line " + std::to_string(call.Begin.Line) + " " +
                    std::to_string(call.Duration() / 1000) + " s\n";
    }
    void OnProblem(const Problem& problem) override { Open += std::string(problem.Text) + "\n"; }
};

TEST_F(LogFilesTest, ReadsCallsThatWereOpenAtATimeFromTheirEntryOn)
{
    std::string log = LongLog(6);
    log.insert(log.find("{20:10:00.000"), "{20:10:00.000 - 00000002} + PDUConnect(hMod=0x00000001)\n"
                                          "{20:10:00.000 - 00000002} - PDUConnect<A (0x0000)>\n");
    log.insert(log.find("{21:00:00.000"), "{21:00:00.000 - 00000002} + PDUModuleConnect(hMod=0x00000001)\n");
    log.insert(log.find("{01:30:00.000"), "{01:30:00.000 - 00000002} - PDUModuleConnect<A (0x0000)>\n");
    std::vector<LogFile> files = FindLogFiles({Put("D-PDU_API_Logger_31-01-2026_20-00-00.LGR", log)}).Files;
    files[0].LastChange = {files[0].Begin.NameTime.Ms + 6 * 3600 * 1000};
    const LogTime since = {files[0].Begin.NameTime.Ms + 5 * 3600 * 1000};
    CallsFrom sink;
    LogReader reader(sink);
    ReadLogFile(files[0], reader, {.Since = since, .WholeCalls = true});
    reader.Finish();
    EXPECT_EQ(sink.Open, "PDUModuleConnect line 7203 16200 s\n");
}

TEST_F(LogFilesTest, TakesTheNewestHeaderOfWhatItSkips)
{
    std::string log = LongLog(6);
    log.insert(log.find("{22:00:00.000"),
               "{22:00:00.000 - 00000001} ########## INITIALISE ##########\n"
               "{22:00:00.000 - 00000001} Config setting: LogCbCalls           =         7 (0x00000007)\n");
    std::vector<LogFile> files = FindLogFiles({Put("D-PDU_API_Logger_31-01-2026_20-00-00.LGR", log)}).Files;
    files[0].LastChange = {files[0].Begin.NameTime.Ms + 6 * 3600 * 1000};
    CountSince sink;
    sink.Since = {files[0].Begin.NameTime.Ms + 5 * 3600 * 1000};
    LogReader reader(sink);
    ReadLogFile(files[0], reader, {.Since = sink.Since, .WholeCalls = true});
    reader.Finish();
    EXPECT_EQ(sink.Later, 3600u);
    EXPECT_EQ(sink.FirstLine, 3u + 2 + (5 * 3600 - 1) * 2);
    EXPECT_LT(sink.All, 3600u + 500u);
    EXPECT_EQ(reader.FindSession(2)->NumberOf("LogCbCalls"), 7u);
    EXPECT_EQ(reader.FindSession(2)->Begin.Line, 3u + (2 * 3600 - 1) * 2);
}

TEST_F(LogFilesTest, FindsATimeAlthoughTheClockWasSetBack)
{
    // An hour and a half, then the clock goes back by an hour.
    const std::string log = LongLog(3);
    const std::string_view stamp = "{21:30:00.000";
    const std::string before = log.substr(0, log.find(stamp));
    const std::string again = log.substr(log.find("{20:30:00.000"));
    const std::string path = Put("D-PDU_API_Logger_31-01-2026_20-00-00.LGR", before + again);
    std::vector<LogFile> files = FindLogFiles({path}).Files;
    files[0].LastChange = {files[0].Begin.NameTime.Ms + 3 * 3600 * 1000};
    for (const int minute : {10, 40, 70, 95, 120, 170}) {
        CountSince all;
        CountSince some;
        all.Since = some.Since = {files[0].Begin.NameTime.Ms + minute * 60000LL};
        LogReader readsAll(all);
        LogReader readsSome(some);
        ReadLogFile(files[0], readsAll);
        ReadLogFile(files[0], readsSome, {.Since = some.Since});
        EXPECT_EQ(all.Later, some.Later) << minute;
        EXPECT_EQ(all.FirstLine, some.FirstLine) << minute;
    }
}

} // namespace marvane::read::testing
