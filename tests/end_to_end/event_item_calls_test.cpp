// PDUGetEventItem and PDUDestroyItem.
#include "tests/support/call_test.h"

namespace marvane::testing {
namespace {

class EventItemCalls : public CallTest
{
protected:
    static std::function<void(const FakeCall&)> Return(PDU_EVENT_ITEM* returned)
    {
        return [returned](const FakeCall& call) { At<PDU_EVENT_ITEM*>(call.Arguments[2]) = returned; };
    }

    static std::string Entry(const void* place)
    {
        return "(hMod=0x00000001, hCLL=0x0000002A, ppEventItem=" + PointerText(place) + ")";
    }

    /// The decoded lines of a PDUGetEventItem that returns this item.
    std::string Decoded(PDU_EVENT_ITEM* item)
    {
        Answer("PDUGetEventItem", PDU_STATUS_NOERROR, Return(item));
        const std::string text =
            Logged([&] { EXPECT_EQ(Api().PDUGetEventItem(1, 42, &place), PDU_STATUS_NOERROR); });
        EXPECT_EQ(place, item);
        const std::string entry = "{stamp} + PDUGetEventItem" + Entry(&place) + "\n";
        const std::string exit = "{stamp} - PDUGetEventItem<PDU_STATUS_NOERROR (0x0000)>\n";
        EXPECT_TRUE(text.starts_with(entry) && text.ends_with(exit)) << text;
        return text.substr(entry.size(), text.size() - entry.size() - exit.size());
    }

    /// The summary line of the item, with this text for its type and its handle.
    std::string Summary(const PDU_EVENT_ITEM& item, const std::string& type, const std::string& handle) const
    {
        return "{stamp}    <--  *ppEventItem (" + PointerText(&item) + ") type= " + type +
               ", hCoP=" + handle + ", Timestamp = 3000000000, pCoPTag = " + PointerText(item.pCoPTag) + "\n";
    }

    void* const tag = Unreadable<void>();
    PDU_EVENT_ITEM* place = nullptr;
    T_PDU_STATUS status = PDU_COPST_FINISHED;
    PDU_EVENT_ITEM statusItem = {
        .ItemType = PDU_IT_STATUS, .hCop = 9, .pCoPTag = tag, .Timestamp = 3000000000u, .pData = &status};
};

TEST_F(EventItemCalls, AResultHasASummaryAndIsDecodedOneLevelDeeper)
{
    UNUM8 payload[] = {0x62, 0xF1, 0x90};
    PDU_RESULT_DATA result = {};
    result.UniqueRespIdentifier = 5;
    result.AcceptanceId = 1;
    result.TxMsgDoneTimestamp = 11;
    result.StartMsgTimestamp = 22;
    result.NumDataBytes = 3;
    result.pDataBytes = payload;
    PDU_EVENT_ITEM item = {
        .ItemType = PDU_IT_RESULT, .hCop = 9, .pCoPTag = tag, .Timestamp = 3000000000u, .pData = &result};
    const std::string lines = Summary(item, "PDU_IT_RESULT (0x1300)", "0x00000009") +
                              "{stamp}     <<< pResult->RxFlag->NumFlagBytes\t= 0\n"
                              "{stamp}     <<< UniqueRespIdentifier\t= 5\n"
                              "{stamp}     <<< AcceptanceId        \t= 1\n"
                              "{stamp}     <<< pResult->TimestampFlags->NumFlagBytes\t= 0\n"
                              "{stamp}     <<< TxMsgDoneTimestamp  \t= 11\n"
                              "{stamp}     <<< StartMsgTimestamp   \t= 22\n"
                              "{stamp}     <<< DataSize\t\t= 3\n";
    const std::string bytes = "{stamp}     <<< pDataBytes     |00000000 <62 F1 90>                           "
                              "              b..             |\n";
    ExpectAtAllLevels({{.Name = "PDUGetEventItem",
                        .Call = [&] { return Api().PDUGetEventItem(1, 42, &place); },
                        .Seen = {1, 42, Raw(&place)},
                        .Effect = Return(&item),
                        .Arguments = Entry(&place),
                        .After = ResultLines(lines, lines + bytes)}});
    EXPECT_EQ(place, &item);
    EXPECT_EQ(item.hCop, 9u);
    EXPECT_EQ(item.pData, &result);
    EXPECT_EQ(result.pDataBytes, payload);
    EXPECT_EQ(payload[0], 0x62);
}

TEST_F(EventItemCalls, AnEmptyQueueGivesItsStatusOnlyAndTheOutputPointerIsNotRead)
{
    ExpectAtAllLevels({{.Name = "PDUGetEventItem",
                        .Call = [&] { return Api().PDUGetEventItem(1, 42, Unreadable<PDU_EVENT_ITEM*>()); },
                        .Seen = {1, 42, 0x10},
                        .Status = PDU_ERR_EVENT_QUEUE_EMPTY,
                        .StatusText = "PDU_ERR_EVENT_QUEUE_EMPTY (0x0071)",
                        .Arguments = Entry(Unreadable<void>())}});
}

TEST_F(EventItemCalls, AnItemReturnedByAFailedCallIsNotShown)
{
    Start({{"LogFnDecodeRsps", "2"}});
    Answer("PDUGetEventItem", PDU_ERR_EVENT_QUEUE_EMPTY, Return(&statusItem));
    EXPECT_EQ(Logged([&] { EXPECT_EQ(Api().PDUGetEventItem(1, 42, &place), PDU_ERR_EVENT_QUEUE_EMPTY); }),
              "{stamp} + PDUGetEventItem" + Entry(&place) +
                  "\n"
                  "{stamp} - PDUGetEventItem<PDU_ERR_EVENT_QUEUE_EMPTY (0x0071)>\n");
    EXPECT_EQ(place, &statusItem);
}

TEST_F(EventItemCalls, ANullOutputPointerIsForwardedWithoutAWarning)
{
    ExpectAtAllLevels({{.Name = "PDUGetEventItem",
                        .Call = [&] { return Api().PDUGetEventItem(1, 42, nullptr); },
                        .Seen = {1, 42, 0},
                        .Arguments = Entry(nullptr)}});
}

TEST_F(EventItemCalls, ASuccessWithoutAnItemIsReportedByOneLine)
{
    const std::string line = "{stamp}    <--  *ppEventItem\t= <NULL>\n";
    ExpectAtAllLevels({{.Name = "PDUGetEventItem",
                        .Call = [&] { return Api().PDUGetEventItem(1, 42, &place); },
                        .Seen = {1, 42, Raw(&place)},
                        .Effect = Return(nullptr),
                        .Arguments = Entry(&place),
                        .After = ResultLines(line)}});
    EXPECT_EQ(place, nullptr);
}

TEST_F(EventItemCalls, WithLogFnDecodeRspsZeroASuccessWithoutAnItemHasNoDecodedLine)
{
    Start({{"LogFnDecodeArgs", "2"}});
    EXPECT_EQ(Decoded(nullptr), "");
}

TEST_F(EventItemCalls, AnUndefinedComPrimitiveIsNamedInTheSummary)
{
    Start({{"LogFnDecodeRsps", "1"}});
    statusItem.hCop = 0xFFFFFFFF;
    EXPECT_EQ(Decoded(&statusItem), Summary(statusItem, "PDU_IT_STATUS (0x1301)", "<PDU_HANDLE_UNDEF>") +
                                        "{stamp}     <<< Status        \t= PDU_COPST_FINISHED (0x8012)\n");
}

TEST_F(EventItemCalls, AnUnknownTypePrintsNullAndItsNumber)
{
    Start({{"LogFnDecodeRsps", "1"}});
    statusItem.ItemType = 0x1234;
    EXPECT_EQ(Decoded(&statusItem), Summary(statusItem, "<NULL> (0x1234)", "0x00000009") +
                                        "{stamp}     <<< Unknown ItemType = 4660\n");
    statusItem.ItemType = PDU_IT_IO_VEHICLE_ID_REQUEST_EX;
    EXPECT_EQ(Decoded(&statusItem), Summary(statusItem, "<NULL> (0x10000)", "0x00000009") +
                                        "{stamp}     <<< Unknown ItemType = 65536\n");
}

TEST_F(EventItemCalls, AKnownTypeThatIsNoEventIsNamedAndNotDecoded)
{
    Start({{"LogFnDecodeRsps", "1"}});
    statusItem.ItemType = PDU_IT_RSC_ID;
    EXPECT_EQ(Decoded(&statusItem), Summary(statusItem, "PDU_IT_RSC_ID (0x1400)", "0x00000009") +
                                        "{stamp}     <<< Unknown ItemType = 5120\n");
}

TEST_F(EventItemCalls, ErrorsAndInformationAreDecoded)
{
    Start({{"LogFnDecodeRsps", "1"}});
    PDU_ERROR_DATA error = {.ErrorCodeId = PDU_ERR_EVT_RX_TIMEOUT, .ExtraErrorInfoId = 5};
    PDU_EVENT_ITEM errorItem = {
        .ItemType = PDU_IT_ERROR, .hCop = 9, .pCoPTag = nullptr, .Timestamp = 3000000000u, .pData = &error};
    EXPECT_EQ(Decoded(&errorItem),
              Summary(errorItem, "PDU_IT_ERROR (0x1302)", "0x00000009") +
                  "{stamp}     <<< ErrorCode = PDU_ERR_EVT_RX_TIMEOUT (0x0103), ExtraErrorData = 5\n");
    PDU_INFO_DATA info = {.InfoCode = PDU_INFO_MODULE_LIST_CHG, .ExtraInfoData = 6};
    PDU_EVENT_ITEM infoItem = {
        .ItemType = PDU_IT_INFO, .hCop = 9, .pCoPTag = nullptr, .Timestamp = 3000000000u, .pData = &info};
    EXPECT_EQ(Decoded(&infoItem),
              Summary(infoItem, "PDU_IT_INFO (0x1303)", "0x00000009") +
                  "{stamp}     <<< Code = PDU_INFO_MODULE_LIST_CHG (32880), ExtraInfoData = 6\n");
}

TEST_F(EventItemCalls, AnItemWithoutDataIsReported)
{
    Start({{"LogFnDecodeRsps", "1"}});
    statusItem.pData = nullptr;
    EXPECT_EQ(Decoded(&statusItem), Summary(statusItem, "PDU_IT_STATUS (0x1301)", "0x00000009") +
                                        "{stamp}     <<< Data = <NULL>\n");
}

TEST_F(EventItemCalls, LogMaxPduBuffLimitsTheDataOfAResult)
{
    Start({{"LogFnDecodeRsps", "2"}, {"LogMaxPduBuff", "2"}});
    UNUM8 payload[] = {0x62, 0xF1, 0x90};
    PDU_RESULT_DATA result = {};
    result.NumDataBytes = 3;
    result.pDataBytes = payload;
    PDU_EVENT_ITEM item = {
        .ItemType = PDU_IT_RESULT, .hCop = 9, .pCoPTag = tag, .Timestamp = 3000000000u, .pData = &result};
    const std::string text = Decoded(&item);
    EXPECT_EQ(text.substr(text.find("{stamp}     <<< DataSize")),
              "{stamp}     <<< DataSize\t\t= 3\n"
              "{stamp}     <<< pDataBytes     |00000000 <62 F1>                                            "
              "b. ( ...)|\n");
}

TEST_F(EventItemCalls, WithLogFnCallsOneThereIsNoSummaryAndNothingIsDecoded)
{
    Start({{"LogFnCalls", "1"}, {"LogFnDecodeArgs", "2"}, {"LogFnDecodeRsps", "2"}});
    Answer("PDUGetEventItem", PDU_STATUS_NOERROR, Return(&statusItem));
    EXPECT_EQ(Logged([&] { Api().PDUGetEventItem(1, 42, &place); }),
              "{stamp} + PDUGetEventItem\n"
              "{stamp} - PDUGetEventItem<PDU_STATUS_NOERROR (0x0000)>\n");
}

TEST_F(EventItemCalls, UndefinedHandlesAreNamedAndTheSummaryComesAfterTheCallOut)
{
    Start({{"LogCallOuts", "1"}, {"LogFnDecodeRsps", "1"}});
    EXPECT_EQ(Logged([&] { Api().PDUGetEventItem(0xFFFFFFFF, 0xFFFFFFFF, &place); }),
              "{stamp} + PDUGetEventItem(hMod=<PDU_HANDLE_UNDEF>, hCLL=<PDU_HANDLE_UNDEF>, ppEventItem=" +
                  PointerText(&place) +
                  ")\n"
                  "{stamp}     <PDUGetEventItem\n"
                  "{stamp}    <--  *ppEventItem\t= <NULL>\n"
                  "{stamp} - PDUGetEventItem<PDU_STATUS_NOERROR (0x0000)>\n");
    ExpectSeen("PDUGetEventItem", {0xFFFFFFFF, 0xFFFFFFFF, Raw(&place)});
}

TEST_F(EventItemCalls, DestroyItemShowsThePointerAndDoesNotFollowIt)
{
    ExpectAtAllLevels({{.Name = "PDUDestroyItem",
                        .Call = [&] { return Api().PDUDestroyItem(Unreadable<void>()); },
                        .Seen = {0x10},
                        .Arguments = "(pItem=" + PointerText(Unreadable<void>()) + ")"},
                       {.Name = "PDUDestroyItem",
                        .Call = [&] { return Api().PDUDestroyItem(&statusItem); },
                        .Seen = {Raw(&statusItem)},
                        .Status = PDU_ERR_INVALID_PARAMETERS,
                        .StatusText = "PDU_ERR_INVALID_PARAMETERS (0x0050)",
                        .Arguments = "(pItem=" + PointerText(&statusItem) + ")"}});
    EXPECT_EQ(statusItem.ItemType, PDU_IT_STATUS);
}

TEST_F(EventItemCalls, DestroyItemPrintsANullPointerAndForwardsIt)
{
    Start({{"LogFnDecodeArgs", "2"}});
    EXPECT_EQ(Logged([&] { EXPECT_EQ(Api().PDUDestroyItem(nullptr), PDU_STATUS_NOERROR); }),
              "{stamp} + PDUDestroyItem(pItem=" + PointerText(nullptr) +
                  ")\n"
                  "{stamp} - PDUDestroyItem<PDU_STATUS_NOERROR (0x0000)>\n");
    ExpectSeen("PDUDestroyItem", {0});
}

TEST(EventItemCallsWithoutATarget, EachCallIsNotLoadedAndTheOutputIsUnchanged)
{
    Session session({{"LogFnDecodeArgs", "2"}, {"LogFnDecodeRsps", "2"}}, "no_such_library");
    session.Construct();
    PDU_EVENT_ITEM* place = Unreadable<PDU_EVENT_ITEM>();
    EXPECT_EQ(session.Logged([&] {
        EXPECT_EQ(session.Api().PDUGetEventItem(1, 2, &place), 0x20u);
        EXPECT_EQ(session.Api().PDUDestroyItem(place), 0x20u);
    }),
              "{stamp} PDUGetEventItem - Called but library not loaded!\n"
              "{stamp} PDUDestroyItem - Called but library not loaded!\n");
    EXPECT_EQ(place, Unreadable<PDU_EVENT_ITEM>());
}

} // namespace
} // namespace marvane::testing
