// PDUIoCtl: input and output items, and the two lines that are written at all levels.
#include <gtest/gtest.h>

#include "tests/support/call_test.h"

namespace marvane::testing {
namespace {

class IoControlCall : public RunningCallTest
{
protected:
    IoControlCall()
    {
        Fake().Answer = [this](const FakeCall& call) {
            Return(call);
            return status_;
        };
    }

    /// What the target does: returns its item through the output pointer, if there is one.
    void Return(const FakeCall& call) const
    {
        if (call.Arguments[4])
            At<PDU_DATA_ITEM*>(call.Arguments[4]) = returned_;
    }

    /// A call with handles 1 and 2 and command 9, without decoded lines. `place_` is set to `held_` before
    /// it.
    LoggedCall Call(PDU_DATA_ITEM* input, PDU_DATA_ITEM** output)
    {
        return {.Name = "PDUIoCtl",
                .Call =
                    [=, this] {
                        place_ = held_;
                        return Api().PDUIoCtl(1, 2, 9, input, output);
                    },
                .Seen = {1, 2, 9, Raw(input), Raw(output)},
                .Effect = [this](const FakeCall& call) { Return(call); },
                .Arguments = Arguments(input, output)};
    }

    /// The argument list of a call with handles 1 and 2, command 9 and these pointers.
    static std::string Arguments(const void* input, const void* output,
                                 const std::string& name = "[NOT YET READ]")
    {
        return "(hMod=0x00000001, hCLL=0x00000002, IoCtlCommandId=9 (" + name +
               "), pInputData=" + PointerText(input) + ", ppOutputData=" + PointerText(output) + ")";
    }

    /// The line that shows the output before the call.
    static std::string PlaceLine(const void* held)
    {
        return "{stamp}    -->  *ppOutputData\t= " + PointerText(held) + "\n";
    }
    /// The line that shows the returned output.
    static std::string OutputLine(const void* item)
    {
        return "{stamp}    <--  pOutputData\t= " + PointerText(item) + "\n";
    }

    UNUM32 given_ = 0x10;
    UNUM32 found_ = 0xFFFFFFFF;
    PDU_DATA_ITEM input_ = {.ItemType = PDU_IT_IO_UNUM32, .pData = &given_};
    PDU_DATA_ITEM item_ = {.ItemType = PDU_IT_IO_UNUM32, .pData = &found_};
    /// The item that the target returns.
    PDU_DATA_ITEM* returned_ = &item_;
    T_PDU_ERROR status_ = PDU_STATUS_NOERROR;
    /// The application's output variable, and its value before the call.
    PDU_DATA_ITEM* place_ = nullptr;
    PDU_DATA_ITEM* held_ = nullptr;

    const std::string inputLines_ = "{stamp}    -->  pInputData->ItemType\t= PDU_IT_IO_UNUM32 (4096)\n"
                                    "{stamp}    -->  pInputData->pData   \t= " +
                                    PointerText(&given_) +
                                    "\n"
                                    "{stamp}     >>> *pData   \t= 0x10 (16)\n";
    const std::string outputLines_ = "{stamp}    <--  pOutputData->ItemType\t= PDU_IT_IO_UNUM32 (4096)\n"
                                     "{stamp}    <--  pOutputData->pData   \t= " +
                                     PointerText(&found_) +
                                     "\n"
                                     "{stamp}     <<< *pData   \t= 0xFFFFFFFF (4294967295)\n";
};

TEST_F(IoControlCall, BothItemsAreShown)
{
    EXPECT_EQ(Logged([&] { EXPECT_EQ(Api().PDUIoCtl(1, 2, 9, &input_, &place_), PDU_STATUS_NOERROR); }),
              "{stamp} + PDUIoCtl(hMod=0x00000001, hCLL=0x00000002, IoCtlCommandId=9 ([NOT YET READ]), "
              "pInputData=" +
                  PointerText(&input_) + ", ppOutputData=" + PointerText(&place_) +
                  ")\n"
                  "{stamp}    -->  pInputData->ItemType\t= PDU_IT_IO_UNUM32 (4096)\n"
                  "{stamp}    -->  pInputData->pData   \t= " +
                  PointerText(&given_) +
                  "\n"
                  "{stamp}     >>> *pData   \t= 0x10 (16)\n"
                  "{stamp}    -->  *ppOutputData\t= " +
                  PointerText(nullptr) +
                  "\n"
                  "{stamp}    <--  pOutputData\t= " +
                  PointerText(&item_) +
                  "\n"
                  "{stamp}    <--  pOutputData->ItemType\t= PDU_IT_IO_UNUM32 (4096)\n"
                  "{stamp}    <--  pOutputData->pData   \t= " +
                  PointerText(&found_) +
                  "\n"
                  "{stamp}     <<< *pData   \t= 0xFFFFFFFF (4294967295)\n"
                  "{stamp} - PDUIoCtl<PDU_STATUS_NOERROR (0x0000)>\n");
    ExpectSeen("PDUIoCtl", {1, 2, 9, Raw(&input_), Raw(&place_)});
    EXPECT_EQ(place_, &item_);
    EXPECT_EQ(given_, 0x10u);
}

TEST_F(IoControlCall, ItemsAreDecodedByLevelAndTheOutputPointersAtAllLevels)
{
    held_ = &input_;
    LoggedCall call = Call(&input_, &place_);
    call.Before = Join(ArgumentLines(inputLines_), Always(PlaceLine(&input_)));
    call.After = Join(Always(OutputLine(&item_)), ResultLines(outputLines_));
    ExpectAtAllLevels({call});
    EXPECT_EQ(place_, &item_);
}

TEST_F(IoControlCall, WithNoCallsLoggedThePointerBeforeTheCallIsWrittenAndTheOneAfterIsLost)
{
    Reconfigure(Levels{.Calls = 0});
    EXPECT_EQ(Logged([&] { Api().PDUIoCtl(1, 2, 9, &input_, &place_); }),
              "{stamp}    -->  *ppOutputData\t= " + PointerText(nullptr) + "\n");
}

TEST_F(IoControlCall, WithoutArgumentListsBothPointersAreWrittenAndNoItem)
{
    Reconfigure(Levels{.Calls = 1});
    EXPECT_EQ(Logged([&] { Api().PDUIoCtl(1, 2, 9, &input_, &place_); }),
              "{stamp} + PDUIoCtl\n"
              "{stamp}    -->  *ppOutputData\t= " +
                  PointerText(nullptr) +
                  "\n"
                  "{stamp}    <--  pOutputData\t= " +
                  PointerText(&item_) + "\n{stamp} - PDUIoCtl<PDU_STATUS_NOERROR (0x0000)>\n");
}

TEST_F(IoControlCall, WithLoggingOffNothingIsWritten)
{
    Reconfigure({{"LogEnabled", "0"}, {"LogFnDecodeArgs", "2"}, {"LogFnDecodeRsps", "2"}});
    EXPECT_EQ(Logged([&] { Api().PDUIoCtl(1, 2, 9, &input_, &place_); }), "");
    ExpectSeen("PDUIoCtl", {1, 2, 9, Raw(&input_), Raw(&place_)});
    EXPECT_EQ(place_, &item_);
}

TEST_F(IoControlCall, WithLoggingOffNoPointerIsFollowedUnlessTheCallSucceeds)
{
    Reconfigure({{"LogEnabled", "0"}, {"LogFnDecodeArgs", "2"}, {"LogFnDecodeRsps", "2"}});
    const auto wild = reinterpret_cast<PDU_DATA_ITEM*>(std::uintptr_t{8});
    AnswerAll(PDU_ERR_INVALID_PARAMETERS);
    EXPECT_EQ(Api().PDUIoCtl(1, 2, 9, wild, reinterpret_cast<PDU_DATA_ITEM**>(wild)),
              PDU_ERR_INVALID_PARAMETERS);
    ExpectSeen("PDUIoCtl", {1, 2, 9, 8, 8});
}

TEST_F(IoControlCall, ANullOutputIsDecodedAsAResult)
{
    returned_ = nullptr;
    LoggedCall call = Call(&input_, &place_);
    call.Before = Join(ArgumentLines(inputLines_), Always(PlaceLine(nullptr)));
    call.After = ResultLines("{stamp}    <--  *ppOutputData\t= <NULL>\n");
    ExpectAtAllLevels({call});
}

TEST_F(IoControlCall, WithoutDecodedResultsANullOutputHasNoLineAndAnyOtherHasItsPointer)
{
    Reconfigure(Levels{.Arguments = 0, .Results = 0});
    const std::string head = "{stamp} + PDUIoCtl" + Arguments(&input_, &place_) + "\n" + PlaceLine(nullptr);
    EXPECT_EQ(Logged([&] { Api().PDUIoCtl(1, 2, 9, &input_, &place_); }),
              head + OutputLine(&item_) + "{stamp} - PDUIoCtl<PDU_STATUS_NOERROR (0x0000)>\n");
    returned_ = nullptr;
    place_ = nullptr;
    EXPECT_EQ(Logged([&] { Api().PDUIoCtl(1, 2, 9, &input_, &place_); }),
              head + "{stamp} - PDUIoCtl<PDU_STATUS_NOERROR (0x0000)>\n");
}

TEST_F(IoControlCall, AFailureShowsNothingOfTheOutput)
{
    LoggedCall call = Call(&input_, &place_);
    call.Status = PDU_ERR_FCT_FAILED;
    call.StatusText = "PDU_ERR_FCT_FAILED (0x0001)";
    call.Before = Join(ArgumentLines(inputLines_), Always(PlaceLine(nullptr)));
    ExpectAtAllLevels({call});
}

TEST_F(IoControlCall, AfterAFailureNothingIsReadThroughTheOutputPointer)
{
    status_ = PDU_ERR_FCT_FAILED;
    returned_ = reinterpret_cast<PDU_DATA_ITEM*>(std::uintptr_t{8});
    EXPECT_EQ(Logged([&] { Api().PDUIoCtl(1, 2, 9, &input_, &place_); }),
              "{stamp} + PDUIoCtl" + Arguments(&input_, &place_) + "\n" + inputLines_ + PlaceLine(nullptr) +
                  "{stamp} - PDUIoCtl<PDU_ERR_FCT_FAILED (0x0001)>\n");
    EXPECT_EQ(place_, returned_);
}

TEST_F(IoControlCall, TheFormerValueOfTheOutputIsShownAndNotFollowed)
{
    PDU_DATA_ITEM* const wild = reinterpret_cast<PDU_DATA_ITEM*>(std::uintptr_t{8});
    place_ = wild;
    EXPECT_EQ(Logged([&] { Api().PDUIoCtl(1, 2, 9, &input_, &place_); }),
              "{stamp} + PDUIoCtl" + Arguments(&input_, &place_) + "\n" + inputLines_ + PlaceLine(wild) +
                  OutputLine(&item_) + outputLines_ + "{stamp} - PDUIoCtl<PDU_STATUS_NOERROR (0x0000)>\n");
}

TEST_F(IoControlCall, ANullInputIsDecodedAsAnArgument)
{
    LoggedCall call = Call(nullptr, &place_);
    call.Before = Join(ArgumentLines("{stamp}    -->  pInputData\t= <NULL>\n"), Always(PlaceLine(nullptr)));
    call.After = Join(Always(OutputLine(&item_)), ResultLines(outputLines_));
    ExpectAtAllLevels({call});
}

TEST_F(IoControlCall, ANullOutputPointerGivesNoLine)
{
    LoggedCall call = Call(&input_, nullptr);
    call.Before = ArgumentLines(inputLines_);
    ExpectAtAllLevels({call});
}

TEST_F(IoControlCall, NullForInputAndOutputIsForwarded)
{
    LoggedCall call = Call(nullptr, nullptr);
    call.Before = ArgumentLines("{stamp}    -->  pInputData\t= <NULL>\n");
    ExpectAtAllLevels({call});
}

TEST_F(IoControlCall, ACommandShowsItsShortNameOnceTheApplicationHasAskedForIt)
{
    const auto head = [&] {
        const std::string text = Logged([&] { Api().PDUIoCtl(1, 2, 9, nullptr, nullptr); });
        return text.substr(0, text.find('\n') + 1);
    };
    EXPECT_EQ(head(), "{stamp} + PDUIoCtl" + Arguments(nullptr, nullptr, "[NOT YET READ]") + "\n");
    AskObjectId(PDU_OBJT_IO_CTRL, "PDU_IOCTL_READ_VBATT", 9);
    EXPECT_EQ(head(), "{stamp} + PDUIoCtl" + Arguments(nullptr, nullptr, "PDU_IOCTL_READ_VBATT") + "\n");
}

TEST_F(IoControlCall, UndefinedHandlesAreNamedAndForwarded)
{
    Reconfigure(Levels{.Arguments = 0});
    EXPECT_EQ(Logged([&] { Api().PDUIoCtl(0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, nullptr, nullptr); }),
              "{stamp} + PDUIoCtl(hMod=<PDU_HANDLE_UNDEF>, hCLL=<PDU_HANDLE_UNDEF>, "
              "IoCtlCommandId=4294967295 ([NOT YET READ]), pInputData=" +
                  PointerText(nullptr) + ", ppOutputData=" + PointerText(nullptr) +
                  ")\n{stamp} - PDUIoCtl<PDU_STATUS_NOERROR (0x0000)>\n");
    ExpectSeen("PDUIoCtl", {0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, 0, 0});
}

TEST_F(IoControlCall, BytesOfAnItemAreListedFromLevelTwoOn)
{
    UNUM8 bytes[] = {0x41, 0x00};
    PDU_IO_BYTEARRAY_DATA array = {.DataSize = 2, .pData = bytes};
    input_ = {PDU_IT_IO_BYTEARRAY, &array};
    item_ = input_;
    const std::string input = "{stamp}    -->  pInputData->ItemType\t= PDU_IT_IO_BYTEARRAY (4098)\n"
                              "{stamp}    -->  pInputData->pData   \t= " +
                              PointerText(&array) + "\n";
    const std::string output = "{stamp}    <--  pOutputData->ItemType\t= PDU_IT_IO_BYTEARRAY (4098)\n"
                               "{stamp}    <--  pOutputData->pData   \t= " +
                               PointerText(&array) + "\n";
    const std::string bytesIn = "{stamp}    -->  pByteArrayArra |00000000 <41 00>                            "
                                "                A.              |\n";
    const std::string bytesOut = "{stamp}    <--  pByteArrayArra |00000000 <41 00>                           "
                                 "                 A.              |\n";
    LoggedCall call = Call(&input_, &place_);
    call.Before = Join(ArgumentLines(input, input + bytesIn), Always(PlaceLine(nullptr)));
    call.After = Join(Always(OutputLine(&item_)), ResultLines(output, output + bytesOut));
    ExpectAtAllLevels({call});
}

TEST_F(IoControlCall, AnItemOfAnUnknownTypeIsForwardedLikeAnyOther)
{
    input_.ItemType = 0x1234;
    EXPECT_EQ(Logged([&] { Api().PDUIoCtl(1, 2, 9, &input_, nullptr); }),
              "{stamp} + PDUIoCtl" + Arguments(&input_, nullptr) +
                  "\n"
                  "{stamp}    -->  pInputData->ItemType\t= <UNKNOWN> (4660)\n"
                  "{stamp}    -->  pInputData->pData   \t= " +
                  PointerText(&given_) +
                  "\n"
                  "{stamp}     >>> UNKOWN\n"
                  "{stamp} - PDUIoCtl<PDU_STATUS_NOERROR (0x0000)>\n");
    ExpectSeen("PDUIoCtl", {1, 2, 9, Raw(&input_), 0});
    EXPECT_EQ(input_.ItemType, 0x1234u);
}

TEST_F(IoControlCall, TheClosingLineOfTheCallOutIsBetweenArgumentsAndResults)
{
    LogCallOuts();
    EXPECT_EQ(Logged([&] { Api().PDUIoCtl(1, 2, 9, &input_, &place_); }),
              "{stamp} + PDUIoCtl" + Arguments(&input_, &place_) + "\n" + inputLines_ + PlaceLine(nullptr) +
                  "{stamp}     <PDUIoCtl\n" + OutputLine(&item_) + outputLines_ +
                  "{stamp} - PDUIoCtl<PDU_STATUS_NOERROR (0x0000)>\n");
}

TEST(IoControlCallWithoutATarget, ReturnsNotConstructedAndReadsNothing)
{
    Session session({{"LogFnDecodeArgs", "2"}, {"LogFnDecodeRsps", "2"}}, "no_such_library");
    session.Construct();
    const auto wild = reinterpret_cast<PDU_DATA_ITEM*>(std::uintptr_t{8});
    EXPECT_EQ(session.Logged([&] {
        EXPECT_EQ(session.Api().PDUIoCtl(1, 2, 3, wild, reinterpret_cast<PDU_DATA_ITEM**>(wild)), 0x20u);
    }),
              "{stamp} PDUIoCtl - Called but library not loaded!\n");
}

} // namespace
} // namespace marvane::testing
