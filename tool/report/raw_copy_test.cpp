#include "tool/report/raw_copy.h"

#include <utility>

#include <gtest/gtest.h>

#include "tests/support/page_block.h"

namespace marvane::tool::report {
namespace {

/// Replaces digits, and keeps the last piece back until the end of the file.
class Digits : public read::ByteFilter
{
public:
    void Begin(std::uint32_t) override {}
    void Take(std::uint32_t, std::string_view bytes, std::string& out) override
    {
        out += kept_;
        kept_ = bytes;
        for (char& character : kept_)
            character = character >= '0' && character <= '9' ? '#' : character;
    }
    void Skip(std::uint32_t, std::uint64_t) override {}
    void End(std::uint32_t, std::string& out) override { out += std::exchange(kept_, {}); }

private:
    std::string kept_;
};

/// Passes two files through a copy; returns what comes out.
std::string Pass(RawCopy& copy)
{
    std::string out;
    copy.Begin(0);
    copy.Take(0, "a1", out);
    copy.Take(0, "b2", out);
    copy.End(0, out);
    copy.Begin(1);
    copy.Take(1, "c", out);
    copy.End(1, out);
    return out;
}

TEST(RawCopy, HasTheBytesOfAllFiles)
{
    RawCopy copy(nullptr);
    EXPECT_EQ(Pass(copy), "a1b2c");
    EXPECT_EQ(copy.Bytes, (std::vector<std::uint64_t>{4, 1}));
    EXPECT_EQ(testing::Unpacked(copy.Finish()), "a1b2c");
}

TEST(RawCopy, IsOfWhatAnotherFilterMakesOfThem)
{
    Digits digits;
    RawCopy copy(&digits);
    EXPECT_EQ(Pass(copy), "a#b#c");
    EXPECT_EQ(copy.Bytes, (std::vector<std::uint64_t>{4, 1}));
    EXPECT_EQ(testing::Unpacked(copy.Finish()), "a#b#c");
}

} // namespace
} // namespace marvane::tool::report
