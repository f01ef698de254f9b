// Communication reports of the target library.
#include <gtest/gtest.h>

#include "tests/support/session.h"

namespace marvane::testing {
namespace {

constexpr CHAR8 ShortName[21] = "Address";
constexpr CHAR8 LongName[21] = "TwentyCharactersLong";

/// A session whose fake target stores the comms callback that it receives.
class CommsLog : public ::testing::Test
{
protected:
    void Begin(Changes changes)
    {
        session = std::make_unique<Session>(changes);
        Begin();
    }

    void Begin()
    {
        session->Construct();
        for (const SeenCall& call : session->Fake().TakeCalls())
            if (call.Function == "PDU_MS_SetLogCallback")
                callback =
                    reinterpret_cast<PDU_MS_LOG_CALLBACK>(static_cast<std::uintptr_t>(call.Arguments[0]));
        ASSERT_NE(callback, nullptr);
    }

    std::string Reported(UNUM8 direction, UNUM32 protocol, const std::vector<LogParameter>& parameters = {})
    {
        return session->Logged([&] {
            EXPECT_EQ(callback("message", direction, protocol, static_cast<UNUM32>(parameters.size()),
                               parameters.data()),
                      0u);
        });
    }

    std::unique_ptr<Session> session;
    PDU_MS_LOG_CALLBACK callback = nullptr;
};

TEST_F(CommsLog, AReportWithoutParametersIsOneLine)
{
    Begin({});
    EXPECT_EQ(Reported(1, 256), "{stamp} [DoIP] ->  message\n");
    EXPECT_EQ(Reported(0, 256), "{stamp} [DoIP] <-  message\n");
}

TEST_F(CommsLog, Protocol258HasTheLabelOf257)
{
    Begin({});
    EXPECT_EQ(Reported(1, 257), "{stamp} [DoIP (Option 1)] ->  message\n");
    EXPECT_EQ(Reported(1, 258), "{stamp} [DoIP (Option 1)] ->  message\n");
}

TEST_F(CommsLog, AnUnknownProtocolIsNullEachTime)
{
    Begin({});
    EXPECT_EQ(Reported(0, 42), "{stamp} NULL <-  message\n");
    EXPECT_EQ(Reported(0, 42), "{stamp} NULL <-  message\n");
}

TEST_F(CommsLog, NumbersFollowNamesOfTwentyColumns)
{
    Begin({});
    const UNUM32 value = 0xBEEF;
    EXPECT_EQ(Reported(1, 256, {{0x1000, 0, ShortName, &value}, {0x1000, 0, LongName, &value}}),
              "{stamp} [DoIP] ->  message\n"
              "{stamp}    -->  Address             \t= 0x0000BEEF\n"
              "{stamp}    -->  TwentyCharactersLong\t= 0x0000BEEF\n");
}

TEST_F(CommsLog, BytesWithoutANameAreDumpedToo)
{
    Begin({});
    const UNUM8 bytes[] = {0x41};
    const LogParameterBytes data = {.Length = 1, .Bytes = bytes};
    EXPECT_EQ(Reported(1, 256, {{0x1002, 0, nullptr, &data}}),
              "{stamp} [DoIP] ->  message\n"
              "{stamp}    -->  <NULL STRING>  |00000000 <41>                                               "
              "A               |\n");
}

TEST_F(CommsLog, BytesAreDumpedWholeAtAllLevels)
{
    Begin({{"LogFnCalls", "0"}, {"LogFnDecodeArgs", "0"}, {"LogMaxPduBuff", "1"}});
    const UNUM8 bytes[] = {0x02, 0xFD, 0x41};
    const LogParameterBytes data = {.Length = 3, .Bytes = bytes};
    EXPECT_EQ(Reported(0, 256, {{0x1002, 0, "Payload", &data}}),
              "{stamp} [DoIP] <-  message\n"
              "{stamp}    <--  Payload        |00000000 <02 FD 41>                                         "
              "..A             |\n");
}

TEST_F(CommsLog, AnUnknownKindOfParameterShowsItsNumberAndTheNextOneFollows)
{
    Begin({});
    const UNUM32 value = 7;
    EXPECT_EQ(Reported(0, 256, {{0x1001, 0, nullptr, nullptr}, {0x1000, 0, ShortName, &value}}),
              "{stamp} [DoIP] <-  message\n"
              "{stamp}    <--  Unhandled parameter - Type= 0x1001\n"
              "{stamp}    <--  Address             \t= 0x00000007\n");
}

TEST_F(CommsLog, WithLogCommsFileZeroReportsAreLoggedBetweenTheCalls)
{
    Begin({{"LogDoIPComms", "1"}});
    const std::string text = session->Logged([&] {
        session->Fake().Answer = [&](const FakeCall&) {
            callback("inside", 1, 256, 0, nullptr);
            return PDU_STATUS_NOERROR;
        };
        session->Api().PDUModuleConnect(1);
    });
    EXPECT_EQ(text, "{stamp} + PDUModuleConnect(hMod=0x00000001)\n"
                    "{stamp} [DoIP] ->  inside\n"
                    "{stamp} - PDUModuleConnect<PDU_STATUS_NOERROR (0x0000)>\n");
}

TEST_F(CommsLog, ReportsGoToAFileOfTheirOwn)
{
    Begin({{"LogDoIPComms", "1"}, {"LogCommsFile", "1"}});
    EXPECT_EQ(Reported(1, 256), "");
    // The folder's name has no separator at its end, so the file is created beside the folder.
    std::string found;
    for (const auto& entry : std::filesystem::directory_iterator(session->Folder().Path()))
        if (entry.path().filename().string().starts_with("logsD-PDU_API_Comms_"))
            found += FileText(entry.path());
    EXPECT_EQ(WithoutStamps(found), "{stamp} [DoIP] ->  message\n");
}

TEST_F(CommsLog, AReportForAFileThatCouldNotBeOpenedIsDropped)
{
    // The sole API file is reused. There is no comms file to reuse, so the folder itself is opened, which
    // fails.
    session = std::make_unique<Session>(Changes{{"LogDoIPComms", "1"}, {"LogCommsFile", "1"}});
    std::filesystem::create_directories(session->LogFolder());
    WriteFileBytes(session->LogFolder() / "D-PDU_API_Logger_05-03-2020_10-11-12.LGR", "");
    Begin();
    EXPECT_EQ(Reported(1, 256), "");
    EXPECT_EQ(session->LogNames("").size(), 1u);
}

TEST_F(CommsLog, AReportLongerThanTheBufferEndsWithTheMarker)
{
    Begin({});
    const std::vector<UNUM8> bytes(20000, 0x55);
    const LogParameterBytes data = {.Length = 20000, .Bytes = bytes.data()};
    const std::string text = Reported(0, 256, {{0x1002, 0, "Payload", &data}, {0x1001, 0, nullptr, nullptr}});
    EXPECT_EQ(text.find("\t\t\t\t...\n"), text.size() - 8);
}

TEST_F(CommsLog, WithLoggingOffTheReportIsDroppedAndTheStatusIsZero)
{
    Begin({{"LogEnabled", "0"}});
    EXPECT_EQ(callback("message", 1, 256, 0, nullptr), 0u);
    EXPECT_FALSE(std::filesystem::exists(session->LogFolder()));
}

} // namespace
} // namespace marvane::testing
