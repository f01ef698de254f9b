#include "tool/export/uds_form.h"

#include <initializer_list>
#include <vector>

#include <gtest/gtest.h>

namespace marvane::tool {
namespace {

bool IsWhole(std::initializer_list<std::uint8_t> bytes)
{
    return IsWholeUds(std::vector<std::uint8_t>(bytes), bytes.size());
}

TEST(UdsForm, MessagesWithAllTheirBytesAreWhole)
{
    EXPECT_TRUE(IsWhole({0x22, 0xF1, 0x90}));
    EXPECT_TRUE(IsWhole({0x22, 0xF1, 0x90, 0xF1, 0x87}));
    EXPECT_TRUE(IsWhole({0x7F, 0x22, 0x31}));
    EXPECT_TRUE(IsWhole({0x37}));
    EXPECT_TRUE(IsWhole({0xBA})); // no service: nothing is missing
    EXPECT_TRUE(IsWhole({0x34, 0x00, 0x12, 0x00, 0x01, 0x80}));
    EXPECT_TRUE(IsWhole({0x74, 0x20, 0x00, 0x82}));
}

TEST(UdsForm, MessagesThatEndTooEarlyAreNot)
{
    EXPECT_FALSE(IsWhole({}));
    EXPECT_FALSE(IsWhole({0x10}));
    EXPECT_FALSE(IsWhole({0x22, 0xF1}));
    EXPECT_FALSE(IsWhole({0x22, 0xF1, 0x90, 0xF1}));
    EXPECT_FALSE(IsWhole({0x7F, 0x22}));
    EXPECT_FALSE(IsWhole({0x34, 0x00, 0x12, 0x00, 0x01}));
    EXPECT_FALSE(IsWhole({0x74, 0x20, 0x00}));
}

TEST(UdsForm, LengthsThatNoMemoryHasAreNoMessage)
{
    EXPECT_FALSE(IsWhole({0x34, 0x00, 0x01, 0x00}));
    EXPECT_FALSE(IsWhole({0x34, 0x00, 0x51, 0, 0, 0, 0, 0, 0}));
    EXPECT_FALSE(IsWhole({0x74, 0x00}));
}

TEST(UdsForm, WhatTheLogCutCountsWithItsRealSize)
{
    const std::vector<std::uint8_t> shown = {0x7F};
    EXPECT_TRUE(IsWholeUds(shown, 3));
    EXPECT_FALSE(IsWholeUds({}, 3));
}

} // namespace
} // namespace marvane::tool
