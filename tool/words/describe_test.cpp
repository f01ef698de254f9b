#include "tool/words/describe.h"

#include <vector>

#include <gtest/gtest.h>

#include "tool/words/identifiers.h"
#include "tool/words/negative_codes.h"
#include "tool/words/secrets.h"

namespace marvane::words {
namespace {

using Message = std::vector<std::uint8_t>;

/// Summary and detail of a request: "read identifier|VIN".
std::string Asked(Dialect dialect, const Message& request)
{
    const RequestWords words = DescribeRequest(dialect, request);
    return words.Summary + "|" + words.Detail;
}

TEST(DialectOf, FollowsTheBeginningOfTheProtocolsName)
{
    EXPECT_EQ(DialectOf("ISO_15765_3_on_ISO_15765_2"), Dialect::Uds);
    EXPECT_EQ(DialectOf("ISO_14229_5_on_ISO_13400_2"), Dialect::Uds);
    EXPECT_EQ(DialectOf("ISO_14230_3_on_ISO_14230_2"), Dialect::Kwp);
    EXPECT_EQ(DialectOf("ISO_OBD_on_ISO_15765_4"), Dialect::Obd);
    EXPECT_EQ(DialectOf("ISO15765_CAN_6_14"), Dialect::Unknown);
    EXPECT_EQ(DialectOf("ISO_15765_31"), Dialect::Unknown);
    EXPECT_EQ(DialectOf(""), Dialect::Unknown);
}

TEST(DescribeRequest, GivesShortWordsAndTheStandardsName)
{
    EXPECT_EQ(Asked(Dialect::Uds, {0x22, 0xF1, 0x90}), "read identifier|VIN");
    EXPECT_EQ(Asked(Dialect::Uds, {0x10, 0x03}), "extended session|extendedDiagnosticSession");
    EXPECT_EQ(Asked(Dialect::Uds, {0x19, 0x02, 0xFF}), "trouble codes|reportDTCByStatusMask");
    EXPECT_EQ(Asked(Dialect::Uds, {0x31, 0x01, 0xFF, 0x00}), "start routine|eraseMemory");
    EXPECT_EQ(Asked(Dialect::Uds, {0x31, 0x02, 0x02, 0x03}), "stop routine|stopRoutine");
    EXPECT_EQ(Asked(Dialect::Uds, {0x27, 0x11}), "security seed|requestSeed");
    EXPECT_EQ(Asked(Dialect::Uds, {0x27, 0x42, 1, 2}), "security key|sendKey");
    EXPECT_EQ(Asked(Dialect::Uds, {0x2F, 0x12, 0x34, 0x03, 1}),
              "control in/output|vehicleManufacturerSpecific");
    EXPECT_EQ(Asked(Dialect::Obd, {0x09, 0x02}), "vehicle information|");
}

TEST(DescribeRequest, HasNoWordsForBytesOfAnotherDialect)
{
    for (const Dialect dialect : {Dialect::Unknown, Dialect::Kwp, Dialect::Obd})
        EXPECT_EQ(Asked(dialect, {0x22, 0xF1, 0x90}), "|");
    EXPECT_EQ(Asked(Dialect::Uds, {0x09, 0x02}), "|");
    EXPECT_EQ(Asked(Dialect::Uds, {}), "|");
}

TEST(DescribeRequest, FitsTheColumnOfTheConversation)
{
    for (unsigned sid = 0; sid < 256; ++sid)
        for (unsigned sub = 0; sub < 256; ++sub) {
            const Message request = {static_cast<std::uint8_t>(sid), static_cast<std::uint8_t>(sub), 0, 0};
            for (const Dialect dialect : {Dialect::Uds, Dialect::Obd})
                ASSERT_LE(DescribeRequest(dialect, request).Summary.size(), 21u) << sid << " " << sub;
        }
}

TEST(DescribeRequest, TakesTheSuppressBitOutOfTheSubFunction)
{
    const RequestWords quiet = DescribeRequest(Dialect::Uds, Message{0x3E, 0x80});
    EXPECT_TRUE(quiet.WantsNoAnswer);
    EXPECT_EQ(quiet.SubFunction, 0);
    EXPECT_FALSE(DescribeRequest(Dialect::Uds, Message{0x3E, 0x00}).WantsNoAnswer);
    // These have no such bit: a data byte, a transmission mode, a control parameter.
    for (const Message& request : {Message{0x22, 0x80, 0}, Message{0x2A, 0x81}, Message{0x2F, 0, 0, 0x80}})
        EXPECT_FALSE(DescribeRequest(Dialect::Uds, request).WantsNoAnswer);
}

TEST(DescribeRequest, OfACutRequestSaysWhatIsThere)
{
    EXPECT_EQ(Asked(Dialect::Uds, {0x22, 0xF1}), "read identifier|");
    EXPECT_EQ(Asked(Dialect::Uds, {0x27}), "security access|");
    EXPECT_EQ(Asked(Dialect::Uds, {0x31, 0x03, 0xFF}), "routine results|requestRoutineResults");
}

TEST(DescribeAnswer, TellsGoodAnswersRefusalsAndPendingOnesApart)
{
    const Message request = {0x22, 0xF1, 0x90};
    EXPECT_EQ(DescribeAnswer(Dialect::Uds, request, Message{0x62, 0xF1, 0x90, 0x57}).Kind,
              AnswerKind::Positive);
    const AnswerWords refused = DescribeAnswer(Dialect::Uds, request, Message{0x7F, 0x22, 0x31});
    EXPECT_EQ(refused.Kind, AnswerKind::Refused);
    EXPECT_EQ(refused.CodeName, "requestOutOfRange");
    const AnswerWords pending = DescribeAnswer(Dialect::Uds, request, Message{0x7F, 0x22, 0x78});
    EXPECT_EQ(pending.Kind, AnswerKind::Pending);
    EXPECT_EQ(pending.Code, 0x78);
}

TEST(DescribeAnswer, LeavesOutWhatIsNoAnswerToTheRequest)
{
    const Message request = {0x22, 0xF1, 0x90};
    for (const Message& answer : {Message{}, Message{0x7F}, Message{0x7F, 0x10, 0x12}, Message{0x50, 0x01}})
        EXPECT_EQ(DescribeAnswer(Dialect::Uds, request, answer).Kind, AnswerKind::Other);
    EXPECT_EQ(DescribeAnswer(Dialect::Unknown, request, Message{0x7F, 0x22, 0x31}).Kind, AnswerKind::Other);
    EXPECT_EQ(DescribeAnswer(Dialect::Uds, {}, Message{0x7F, 0x22, 0x31}).Kind, AnswerKind::Refused);
}

TEST(DescribeAnswer, SaysWhatTheBytesMeanBeyondTheirService)
{
    EXPECT_EQ(DescribeAnswer(Dialect::Uds, Message{0x10, 2}, Message{0x50, 2, 0, 0x32, 1, 0xF4}).Detail,
              "P2 50 ms, P2* 5000 ms");
    EXPECT_EQ(DescribeAnswer(Dialect::Uds, Message{0x19, 2, 0xFF},
                             Message{0x59, 2, 0xFF, 1, 2, 3, 0x2F, 4, 5, 6, 0x2F})
                  .Detail,
              "2 trouble codes");
    EXPECT_EQ(DescribeAnswer(Dialect::Uds, Message{0x19, 2, 0xFF}, Message{0x59, 2, 0xFF, 1}).Detail, "");
}

TEST(NegativeCodeName, DiffersByDialect)
{
    EXPECT_EQ(NegativeCodeName(Dialect::Uds, 0x22), "conditionsNotCorrect");
    EXPECT_EQ(NegativeCodeName(Dialect::Kwp, 0x22), "conditionsNotCorrectOrRequestSequenceError");
    EXPECT_EQ(NegativeCodeName(Dialect::Uds, 0xF3), "vehicleManufacturerSpecific");
    EXPECT_EQ(NegativeCodeName(Dialect::Uds, 0x40), "");
    EXPECT_EQ(NegativeCodeName(Dialect::Unknown, 0x22), "");
}

TEST(DataIdentifierName, KnowsSingleNumbersAndRanges)
{
    EXPECT_EQ(DataIdentifierName(0xF190), "VIN");
    EXPECT_EQ(DataIdentifierName(0xF3AB), "dynamicallyDefinedDataIdentifier");
    EXPECT_EQ(DataIdentifierName(0x00FF), "");
    EXPECT_EQ(DataIdentifierName(0x0100), "vehicleManufacturerSpecific");
    EXPECT_EQ(DataIdentifierName(0xA600), "");
    EXPECT_EQ(DataIdentifierName(0xF802), "VIN");
    EXPECT_EQ(DataIdentifierName(0xFFFF), "");
}

TEST(Secrets, OfRequestsAreWhatIsSentToTheVehicle)
{
    EXPECT_EQ(SecretOfRequest(Dialect::Uds, Message{0x27, 2, 1, 2}), (SecretPart{Secret::Key, 2}));
    EXPECT_EQ(SecretOfRequest(Dialect::Uds, Message{0x27, 1}), SecretPart());
    EXPECT_EQ(SecretOfRequest(Dialect::Uds, Message{0x2E, 0xF1, 0x90, 'W'}), (SecretPart{Secret::Vin, 3}));
    EXPECT_EQ(SecretOfRequest(Dialect::Uds, Message{0x3D, 0x12, 1, 2, 3, 9}),
              (SecretPart{Secret::Transfer, 5}));
    EXPECT_EQ(SecretOfRequest(Dialect::Uds, Message{0x22, 0xF1, 0x90}), SecretPart());
    EXPECT_EQ(SecretOfRequest(Dialect::Kwp, Message{0x27, 2, 1, 2}), SecretPart());
}

TEST(Secrets, OfAnswersDependOnWhatWasAskedFor)
{
    const Message one = {0x22, 0xF1, 0x90};
    const Message two = {0x22, 0xF1, 0x87, 0xF1, 0x8C};
    EXPECT_EQ(SecretOfAnswer(Dialect::Uds, one, Message{0x62, 0xF1, 0x90, 'W'}),
              (SecretPart{Secret::Vin, 3}));
    EXPECT_EQ(SecretOfAnswer(Dialect::Uds, two, Message{0x62, 0xF1, 0x87, 'A', 0xF1, 0x8C, '1'}),
              (SecretPart{Secret::Serial, 6}));
    EXPECT_EQ(SecretOfAnswer(Dialect::Uds, two, Message{0x62, 0xF1, 0x87, 'A'}),
              (SecretPart{Secret::Serial, 3}));
    EXPECT_EQ(SecretOfAnswer(Dialect::Uds, {}, Message{0x67, 1, 2}), (SecretPart{Secret::Key, 2}));
    EXPECT_EQ(SecretOfAnswer(Dialect::Obd, {}, Message{0x49, 2, 1, 'W'}), (SecretPart{Secret::Vin, 2}));
    EXPECT_EQ(SecretOfAnswer(Dialect::Uds, one, Message{0x7F, 0x22, 0x31}), SecretPart());
}

} // namespace
} // namespace marvane::words
