#include "tool/console/arguments.h"

#include <gtest/gtest.h>

namespace marvane::tool {
namespace {

using Words = std::vector<std::string>;

constexpr Option Own[] = {
    {"--link", "LINK", "Only this link"},
    {"-n,--limit", "N", "At most N"},
    {"-f,--follow", "", "Go on"},
    {"-e,--grep", "TEXT", "Only with this text", {}, true},
    {"--time", "HOW", "How times are shown", "abs,rel,delta"},
};
constexpr OptionGroup Groups[] = {{"Options", Own}};
constexpr Command Sample = {.Name = "sample", .Takes = {"[LOG]...", 0, 2}, .Groups = Groups};

/// What ParseArguments says about words that it refuses.
std::string Refusal(const Words& words, const Command& command = Sample)
{
    try {
        ParseArguments(command, words);
    } catch (const UsageError& error) {
        return error.what();
    }
    return "accepted";
}

TEST(ParseArguments, FindsOptionsByTheirLongName)
{
    const Arguments arguments = ParseArguments(Sample, {"-f", "--link", "2", "-n5", "a.LGR", "--time=rel"});
    EXPECT_TRUE(arguments.Has("--follow"));
    EXPECT_EQ(arguments.Value("--link"), "2");
    EXPECT_EQ(arguments.Number("--limit"), 5u);
    EXPECT_EQ(arguments.Value("--time"), "rel");
    EXPECT_FALSE(arguments.Has("--grep"));
    EXPECT_EQ(arguments.Operands(), Words{"a.LGR"});
}

TEST(ParseArguments, TakesAllValuesOfARepeatedOptionAndTheLastOfOthers)
{
    const Arguments arguments =
        ParseArguments(Sample, {"-e", "a", "--grep", "b", "--link", "1", "--link", "2"});
    EXPECT_EQ(arguments.Values("--grep"), (Words{"a", "b"}));
    EXPECT_EQ(arguments.Values("--link").back(), "2");
    EXPECT_EQ(arguments.Value("--link"), "2");
}

TEST(ParseArguments, AValueOrAnOperandMayBeginWithAHyphen)
{
    const Arguments arguments = ParseArguments(Sample, {"--link", "-5m", "-", "--", "--odd.LGR"});
    EXPECT_EQ(arguments.Value("--link"), "-5m");
    EXPECT_EQ(arguments.Operands(), (Words{"-", "--odd.LGR"}));
}

TEST(ParseArguments, APathWithASlashIsNoOption)
{
    EXPECT_EQ(ParseArguments(Sample, {"/var/log/a.LGR"}).Operands(), Words{"/var/log/a.LGR"});
}

TEST(ParseArguments, NamesTheNearestOption)
{
    EXPECT_EQ(Refusal({"--folow"}), "unknown option '--folow'; did you mean '--follow'?");
    EXPECT_EQ(Refusal({"--lnik=2"}), "unknown option '--lnik'; did you mean '--link'?");
    EXPECT_EQ(Refusal({"-x"}), "unknown option '-x'");
}

TEST(ParseArguments, RefusesWhatDoesNotFit)
{
    EXPECT_EQ(Refusal({"--link"}), "option --link needs a value");
    EXPECT_EQ(Refusal({"--follow=3"}), "option --follow takes no value");
    EXPECT_EQ(Refusal({"--time", "real"}), "--time 'real' is none of: abs, rel, delta; did you mean 'rel'?");
    EXPECT_EQ(Refusal({"a", "b", "c"}), "one argument too many for sample: 'c'");
    EXPECT_EQ(Refusal({}, {.Name = "one", .Takes = {"FILE", 1, 1}}), "one needs FILE");
}

TEST(ParseArguments, LetsHelpBeAskedForWithoutTheOperandsNeeded)
{
    EXPECT_TRUE(ParseArguments({.Name = "one", .Takes = {"FILE", 1, 1}}, {"-h"}).Has("--help"));
}

TEST(Arguments, RefuseWhatIsNoNumberInRange)
{
    for (const char* text : {"x", "5x", "", "-1", "0", "11", "99999999999999999999"}) {
        Arguments arguments;
        arguments.Set("--limit", {text});
        EXPECT_THROW(arguments.Number("--limit", 1, 10), UsageError) << text;
    }
}

} // namespace
} // namespace marvane::tool
