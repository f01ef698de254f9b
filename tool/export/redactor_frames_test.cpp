// Secrets in messages that are split over frames, each of which is a report or a result of its own.
#include <gtest/gtest.h>

#include "tool/export/redactor.h"

namespace marvane::tool {
namespace {

const HashKey Key = {0x0706050403020100, 0x0f0e0d0c0b0a0908};
const std::string Stamp = "{14:03:07.250 - 00001A2C} ";

std::string Redact(const std::string& log, SecretKinds kinds = AllSecrets())
{
    Redactor redactor(std::move(kinds), SecretValues(Key));
    std::string out;
    redactor.Begin(0);
    redactor.Take(0, log, out);
    redactor.End(0, out);
    return out;
}

/// "62 F1" as the bytes that it shows.
std::string BytesOf(const std::string& hex)
{
    std::string bytes;
    for (std::size_t at = 0; at < hex.size(); at += 3)
        bytes += static_cast<char>(std::stoi(hex.substr(at, 2), nullptr, 16));
    return bytes;
}

/// A row of a listing.
std::string Row(const std::string& arrow, const std::string& label, const std::string& hex)
{
    std::string text = BytesOf(hex);
    for (char& character : text)
        character = character >= ' ' && character < 0x7F ? character : '.';
    text.resize(16, ' ');
    std::string cells = "<" + hex + ">";
    cells.resize(51, ' ');
    return Stamp + arrow + label + "|00000000 " + cells + text + "|\n";
}

/// A report of one frame. Without an address: 0.
std::string Frame(const std::string& hex, unsigned address = 0x7E8, bool isSent = false)
{
    char number[16];
    std::snprintf(number, sizeof number, "0x%08X", address);
    const std::string arrow = isSent ? "   -->  " : "   <--  ";
    return Stamp + (isSent ? "NULL ->  CAN message\n" : "NULL <-  CAN message\n") +
           (address == 0 ? "" : Stamp + arrow + "Address             \t= " + number + "\n") +
           Row(arrow, "Message        ", hex);
}

/// The bytes of each listing of a log, a line each.
std::string Shown(const std::string& log)
{
    std::string shown;
    for (std::size_t at = log.find('|'); at != std::string::npos; at = log.find("|0", at + 1)) {
        const std::size_t begin = log.find('<', at) + 1;
        shown += log.substr(begin, log.find('>', begin) - begin) + "\n";
    }
    return shown;
}

/// What stands in the place of some bytes.
std::string Other(const std::string& hex)
{
    const std::string bytes = BytesOf(hex);
    std::string other;
    for (const std::uint8_t byte : SecretValues(Key).Replacement(
             SecretBytes(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()))) {
        char text[8];
        std::snprintf(text, sizeof text, "%s%02X", other.empty() ? "" : " ", byte);
        other += text;
    }
    return other;
}

const std::string First = "10 14 62 F1 90 57 53 49";
const std::string Second = "21 4D 56 43 31 45 32 46";
const std::string Third = "22 33 30 30 30 30 34 32";

TEST(RedactedFrames, OfAVinHoldNothingOfIt)
{
    EXPECT_EQ(Shown(Redact(Frame(First) + Frame("30 00 00", 0x7E0, true) + Frame(Second) + Frame(Third))),
              "10 14 62 F1 90 30 30 30\n30 00 00\n21 " + Other("4D 56 43 31 45 32 46") + "\n22 " +
                  Other("33 30 30 30 30 34 32") + "\n");
}

TEST(RedactedFrames, AreKnownAfterACanIdentifierAndAnAddressExtension)
{
    const std::string secret = Other("4D 56 43 31 45 32 46");
    const std::string id = "00 00 07 E8 ";
    EXPECT_EQ(Shown(Redact(Frame(id + First, 0) + Frame(id + Second, 0))),
              id + "10 14 62 F1 90 30 30 30\n" + id + "21 " + secret + "\n");
    const std::string wide = "18 DA F1 10 ";
    EXPECT_EQ(Shown(Redact(Frame(wide + First, 0) + Frame(wide + Second, 0))),
              wide + "10 14 62 F1 90 30 30 30\n" + wide + "21 " + secret + "\n");
    EXPECT_EQ(Shown(Redact(Frame("F1 10 14 62 F1 90 57 53") + Frame("F1 21 49 4D 56 43 31 45"))),
              "F1 10 14 62 F1 90 30 30\nF1 21 " + Other("49 4D 56 43 31 45") + "\n");
}

TEST(RedactedFrames, OfSeveralSendersAreToldApart)
{
    const std::string harmless = "03 22 F1 86";
    const std::string redacted = Shown(Redact(
        Frame(First, 0x7E8) + Frame(First, 0x7E9) + Frame(Second, 0x7E8) + Frame(harmless, 0x7E0, true) +
        Frame(Second, 0x7E9) + Frame(Third, 0x7E8) + Frame(Third, 0x7E9)));
    const std::string first = "10 14 62 F1 90 30 30 30\n";
    const std::string second = "21 " + Other("4D 56 43 31 45 32 46") + "\n";
    const std::string third = "22 " + Other("33 30 30 30 30 34 32") + "\n";
    EXPECT_EQ(redacted, first + first + second + harmless + "\n" + second + third + third);
    // Without an address the frames of two messages are taken for those of one.
    EXPECT_EQ(Shown(Redact(Frame(First, 0) + Frame(First, 0) + Frame(Second, 0) + Frame(Second, 0) +
                           Frame(Third, 0) + Frame(Third, 0))),
              first + first + second + second + third + third);
}

TEST(RedactedFrames, OfOtherMessagesKeepTheBeginning)
{
    // A VIN may stand anywhere in it.
    EXPECT_EQ(Shown(Redact(Frame("10 0B 59 02 FF 01 23 45") + Frame("21 2F 9A 04 11 08"))),
              "10 0B 59 02 FF 00 00 00\n21 " + Other("2F 9A 04 11 08") + "\n");
    const std::string seed = Frame("10 0A 67 01 C0 FF EE 12") + Frame("21 5E C4 E7 7A");
    EXPECT_EQ(Redact(seed, {words::Secret::Vin}), seed);
    EXPECT_EQ(Shown(Redact(seed)),
              "10 0A 67 01 " + Other("C0 FF EE 12") + "\n21 " + Other("5E C4 E7 7A") + "\n");
}

TEST(RedactedFrames, ThatLookLikeOthersAreThoseThatAreExpected)
{
    // After the first byte: a frame of its own with an address extension.
    EXPECT_EQ(Shown(Redact(Frame("10 0A 67 01 C0 FF EE 12") + Frame("21 01 02 03 04 AA AA AA"))),
              "10 0A 67 01 " + Other("C0 FF EE 12") + "\n21 " + Other("01 02 03 04") + " AA AA AA\n");
}

TEST(RedactedFrames, AfterTheLastOneAreMessagesAgain)
{
    const std::string request = Frame("03 22 F1 86", 0x7E8);
    const std::string log = Frame(First) + Frame(Second) + Frame(Third) + request;
    EXPECT_TRUE(Redact(log).ends_with(request));
}

TEST(RedactedFrames, WithoutAFirstFrameHoldNothing)
{
    const std::string second = "21 " + Other("4D 56 43 31 45 32 46") + "\n";
    EXPECT_EQ(Shown(Redact(Frame(Second) + Frame("22 33 30") + Frame("03 7F 22 31"))),
              second + "22 30 30\n03 7F 22 31\n");
    // As far as anybody knows it is a piece of what is to be redacted.
    EXPECT_EQ(Shown(Redact(Frame(Second), {words::Secret::Key})), second);
    EXPECT_EQ(Shown(Redact(Frame("00 00 07 E8 " + Second, 0))), "00 00 07 E8 " + second);
    EXPECT_EQ(Shown(Redact(Frame("18 DA F1 10 " + Second, 0))), "18 DA F1 10 " + second);
    EXPECT_EQ(Shown(Redact(Frame("F1 21 49 4D 56 43 31 45"))), "F1 21 " + Other("49 4D 56 43 31 45") + "\n");
    EXPECT_EQ(Shown(Redact(Frame("62 21 49 4D 56 43 31 45"))), "62 21 " + Other("49 4D 56 43 31 45") + "\n");
}

TEST(RedactedFrames, WithoutAFirstFrameAreThoseAfterTheEndOfAnotherMessage)
{
    const std::string whole = Frame(First) + Frame(Second) + Frame(Third);
    EXPECT_EQ(Shown(Redact(whole + Frame(Second))),
              Shown(Redact(whole)) + "21 " + Other("4D 56 43 31 45 32 46") + "\n");
}

TEST(RedactedFrames, AreNotWhatAReportOfMessagesShows)
{
    const std::string request = Row("   -->  ", "pCoPData       ", "22 F1 86");
    const std::string report = Frame("22 F1 86", 0x7E0, true);
    EXPECT_EQ(Redact(request + report), request + report); // the application asked for it
    const std::string withIdentifier = Frame("00 00 07 E0 22 F1 86", 0, true);
    EXPECT_EQ(Redact(request + withIdentifier), request + withIdentifier);
    const std::string answerWithIdentifier = Frame("00 00 07 E8 62 F1 86 01", 0);
    EXPECT_EQ(Redact(answerWithIdentifier + withIdentifier), answerWithIdentifier + withIdentifier);
    const std::string answers = Frame("62 F1 86 01") + Frame("7F 22 31") + Frame("62 2E 01 05 21 21 21 21");
    EXPECT_EQ(Redact(answers + report), answers + report);
    const std::string longer = Frame("22 F1 86 F1 87 F1 88 F1 89", 0x7E0, true); // than a frame
    EXPECT_EQ(Redact(longer), longer);
    const std::string others = Frame("30 21 00") + Frame("02 21 80");
    EXPECT_EQ(Redact(others), others);
    EXPECT_EQ(Shown(Redact(report)), "22 00 00\n"); // it may be the third of a message
}

TEST(RedactedFrames, OfOneTitleAreNoMessages)
{
    const std::string title = Stamp + "[DoIP] <-  Answer\n";
    const auto answer = [&](const std::string& hex) {
        return title + Row("   <--  ", "Message        ", hex);
    };
    EXPECT_EQ(Shown(Redact(answer("62 F1 86 01") + answer("22 33 30") + Frame("22 33 30"))),
              "62 F1 86 01\n22 33 30\n22 30 30\n");
    // A frame tells more than an answer.
    EXPECT_EQ(Shown(Redact(Frame("62 F1 86 01") + Frame("03 7F 22 31") + Frame("22 33 30"))),
              "62 F1 86 01\n03 7F 22 31\n22 30 30\n");
}

TEST(RedactedFrames, OfOneFrameAreReadAsTheirMessage)
{
    EXPECT_EQ(Shown(Redact(Frame("06 67 01 C0 FF EE 12 AA"))), "06 67 01 " + Other("C0 FF EE 12") + " AA\n");
    const std::string harmless = Frame("03 22 F1 90 AA AA AA AA", 0x7E0, true) + Frame("02 10 03");
    EXPECT_EQ(Redact(harmless), harmless);
}

TEST(RedactedFrames, OfALongCanFdMessageToo)
{
    const std::string head = "00 00 00 00 07 E8 "; // no identifier of a frame: the length would be 0
    EXPECT_EQ(Redact(Frame(head)), Frame(head));
    EXPECT_EQ(Shown(Redact(Frame("00 0A 67 01 C0 FF EE 12 5E C4 E7 7A"))),
              "00 0A 67 01 " + Other("C0 FF EE 12 5E C4 E7 7A") + "\n");
    EXPECT_EQ(Shown(Redact(Frame("10 00 00 00 20 00 36 01 13 37 13 37", 0x7E0, true) +
                           Frame("21 AA BB CC DD EE FF 01", 0x7E0, true))),
              "10 00 00 00 20 00 36 01 " + Other("13 37 13 37") + "\n21 " + Other("AA BB CC DD EE FF 01") +
                  "\n");
}

TEST(RedactedFrames, OfARawLinkAreThoseOfItsResults)
{
    const auto result = [](const std::string& hex) { return Row("    <<< ", "pDataBytes     ", hex); };
    EXPECT_EQ(Shown(Redact(result("00 00 07 E8 " + First) + result("00 00 07 E8 " + Second))),
              "00 00 07 E8 10 14 62 F1 90 30 30 30\n00 00 07 E8 21 " + Other("4D 56 43 31 45 32 46") + "\n");
    EXPECT_EQ(Shown(Redact(result("00 00 07 E8 " + Second))),
              "00 00 07 E8 21 " + Other("4D 56 43 31 45 32 46") + "\n");
    // Without an identifier it is the message of a link.
    const std::string message = result("21 80");
    EXPECT_TRUE(Redact(Frame(First, 0) + message).ends_with(message));
}

} // namespace
} // namespace marvane::tool
