#include <gtest/gtest.h>

#include "examples/sim_vci/faults.h"

namespace sim {

bool operator==(const Fault& one, const Fault& other)
{
    return one.Kind == other.Kind && one.Value == other.Value && one.Service == other.Service &&
           one.Function == other.Function;
}

namespace {

std::vector<Fault> Read(const char* text)
{
    std::vector<Fault> faults;
    EXPECT_EQ(ReadFaults(text, faults), "") << text;
    return faults;
}

std::string WhatIsWrongWith(const char* text)
{
    std::vector<Fault> faults;
    return ReadFaults(text, faults);
}

Fault OfService(FaultKind kind, unsigned value, std::optional<UNUM8> service)
{
    return {kind, value, service, "", 0};
}

Fault OfFunction(FaultKind kind, unsigned value, const char* function)
{
    return {kind, value, std::nullopt, function, 0};
}

TEST(ReadFaults, TakesAValueAndAPlace)
{
    EXPECT_EQ(Read("slow:80@19"), std::vector{OfService(FaultKind::Slow, 80, 0x19)});
    EXPECT_EQ(Read("silent@22"), std::vector{OfService(FaultKind::Silent, 0, 0x22)});
    EXPECT_EQ(Read("refuse:7E@31"), std::vector{OfService(FaultKind::Refuse, 0x7E, 0x31)});
    EXPECT_EQ(Read("lose:5"), std::vector{OfService(FaultKind::Lose, 5, std::nullopt)});
    EXPECT_EQ(Read("hang:2@PDUIoCtl"), std::vector{OfFunction(FaultKind::Hang, 2, "PDUIoCtl")});
}

TEST(ReadFaults, WithoutAPlaceMeansEverywhere)
{
    EXPECT_EQ(Read("slow:7"), std::vector{OfService(FaultKind::Slow, 7, std::nullopt)});
    EXPECT_EQ(Read("slow-call:7"), std::vector{OfFunction(FaultKind::SlowCall, 7, "")});
}

TEST(ReadFaults, WithAPlaceAloneTakesAUsualValue)
{
    EXPECT_EQ(Read("slow@19"), std::vector{OfService(FaultKind::Slow, 30, 0x19)});
    EXPECT_EQ(Read("crash@PDUDisconnect"), std::vector{OfFunction(FaultKind::Crash, 1, "PDUDisconnect")});
}

TEST(ReadFaults, ABareNameMeansAUsefulExample)
{
    EXPECT_EQ(
        Read("slow,silent, refuse ,lose"),
        (std::vector{OfService(FaultKind::Slow, 30, std::nullopt), OfService(FaultKind::Silent, 0, 0x19),
                     OfService(FaultKind::Refuse, 0x22, 0x31), OfService(FaultKind::Lose, 3, std::nullopt)}));
    EXPECT_EQ(Read("crash,hang,slow-call"),
              (std::vector{OfFunction(FaultKind::Crash, 12, "PDUStartComPrimitive"),
                           OfFunction(FaultKind::Hang, 12, "PDUStartComPrimitive"),
                           OfFunction(FaultKind::SlowCall, 5, "")}));
}

TEST(ReadFaults, NothingIsNoFault)
{
    EXPECT_EQ(Read(""), std::vector<Fault>());
    EXPECT_EQ(Read(" , "), std::vector<Fault>());
}

TEST(ReadFaults, RefusesUnknownNames)
{
    EXPECT_EQ(WhatIsWrongWith("slow,sloow:30"), "unknown fault \"sloow\"");
    EXPECT_EQ(WhatIsWrongWith(":30"), "unknown fault \"\"");
}

TEST(ReadFaults, RefusesValuesAndPlacesThatDoNotFit)
{
    for (const char* wrong :
         {"slow:", "slow:x", "slow:0", "slow:-1", "slow:99999999999", "slow@", "slow@100", "slow@PDUIoCtl",
          "silent:3", "refuse:100", "lose@22", "crash@22", "hang@PDUNothing"})
        EXPECT_EQ(WhatIsWrongWith(wrong), "wrong value or place in \"" + std::string(wrong) + "\"");
}

} // namespace
} // namespace sim
