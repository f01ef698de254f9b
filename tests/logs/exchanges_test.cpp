// The exchanges in the logs written by hand: request, outcome, answer, latency.
#include <gtest/gtest.h>

#include "tests/logs/log_digest.h"

namespace marvane::testing {
namespace {

struct Expected
{
    const char* Log;
    const char* Exchanges;
};

class HandMadeExchanges : public ::testing::TestWithParam<Expected>
{
};

TEST_P(HandMadeExchanges, HaveThisRequestOutcomeAnswerAndLatency)
{
    EXPECT_EQ(ExchangeDigest({GetParam().Log}), GetParam().Exchanges);
}

/// The log's name without its ending.
std::string NameOf(const ::testing::TestParamInfo<Expected>& info)
{
    const std::string path = info.param.Log;
    return path.substr(0, path.find('.'));
}

const Expected Rows[] = {
    {"cyclic.LGR", "#7 link 1 3e00: answered 7e00, 1500 us by library, 3 answers\n"},
    {"functional.LGR", "#8 link 1 22f190: answered 62f190aa, 2000 us by library, 3 answers (7: 62f190aa, 8: "
                       "7f2211, 9: 62f190bb)\n"},
    {"no_answer_wanted.LGR", "#9 link 1 3e80: sent\n"
                             "#10 link 1 3e80: sent, PDU_ERR_EVT_RX_TIMEOUT\n"},
    {"cancelled.LGR", "#11 link 1 3e80: cancelled\n"
                      "#12 link 1 22f190: cancelled 62f190aa, 1500 us by library, 1 answer\n"},
    {"timeout.LGR", "#13 link 1 ba00: silent, PDU_ERR_EVT_RX_TIMEOUT\n"
                    "#14 link 1 22f187: answered 62f187aa, 3000 us by log, 1 answer\n"},
    {"late_answer.LGR", "#15 link 1 22f190: silent, PDU_ERR_EVT_RX_TIMEOUT\n"
                        "#15 late 62f190aa, 20 ms after the end\n"
                        "#16 link 1 22f187: answered 62f187bb, 3000 us by library, 1 answer\n"},
    {"pending.LGR",
     "#17 link 1 3101ff00: answered 7101ff0000, 9000 us by library, 3 answers, 2 pending\n"
     "#18 link 1 3101ff01: refused 7f3122, 11000 us by library, 2 answers, 1 pending, nrc 22\n"},
    {"cut_payload.LGR",
     "#19 link 1 36015555555555555555555555555555 of 128: answered 76011111111111111111111111111111 of 40, "
     "3900 us by library, 1 answer\n"
     "#20 link 1 ? of 128: silent\n"},
    {"open_and_failed.LGR", "#? link 1 22f190: not_started PDU_ERR_TX_QUEUE_FULL\n"
                            "#21 link 1 22f190: open\n"},
    {"answer_on_other_thread.LGR", "#22 link 1 22f190: answered 62f190aa, 2000 us by library, 1 answer\n"},
    {"crlf.LGR", "#23 link 1 22f190: answered 62f190aa, 1900 us by library, 1 answer\n"},
    {"lost_data_and_errors.LGR", "#24 link 1 22f190: silent, PDU_ERR_EVT_TX_ERROR\n"},
    {"kwp.LGR", "#25 link 1 1a9b: answered 5a9b01, 7000 us by library, 1 answer\n"
                "#26 link 1 210a: refused 7f2133, 7000 us by library, 1 answer, nrc 33\n"},
    {"two_processes", "#1 link 1 22f190: answered 62f190aa, 3200 us by library, 1 answer\n"
                      "#1 link 1 3e00: answered 7e00, 400 us by library, 1 answer\n"},
    {"calls_only", "#? link ? ?: open\n"},
    {"no_decoded_lines.LGR", "#? link 1 ? of 3: open\n"},
    {"in_flight.LGR", ""},
    {"request_never_returned.LGR", "#7 link 1 22f186: answered 62f18601, 1900 us by library, 1 answer\n"
                                   "#? link 1 3101ff00: never_returned\n"
                                   "#9 link 1 3e00: answered 7e00, 2500 us by library, 1 answer\n"
                                   "#? link 1 ?: never_returned\n"
                                   "#? link ? ?: never_returned\n"},
    {"refused_start.LGR", "#? link 1 22f190: not_started PDU_ERR_CLL_NOT_CONNECTED\n"
                          "#? link 9 3e00: not_started PDU_ERR_INVALID_HANDLE\n"
                          "#? link 1 3101ff00: not_started <UNKNOWN ERROR>\n"
                          "#? link 1 ? of 3: not_started PDU_ERR_TX_QUEUE_FULL\n"
                          "#20 link 1 22f186: open\n"},
};
INSTANTIATE_TEST_SUITE_P(Logs, HandMadeExchanges, ::testing::ValuesIn(Rows), NameOf);

} // namespace
} // namespace marvane::testing
