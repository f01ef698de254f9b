#include "line/file_names.h"

#include <gtest/gtest.h>

namespace marvane {
namespace {

std::tm Moment(const FileTime& time)
{
    std::tm moment = {};
    moment.tm_year = time.Year - 1900;
    moment.tm_mon = time.Month - 1;
    moment.tm_mday = time.Day;
    moment.tm_hour = time.Hour;
    moment.tm_min = time.Minute;
    moment.tm_sec = time.Second;
    return moment;
}

std::string Name(LogFamily family, const FileTime& time)
{
    return MakeLogFileName(family, Moment(time));
}

TEST(LogFileName, BeginsWithTheDay)
{
    EXPECT_EQ(Name(LogFamily::Api, {2026, 11, 25, 14, 3, 7}), "D-PDU_API_Logger_25-11-2026_14-03-07.LGR");
    EXPECT_EQ(Name(LogFamily::Comms, {2026, 1, 2, 0, 0, 0}), "D-PDU_API_Comms_02-01-2026_00-00-00.LGR");
}

TEST(LogFileName, IsReadBack)
{
    for (const LogFamily family : {LogFamily::Api, LogFamily::Comms})
        for (const FileTime& time : {FileTime{2026, 11, 25, 14, 3, 7}, FileTime{1999, 12, 31, 23, 59, 60},
                                     FileTime{2000, 1, 1, 0, 0, 0}, FileTime{26, 11, 25, 14, 3, 7}}) {
            const std::string name = Name(family, time);
            EXPECT_EQ(ParseLogFileName(name), (LogFileName{"", family, time})) << name;
        }
}

TEST(LogFileName, OfACommsFileBesideItsFolderHasTheFoldersName)
{
    EXPECT_EQ(ParseLogFileName("logsD-PDU_API_Comms_25-11-2026_14-03-07.LGR"),
              (LogFileName{"logs", LogFamily::Comms, {2026, 11, 25, 14, 3, 7}}));
    EXPECT_EQ(ParseLogFileName("logsD-PDU_API_Logger_25-11-2026_14-03-07.LGR"), std::nullopt);
}

TEST(LogFileName, OtherNamesAreNone)
{
    for (const char* const name :
         {"", "_25-11-2026_14-03-07.LGR", "D-PDU_API_Logger_25-11-2026_14-03-07.LG",
          "D-PDU_API_Logger_25-11-2026_14-03-07.LGR.gz", "D-PDU_API_Logger_ab-11-2026_14-03-07.LGR",
          "D-PDU_API_Logger_25-13-2026_14-03-07.LGR", "D-PDU_API_Logger_00-11-2026_14-03-07.LGR",
          "D-PDU_API_Logger_25-11-2026_24-03-07.LGR", "D-PDU_API_Logger_25-11-2026_14-03-61.LGR",
          "D-PDU_API_Logger 25-11-2026_14-03-07.LGR", "d-pdu_api_logger_25-11-2026_14-03-07.LGR"})
        EXPECT_EQ(ParseLogFileName(name), std::nullopt) << name;
}

TEST(LogFileName, TimesAreOrderedAsTheyPassed)
{
    const FileTime times[] = {{2025, 12, 31, 23, 59, 59}, {2026, 1, 1, 0, 0, 0}, {2026, 1, 2, 0, 0, 0},
                              {2026, 1, 2, 1, 0, 0},      {2026, 1, 2, 1, 1, 0}, {2026, 1, 2, 1, 1, 1}};
    for (std::size_t i = 1; i < std::size(times); ++i)
        EXPECT_LT(times[i - 1], times[i]) << i;
}

TEST(LogFilePattern, HasAQuestionMarkForEachDigit)
{
    EXPECT_EQ(LogFilePattern(LogFamily::Api), "D-PDU_API_Logger_\?\?-\?\?-\?\?\?\?_\?\?-\?\?-\?\?.LGR");
    EXPECT_EQ(LogFilePattern(LogFamily::Comms), "D-PDU_API_Comms_\?\?-\?\?-\?\?\?\?_\?\?-\?\?-\?\?.LGR");
}

} // namespace
} // namespace marvane
