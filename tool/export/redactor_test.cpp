#include "tool/export/redactor.h"

#include <gtest/gtest.h>

namespace marvane::tool {
namespace {

const HashKey Key = {0x0706050403020100, 0x0f0e0d0c0b0a0908};

const std::string Line = "{14:03:07.250 - 00001A2C} ";

std::string Redact(const std::string& log, std::size_t part, Redactor& redactor)
{
    std::string out;
    redactor.Begin(0);
    for (std::size_t at = 0; at < log.size(); at += part)
        redactor.Take(0, std::string_view(log).substr(at, part), out);
    redactor.End(0, out);
    return out;
}

std::string Redact(const std::string& log, SecretKinds kinds = AllSecrets())
{
    Redactor redactor(std::move(kinds), SecretValues(Key));
    return Redact(log, log.size(), redactor);
}

const std::string Seed =
    "    <<< pDataBytes     |00000000 <67 01 C0 FF EE 12>                                g.....          |\n";
const std::string Key2 =
    "   -->  pCoPData       |00000000 <27 02 AB CD>                                      '...            |\n";

TEST(KeyedHash, IsThatOfItsReference)
{
    std::vector<std::uint8_t> bytes;
    for (std::uint8_t i = 0; i < 15; ++i)
        bytes.push_back(i);
    EXPECT_EQ(KeyedHash(Key, bytes), 0xa129ca6149be45e5u);
}

TEST(Redactor, ReplacesASeedInBothColumns)
{
    const std::string redacted = Redact(Line + Seed);
    EXPECT_EQ(redacted.size(), (Line + Seed).size());
    EXPECT_EQ(redacted.substr(0, 63), (Line + Seed).substr(0, 63)); // up to the first two bytes
    EXPECT_EQ(redacted.find("C0 FF EE 12"), std::string::npos);
}

TEST(Redactor, AShortKeyBecomesZeros)
{
    EXPECT_EQ(
        Redact(Line + Key2),
        Line +
            "   -->  pCoPData       |00000000 <27 02 00 00>                                      '...            |\n");
}

TEST(Redactor, DoesNotDependOnHowTheFileIsCut)
{
    const std::string log = Line + Seed + "VIN WVWZZZ1JZ3W386752\r\n" + Line + Key2 + Line +
                            "C0 FF EE 12, c0ffee12\n" + Line + Seed + "end";
    const std::string whole = Redact(log);
    for (const std::size_t part : {1u, 7u, 64u}) {
        Redactor redactor(AllSecrets(), SecretValues(Key));
        EXPECT_EQ(Redact(log, part, redactor), whole);
    }
}

TEST(Redactor, EqualStaysEqualWhereverItStands)
{
    const SecretValues values(Key);
    const std::string vin = "WVWZZZ1JZ3W386752";
    const std::vector<std::uint8_t> bytes(vin.begin(), vin.end());
    const std::vector<std::uint8_t> other = values.Replacement(bytes);
    const std::string text(other.begin(), other.end());
    EXPECT_EQ(Redact("a=" + vin + ";b='" + vin + "'\n"), "a=" + text + ";b='" + text + "'\n");
    EXPECT_EQ(VinLength(other), vin.size()) << text;
}

TEST(Redactor, ALearnedSecretIsFoundInHexadecimal)
{
    const std::string redacted = Redact(Line + Seed + "sent C0 FF EE 12 or c0ffee12\n");
    const std::string end = redacted.substr(redacted.rfind("sent "));
    EXPECT_EQ(end.find("C0 FF"), std::string::npos);
    EXPECT_EQ(end.find("c0ff"), std::string::npos);
    EXPECT_EQ(end.size(), std::string("sent C0 FF EE 12 or c0ffee12\n").size());
}

TEST(Redactor, HandlesAndWordsThatLookAlikeStay)
{
    const std::string log = Line + Seed + Line + "+ PDUConnect(hMod=0xC0FFEE12, hCLL=0x00000001)\n";
    EXPECT_NE(Redact(log).find("hMod=0xC0FFEE12"), std::string::npos);
    for (const char* const text :
         {"ABCDEFGHIJKLMNOPQ\n", "12345678901234567\n", "XWVWZZZ1JZ3W386752\n", "PDU_1JZ3W386752\n"})
        EXPECT_EQ(Redact(text), text);
}

TEST(Redactor, KnowsWhichLinesItChanged)
{
    Redactor redactor(AllSecrets(), SecretValues(Key));
    const std::string log = "plain\n" + Line + Seed + "plain\nWVWZZZ1JZ3W386752\n";
    Redact(log, log.size(), redactor);
    std::vector<bool> changed;
    for (std::uint64_t line = 1; line <= 4; ++line)
        changed.push_back(redactor.IsChanged(0, line));
    EXPECT_EQ(changed, (std::vector<bool>{false, true, false, true}));
    EXPECT_EQ(redactor.ChangedLines(), 2u);
}

TEST(Redactor, ASerialNumberFollowsItsWords)
{
    EXPECT_EQ(Redact("VCI, serial number 42, Serial No.: 7\n", {words::Secret::Serial}),
              "VCI, serial number 00, Serial No.: 0\n");
    EXPECT_EQ(Redact("VCI, serial number 42\n", {words::Secret::Vin}), "VCI, serial number 42\n");
    EXPECT_EQ(Redact("the serial number is unknown\n"), "the serial number is unknown\n");
}

TEST(Redactor, KindsThatAreNotWantedStay)
{
    EXPECT_EQ(Redact(Line + Seed, {words::Secret::Vin}), Line + Seed);
}

} // namespace
} // namespace marvane::tool
