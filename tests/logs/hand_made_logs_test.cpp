// What stands in each log written by hand: one line a record. "22" is the line, "..27" the line of the end.
#include <gtest/gtest.h>

#include "tests/logs/log_digest.h"

namespace marvane::testing {
namespace {

struct Expected
{
    const char* Log;
    const char* Records;
};

class HandMadeLogs : public ::testing::TestWithParam<Expected>
{
};

TEST_P(HandMadeLogs, HaveTheseRecordsAndNoOthers)
{
    EXPECT_EQ(LogDigest({GetParam().Log}), GetParam().Records);
}

/// The log's name without folder and ending.
std::string NameOf(const ::testing::TestParamInfo<Expected>& info)
{
    const std::string path = info.param.Log;
    return path.substr(0, path.find_first_of("./"));
}

const Expected Marks[] = {
    {"mark_after_exit.LGR", "22 call PDUGetModuleIds t10 d0 returned 0x00 2 ms ..29\n"
                            "31 call PDUDestroyItem t10 d0 returned 0x00 0 ms ..32\n"},
    {"mark_own_line.LGR", "22 call PDUGetUniqueRespIdTable t10 d0 cut 3 ms ..25\n"
                          "22 problem cut\n"
                          "26 call PDUDestroyItem t10 d0 returned 0x00 0 ms ..27\n"},
    {"mark_after_stamp.LGR", "22 call PDUGetUniqueRespIdTable t10 d0 cut 3 ms ..25\n"
                             "22 problem cut\n"
                             "26 call PDUDestroyItem t10 d0 returned 0x00 0 ms ..27\n"},
    {"mark_after_arrow.LGR", "22 call PDUGetUniqueRespIdTable t10 d0 cut 3 ms ..25\n"
                             "22 problem cut\n"
                             "26 call PDUDestroyItem t10 d0 returned 0x00 0 ms ..27\n"},
    {"mark_in_entry_line.LGR", "22 call PDUGetObjectId t10 d0 returned 0x62 1 ms ..24 cut in\n"
                               "22 problem cut\n"
                               "25 call PDUGetTimestamp t10 d0 returned 0x00 0 ms ..27\n"},
    {"mark_in_entry_half.LGR", "22 call PDUSetUniqueRespIdTable t10 d0 returned 0x00 2 ms ..25 cut in\n"
                               "22 problem cut\n"
                               "26 call PDUConnect t10 d0 returned 0x00 0 ms ..27\n"},
    {"mark_that_is_an_indent.LGR", "22 call PDUGetComParam t10 d0 returned 0x00 0 ms ..35\n"
                                   "22 param get 610 CP_AccessTiming_Ecu: P2Min 50, P2Max 100, P3Min 110, "
                                   "P3Max 0, P4Min 5, TimingSet 4\n"
                                   "36 call PDUDestroyItem t10 d0 returned 0x00 0 ms ..37\n"},
};
INSTANTIATE_TEST_SUITE_P(Marks, HandMadeLogs, ::testing::ValuesIn(Marks), NameOf);

const Expected Settings[] = {
    {"report_before_results.LGR", "22 call PDUGetEventItem t10 d0 returned 0x00 0 ms ..28\n"
                                  "23 comms received NULL 'CAN message' 0x7E8 7e00 lines 2\n"
                                  "26 item status hCoP 3 at 205 PDU_COPST_FINISHED\n"
                                  "29 call PDUIoCtl t10 d0 returned 0x00 0 ms ..38\n"
                                  "32 comms received [DoIP] 'Battery' lines 1\n"},
    {"not_loaded", "22 call PDUConstruct t10 d0 not loaded ..22\n"
                   "22 problem not loaded\n"
                   "23 call PDUGetTimestamp t11 d0 not loaded ..23\n"
                   "23 problem not loaded\n"
                   "24 event 0x0 t12 d0 not loaded ..24\n"
                   "24 problem not loaded\n"
                   "25 call PDUDestruct t10 d0 not loaded ..25\n"
                   "25 problem not loaded\n"},
    {"calls_only", "22 call PDUConstruct t10 d0 returned 0x00 1 ms ..23\n"
                   "24 call PDUStartComPrimitive t10 d0 returned 0x00 1 ms ..25\n"
                   "26 call PDUGetEventItem t10 d0 returned 0x00 1 ms ..27\n"
                   "28 call PDUGetEventItem t10 d0 returned 0x71 1 ms ..29\n"
                   "30 call PDULockResource t10 d0 returned 0xA1 1 ms ..31\n"
                   "32 event 0x0 t11 d0 returned ..33\n"
                   "34 call PDUDestruct t10 d0 returned 0x00 0 ms ..35\n"
                   "36 call LOGGER_Uninitialise t10 d0 returned 0x00 0 ms ..37\n"},
    {"no_decoded_lines.LGR", "22 call PDUConnect t10 d0 returned 0x00 0 ms ..23\n"
                             "24 call PDUStartComPrimitive t10 d0 returned 0x00 0 ms ..26\n"
                             "27 call PDUGetEventItem t10 d0 returned 0x00 0 ms ..28\n"
                             "29 call PDUDestruct t10 d0 returned 0x00 0 ms ..30\n"
                             "31 mark PDUDestruct - Close this log file\n"},
};
INSTANTIATE_TEST_SUITE_P(Settings, HandMadeLogs, ::testing::ValuesIn(Settings), NameOf);

const Expected Broken[] = {
    {"load_failure.LGR", "25 call PDUConstruct t10 d0 not loaded ..25\n"
                         "25 problem not loaded\n"},
    {"unstamped.LGR", "22 call PDUConstruct t10 d0 returned 0x00 0 ms ..26\n"
                      "27 call PDUGetModuleIds t10 d0 returned 0x00 0 ms ..35\n"
                      "36 problem damaged\n"
                      "37 problem damaged\n"
                      "38 call PDUDestroyItem t10 d0 returned 0x00 0 ms ..39\n"
                      "40 problem damaged\n"},
    {"in_flight.LGR", "22 call PDUConstruct t10 d0 returned 0x00 0 ms ..24\n"
                      "25 call PDUModuleConnect t10 d0 in flight ..25\n"
                      "25 problem in flight\n"
                      "26 event 0x801 t10 d1 in flight ..26\n"
                      "26 problem in flight\n"
                      "27 call PDUGetEventItem t10 d2 returned 0x71 0 ms ..29\n"
                      "30 problem last line cut\n"
                      "30 call PDUGetStatus t11 d0 in flight ..30\n"
                      "30 problem in flight\n"},
    {"not_utf8.LGR", "22 call PDUConstruct t10 d0 returned 0x00 0 ms ..23\n"
                     "24 call PDUGetObjectId t10 d0 returned 0x00 0 ms ..26\n"},
    {"midnight/D-PDU_API_Logger_31-12-2025_23-59-59.LGR",
     "22 call PDUConnect t10 d0 returned 0x00 8 ms ..26\n"
     "23 call PDUGetTimestamp t11 d0 returned 0x00 10 ms ..25\n"
     "27 call PDUDestruct t10 d0 returned 0x00 0 ms ..28\n"},
};
INSTANTIATE_TEST_SUITE_P(Broken, HandMadeLogs, ::testing::ValuesIn(Broken), NameOf);

TEST(HandMadeFolders, ACallThatIsInTwoFilesIsOneCall)
{
    EXPECT_EQ(LogDigest({"continuation"}),
              "22 call PDUConstruct t10 d0 returned 0x00 0 ms ..23\n"
              "24 call PDUModuleConnect t11 d0 returned 0x00 50401004 ms ..2:20\n"
              "25 call PDUGetTimestamp t10 d0 returned 0x00 0 ms ..27\n"
              "28 mark PDUGetTimestamp - Changing log file\n"
              "2:1 mark PDUGetTimestamp - Continuation file\n"
              "2:21 call PDUDestruct t10 d0 returned 0x00 0 ms ..22\n"
              "2:23 call LOGGER_Uninitialise t10 d0 returned 0x00 0 ms ..24\n"
              "2:25 mark PDUDestruct - Close this log file\n");
}

} // namespace
} // namespace marvane::testing
