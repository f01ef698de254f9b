#include "tool/commands/request_pairs.h"

#include <sstream>

#include <gtest/gtest.h>

namespace marvane::tool {
namespace {

/// Requests of "can:22F190 can:1001 eth:3E00!": link, bytes (the first four characters make it similar), "!"
/// for one that was refused.
std::vector<RunRequest> Requests(const std::string& text)
{
    std::vector<RunRequest> requests;
    std::istringstream words(text);
    for (std::string word; words >> word;) {
        RunRequest request;
        request.Result = word.ends_with('!') ? read::Outcome::Refused : read::Outcome::Answered;
        if (word.ends_with('!'))
            word.pop_back();
        const std::size_t colon = word.find(':');
        request.Link = word.substr(0, colon);
        request.Bytes = word.substr(colon + 1);
        request.Similar = request.Bytes.substr(0, 4);
        requests.push_back(request);
    }
    return requests;
}

/// "0=0 1=2 2- +1": pairs, those of the first run alone, those of the second alone.
std::string Paired(const std::string& first, const std::string& second)
{
    std::string text;
    for (const RequestPair& pair : PairRequests(Requests(first), Requests(second))) {
        text += text.empty() ? "" : " ";
        if (pair.First && pair.Second)
            text += std::to_string(*pair.First) + "=" + std::to_string(*pair.Second);
        else
            text += pair.First ? std::to_string(*pair.First) + "-" : "+" + std::to_string(*pair.Second);
    }
    return text;
}

TEST(RequestPairs, AreThoseOfTheSameBytes)
{
    EXPECT_EQ(Paired("a:1001 a:22F190 a:3E00", "a:1001 a:22F190 a:3E00"), "0=0 1=1 2=2");
    EXPECT_EQ(Paired("", "a:1001"), "+0");
    EXPECT_EQ(Paired("a:1001", ""), "0-");
}

TEST(RequestPairs, LeaveOutAnInsertedAndADeletedOne)
{
    EXPECT_EQ(Paired("a:1001 a:22F190 a:3E00", "a:1001 a:1101 a:22F190 a:3E00"), "0=0 +1 1=2 2=3");
    EXPECT_EQ(Paired("a:1001 a:22F190 a:3E00", "a:1001 a:3E00"), "0=0 1- 2=1");
    EXPECT_EQ(Paired("a:1001", "a:1101 a:1001"), "+0 0=1");
}

TEST(RequestPairs, OfARepeatedRequestAreThoseThatEndedAlike)
{
    EXPECT_EQ(Paired("a:1001 a:22F190 a:3E00", "a:1001 a:22F190! a:22F190 a:3E00"), "0=0 +1 1=2 2=3");
    EXPECT_EQ(Paired("a:22F190! a:22F190 a:3E00", "a:22F190 a:3E00"), "0- 1=0 2=1");
}

TEST(RequestPairs, FindARepeatedSequenceWhereItIsLonger)
{
    EXPECT_EQ(Paired("a:3601 a:3602 a:3700", "a:3601 a:3602 a:3601 a:3602 a:3700"), "0=0 1=1 +2 +3 2=4");
}

TEST(RequestPairs, DoNotDependOnHowLinksAreInterleaved)
{
    EXPECT_EQ(Paired("a:1001 b:3E00 a:22F190 b:3E01", "b:3E00 b:3E01 a:1001 a:22F190"), "0=2 1=0 2=3 3=1");
    EXPECT_EQ(Paired("a:1001", "b:1001"), "0- +0");
}

TEST(RequestPairs, TakeTheSameBytesElsewhere)
{
    EXPECT_EQ(Paired("a:1001 a:22F190 a:3E00", "a:22F190 a:3E00 a:1001"), "0=2 1=0 2=1");
}

TEST(RequestPairs, TakeOtherDataOfTheSameServiceBetweenTheSameNeighbours)
{
    EXPECT_EQ(Paired("a:1001 a:2702AA a:3E00", "a:1001 a:2702BB a:3E00"), "0=0 1=1 2=2");
    EXPECT_EQ(Paired("a:2702AA a:1001 a:3E00", "a:1001 a:3E00 a:2702BB"), "0- 1=0 2=1 +2");
    EXPECT_EQ(Paired("a:2702AA a:2702AB", "a:2702BB"), "0=0 1-");
}

} // namespace
} // namespace marvane::tool
