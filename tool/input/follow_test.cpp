#include "tool/input/follow.h"

#include <gtest/gtest.h>

#include "tests/support/temporary_folder.h"

namespace marvane::tool {
namespace {

const std::string First = "D-PDU_API_Logger_25-11-2026_14-03-00.LGR";
const std::string Second = "D-PDU_API_Logger_26-11-2026_00-00-01.LGR";

/// Writes down the calls, and is content after so many.
class Calls : public read::LogSink
{
public:
    explicit Calls(std::size_t enough) : enough_(enough) {}
    void OnCall(const read::Call& call) override { Names += std::string(call.Name) + " "; }
    void OnComms(const read::Comms& report) override
    {
        Reports += std::string(report.Title) + " in file " + std::to_string(report.At.File + 1) + " line " +
                   std::to_string(report.At.Line) + "\n";
    }
    void OnProblem(const read::Problem& problem) override { Problems += std::string(problem.Text) + "\n"; }
    bool IsEnough() const override
    {
        return std::count(Names.begin(), Names.end(), ' ') >= std::ptrdiff_t(enough_);
    }

    std::string Names;
    std::string Problems;
    std::string Reports;

private:
    std::size_t enough_;
};

std::string Call(const std::string& name)
{
    const std::string stamp = "{14:03:07.250 - 00001A2C} ";
    return stamp + "+ " + name + "()\n" + stamp + "- " + name + "<PDU_STATUS_NOERROR (0x0000)>\n";
}

class Follow : public ::testing::Test
{
protected:
    /// Follows the first file; after each part that was read the next action happens.
    void Run(std::size_t enough, std::vector<std::function<void()>> actions, const std::string& timeOut = "")
    {
        Calls sink(enough);
        read::LogReader reader(sink, read::Wants::Calls | read::Wants::Comms);
        const std::string operand = operand_.empty() ? folder_ / First : operand_;
        std::vector<read::LogFile> files = read::FindLogFiles({operand}).Files;
        Arguments arguments;
        arguments.Set("--follow", {});
        arguments.SetOperands({operand});
        if (!timeOut.empty())
            arguments.Set("--timeout", {timeOut});
        Console console(ColourChoice::Never);
        std::size_t next = 0;
        status_ = FollowLogs(arguments, console, files, reader, [&] {
            if (next < actions.size())
                actions[next++]();
        });
        names_ = sink.Names;
        problems_ = sink.Problems;
        reports_ = sink.Reports;
    }

    void Add(const std::string& name, const std::string& text)
    {
        const std::string path = folder_ / name;
        testing::WriteFileBytes(path, testing::FileBytes(path) + text);
    }

    testing::TemporaryFolder folder_;
    std::string operand_; ///< what is followed, if not the first file
    std::string names_;
    std::string reports_;
    std::string problems_;
    int status_ = -1;
};

TEST_F(Follow, WaitsForTheOtherHalfOfALine)
{
    const std::string whole = Call("PDUGetVersion");
    Add(First, whole.substr(0, 40));
    Run(1, {[&] { Add(First, whole.substr(40, 30)); }, [&] { Add(First, whole.substr(70)); }});
    EXPECT_EQ(names_, "PDUGetVersion ");
    EXPECT_EQ(problems_, "");
    EXPECT_EQ(status_, 0);
}

TEST_F(Follow, GoesOnInTheNextFile)
{
    const std::string whole = Call("PDUGetVersion");
    const std::size_t half = whole.find('\n') + 1;
    Add(First, Call("PDUConstruct") + whole.substr(0, half));
    Run(3, {[&] { Add(Second, whole.substr(half)); }, [&] { Add(Second, Call("PDUDestruct")); }});
    EXPECT_EQ(names_, "PDUConstruct PDUGetVersion PDUDestruct ");
    EXPECT_EQ(problems_, "");
}

TEST_F(Follow, ReadsAFileAgainThatBecameShorter)
{
    Add(First, Call("PDUConstruct") + Call("PDUGetVersion"));
    Run(3, {[&] { testing::WriteFileBytes(folder_ / First, Call("PDUDestruct")); }});
    EXPECT_EQ(names_, "PDUConstruct PDUGetVersion PDUDestruct ");
    EXPECT_EQ(problems_, First + ": became shorter, read again from its beginning\n");
}

TEST_F(Follow, GivesUpAtTheTimeOut)
{
    Add(First, Call("PDUConstruct"));
    Run(2, {}, "0");
    EXPECT_EQ(names_, "PDUConstruct ");
    EXPECT_EQ(status_, 1);
}

TEST_F(Follow, ReadsTwoFilesThatGrowAtATime)
{
    const std::string comms = "D-PDU_API_Comms_25-11-2026_14-03-00.LGR";
    const std::string report = "{14:03:07.250 - 00001A2C} [DoIP] ->  one\n";
    Add(First, Call("PDUConstruct"));
    Add(comms, report.substr(0, 30));
    operand_ = folder_.Path().string();
    Run(3, {[] {}, [&] { Add(First, Call("PDUGetVersion")); }, [&] { Add(comms, report.substr(30)); },
            [&] { Add(First, Call("PDUDestruct")); }});
    EXPECT_EQ(names_, "PDUConstruct PDUGetVersion PDUDestruct ");
    EXPECT_EQ(reports_, "one in file 2 line 1\n");
    EXPECT_EQ(problems_, "");
}

TEST_F(Follow, TakesACommsLogThatBeginsInTheFolder)
{
    const std::string comms = "D-PDU_API_Comms_25-11-2026_14-05-00.LGR";
    const std::string report = "{14:05:07.250 - 00001A2C} [DoIP] ->  one\n";
    Add(First, Call("PDUConstruct"));
    operand_ = folder_.Path().string();
    Run(2, {[&] { Add(comms, report); }, [&] { Add(First, Call("PDUDestruct")); }});
    EXPECT_EQ(names_, "PDUConstruct PDUDestruct ");
    EXPECT_EQ(reports_, "one in file 2 line 1\n");
}

TEST_F(Follow, StandardInputStandsAlone)
{
    Calls sink(1);
    read::LogReader reader(sink);
    Add(First, Call("PDUConstruct"));
    std::vector<read::LogFile> files = read::FindLogFiles({"-", folder_ / First}).Files;
    Console console(ColourChoice::Never);
    EXPECT_THROW(FollowLogs({}, console, files, reader), UsageError);
}

} // namespace
} // namespace marvane::tool
