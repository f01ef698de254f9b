// Calls that get and set ComParams and tables of unique response identifiers.
#include "tests/support/call_test.h"

namespace marvane::testing {
namespace {

class ComParamCalls : public CallTest
{
protected:
    std::function<void(const FakeCall&)> ReturnParam(PDU_PARAM_ITEM* returned)
    {
        return [returned](const FakeCall& call) { At<PDU_PARAM_ITEM*>(call.Arguments[3]) = returned; };
    }
    std::function<void(const FakeCall&)> ReturnTable(PDU_UNIQUE_RESP_ID_TABLE_ITEM* returned)
    {
        return [returned](const FakeCall& call) {
            At<PDU_UNIQUE_RESP_ID_TABLE_ITEM*>(call.Arguments[2]) = returned;
        };
    }

    static std::string GetEntry(const void* place, const std::string& name = "[NOT YET READ] (7)")
    {
        return "(hMod=0x00000001, hCLL=0x0000002A, ParamID=" + name + ", pParamItem=" + PointerText(place) +
               ")";
    }
    static std::string SetEntry(const void* item)
    {
        return "(hMod=0x00000001, hCLL=0x0000002A, pParamItem=" + PointerText(item) + ")";
    }
    static std::string TableEntry(const void* table)
    {
        return "(hMod=0x00000001, hCLL=0x0000002A, pUniqueRespIdTable=" + PointerText(table) + ")";
    }

    /// The lines of a call that succeeded and decoded nothing.
    static std::string Plain(const std::string& name, const std::string& arguments)
    {
        return "{stamp} + " + name + arguments + "\n{stamp} - " + name + "<PDU_STATUS_NOERROR (0x0000)>\n";
    }

    UNUM8 byte = 0x41;
    PDU_PARAM_BYTEFIELD_DATA field = {.ParamMaxLen = 4, .ParamActLen = 1, .pDataArray = &byte};
    PDU_PARAM_ITEM param = {.ItemType = PDU_IT_PARAM,
                            .ComParamId = 7,
                            .ComParamDataType = PDU_PT_BYTEFIELD,
                            .ComParamClass = PDU_PC_COM,
                            .pComParamData = &field};
    PDU_PARAM_ITEM* paramPlace = nullptr;
    UNUM32 number = 500000;
    PDU_PARAM_ITEM baudrate = {.ItemType = PDU_IT_PARAM,
                               .ComParamId = 7,
                               .ComParamDataType = PDU_PT_UNUM32,
                               .ComParamClass = PDU_PC_BUSTYPE,
                               .pComParamData = &number};
    PDU_ECU_UNIQUE_RESP_DATA entries[2] = {
        {.UniqueRespIdentifier = 5, .NumParamItems = 1, .pParams = &baudrate},
        {.UniqueRespIdentifier = PDU_ID_UNDEF, .NumParamItems = 0, .pParams = nullptr}};
    PDU_UNIQUE_RESP_ID_TABLE_ITEM table = {
        .ItemType = PDU_IT_UNIQUE_RESP_ID_TABLE, .NumEntries = 2, .pUniqueData = entries};
    PDU_UNIQUE_RESP_ID_TABLE_ITEM* tablePlace = nullptr;
};

TEST_F(ComParamCalls, AReturnedParamIsDecodedAsAResult)
{
    const std::string lines =
        "{stamp}    <--  ComParam (" + PointerText(&param) +
        ") Id = [NOT YET READ] (id=7), DataType = PDU_PT_BYTEFIELD (0x0107), Class = PDU_PC_COM "
        "(0x0003)\n"
        "{stamp}     <<< [NOT YET READ] (id=7): MaxLen\t= 4, ActLen\t= 1\n";
    const std::string bytes = "{stamp}     <<< pDataArray     |00000000 <41>                                 "
                              "              A               |\n";
    ExpectAtAllLevels({{.Name = "PDUGetComParam",
                        .Call = [&] { return Api().PDUGetComParam(1, 42, 7, &paramPlace); },
                        .Seen = {1, 42, 7, Raw(&paramPlace)},
                        .Effect = ReturnParam(&param),
                        .Arguments = GetEntry(&paramPlace),
                        .After = ResultLines(lines, lines + bytes)}});
    EXPECT_EQ(paramPlace, &param);
    EXPECT_EQ(param.pComParamData, &field);
    EXPECT_EQ(byte, 0x41);
}

TEST_F(ComParamCalls, AParamThatIsSetIsDecodedAsAnArgument)
{
    const std::string lines =
        "{stamp}    -->  ComParam (" + PointerText(&param) +
        ") Id = [NOT YET READ] (id=7), DataType = PDU_PT_BYTEFIELD (0x0107), Class = PDU_PC_COM "
        "(0x0003)\n"
        "{stamp}     >>> [NOT YET READ] (id=7): MaxLen\t= 4, ActLen\t= 1\n";
    const std::string bytes = "{stamp}     >>> pDataArray     |00000000 <41>                                 "
                              "              A               |\n";
    const LoggedCall success = {.Name = "PDUSetComParam",
                                .Call = [&] { return Api().PDUSetComParam(1, 42, &param); },
                                .Seen = {1, 42, Raw(&param)},
                                .Arguments = SetEntry(&param),
                                .Before = ArgumentLines(lines, lines + bytes)};
    LoggedCall failure = success;
    failure.Status = PDU_ERR_COMPARAM_LOCKED;
    failure.StatusText = "PDU_ERR_COMPARAM_LOCKED (0x0064)";
    ExpectAtAllLevels({success, failure});
    EXPECT_EQ(param.ComParamId, 7u);
    EXPECT_EQ(param.ComParamDataType, PDU_PT_BYTEFIELD);
    EXPECT_EQ(param.ComParamClass, PDU_PC_COM);
    EXPECT_EQ(param.pComParamData, &field);
    EXPECT_EQ(field.pDataArray, &byte);
    EXPECT_EQ(byte, 0x41);
}

TEST_F(ComParamCalls, AReturnedTableIsDecodedAsAResult)
{
    const std::string lines =
        "{stamp}    <--  [   1 of    2] - URID = 5, Num params = 1\n"
        "{stamp}     <<< ComParam (" +
        PointerText(&baudrate) +
        ") Id = [NOT YET READ] (id=7), DataType = PDU_PT_UNUM32 (0x0105), Class = PDU_PC_BUSTYPE (0x0005)\n"
        "{stamp} \t\t <--  [NOT YET READ]                 (id=  7): =\t(u32)    500000\t(0x0007A120)\n"
        "{stamp}    <--  [   2 of    2] - URID = <PDU_ID_UNDEF>, Num params = 0\n";
    ExpectAtAllLevels({{.Name = "PDUGetUniqueRespIdTable",
                        .Call = [&] { return Api().PDUGetUniqueRespIdTable(1, 42, &tablePlace); },
                        .Seen = {1, 42, Raw(&tablePlace)},
                        .Effect = ReturnTable(&table),
                        .Arguments = TableEntry(&tablePlace),
                        .After = ResultLines(lines)}});
    EXPECT_EQ(tablePlace, &table);
}

TEST_F(ComParamCalls, ATableThatIsSetIsDecodedAsAnArgument)
{
    const std::string lines =
        "{stamp}    -->  [   1 of    2] - URID = 5, Num params = 1\n"
        "{stamp}     >>> ComParam (" +
        PointerText(&baudrate) +
        ") Id = [NOT YET READ] (id=7), DataType = PDU_PT_UNUM32 (0x0105), Class = PDU_PC_BUSTYPE (0x0005)\n"
        "{stamp} \t\t -->  [NOT YET READ]                 (id=  7): =\t(u32)    500000\t(0x0007A120)\n"
        "{stamp}    -->  [   2 of    2] - URID = <PDU_ID_UNDEF>, Num params = 0\n";
    const LoggedCall success = {.Name = "PDUSetUniqueRespIdTable",
                                .Call = [&] { return Api().PDUSetUniqueRespIdTable(1, 42, &table); },
                                .Seen = {1, 42, Raw(&table)},
                                .Arguments = TableEntry(&table),
                                .Before = ArgumentLines(lines)};
    LoggedCall failure = success;
    failure.Status = PDU_ERR_CLL_NOT_CONNECTED;
    failure.StatusText = "PDU_ERR_CLL_NOT_CONNECTED (0x0040)";
    ExpectAtAllLevels({success, failure});
    EXPECT_EQ(table.NumEntries, 2u);
    EXPECT_EQ(table.pUniqueData, entries);
    EXPECT_EQ(entries[0].pParams, &baudrate);
    EXPECT_EQ(number, 500000u);
}

TEST_F(ComParamCalls, AFailedGetDecodesNothingAndReadsNoPointer)
{
    // Reading through either output pointer would fault.
    ExpectAtAllLevels({{.Name = "PDUGetComParam",
                        .Call = [&] { return Api().PDUGetComParam(1, 42, 7, Unreadable<PDU_PARAM_ITEM*>()); },
                        .Seen = {1, 42, 7, 0x10},
                        .Status = PDU_ERR_COMPARAM_NOT_SUPPORTED,
                        .StatusText = "PDU_ERR_COMPARAM_NOT_SUPPORTED (0x0063)",
                        .Arguments = GetEntry(Unreadable<void>())},
                       {.Name = "PDUGetUniqueRespIdTable",
                        .Call =
                            [&] {
                                return Api().PDUGetUniqueRespIdTable(
                                    1, 42, Unreadable<PDU_UNIQUE_RESP_ID_TABLE_ITEM*>());
                            },
                        .Seen = {1, 42, 0x10},
                        .Status = PDU_ERR_INVALID_HANDLE,
                        .StatusText = "PDU_ERR_INVALID_HANDLE (0x0060)",
                        .Arguments = TableEntry(Unreadable<void>())}});
}

TEST_F(ComParamCalls, AFailedGetWithAValidOutputPointerDecodesNothing)
{
    Start({{"LogFnDecodeArgs", "2"}, {"LogFnDecodeRsps", "2"}});
    Answer("PDUGetComParam", PDU_ERR_ID_NOT_SUPPORTED, ReturnParam(Unreadable<PDU_PARAM_ITEM>()));
    EXPECT_EQ(
        Logged([&] { EXPECT_EQ(Api().PDUGetComParam(1, 42, 7, &paramPlace), PDU_ERR_ID_NOT_SUPPORTED); }),
        "{stamp} + PDUGetComParam" + GetEntry(&paramPlace) +
            "\n"
            "{stamp} - PDUGetComParam<PDU_ERR_ID_NOT_SUPPORTED (0x0062)>\n");
    EXPECT_EQ(paramPlace, Unreadable<PDU_PARAM_ITEM>());
}

TEST_F(ComParamCalls, NullPointersAreReportedByEachCallInItsOwnWayAndForwarded)
{
    const std::string writeBack = "{stamp}    -->  WARNING - pParamItem write-back\t= <NULL>\n";
    const std::string item = "{stamp}    -->  WARNING - pParamItem\t= <NULL>\n";
    const std::string nullTable = "{stamp}    -->  pUniqueRespIdTable\t= <NULL>\n";
    ExpectAtAllLevels({{.Name = "PDUGetComParam",
                        .Call = [&] { return Api().PDUGetComParam(1, 42, 7, nullptr); },
                        .Seen = {1, 42, 7, 0},
                        .Arguments = GetEntry(nullptr),
                        .Before = ArgumentLines(writeBack)},
                       {.Name = "PDUSetComParam",
                        .Call = [&] { return Api().PDUSetComParam(1, 42, nullptr); },
                        .Seen = {1, 42, 0},
                        .Arguments = SetEntry(nullptr),
                        .Before = ArgumentLines(item)},
                       {.Name = "PDUGetUniqueRespIdTable",
                        .Call = [&] { return Api().PDUGetUniqueRespIdTable(1, 42, nullptr); },
                        .Seen = {1, 42, 0},
                        .Arguments = TableEntry(nullptr)},
                       {.Name = "PDUSetUniqueRespIdTable",
                        .Call = [&] { return Api().PDUSetUniqueRespIdTable(1, 42, nullptr); },
                        .Seen = {1, 42, 0},
                        .Arguments = TableEntry(nullptr),
                        .Before = ArgumentLines(nullTable)}});
}

TEST_F(ComParamCalls, AGetWithANullOutputPointerAndLogFnDecodeArgsZeroGivesNoWarningAndIsForwarded)
{
    Start({{"LogFnDecodeRsps", "2"}});
    EXPECT_EQ(Logged([&] { EXPECT_EQ(Api().PDUGetComParam(1, 42, 7, nullptr), PDU_STATUS_NOERROR); }),
              Plain("PDUGetComParam", GetEntry(nullptr)));
    ExpectSeen("PDUGetComParam", {1, 42, 7, 0});
}

TEST_F(ComParamCalls, ASetOfANullItemGivesAWarningAndDecodesNothing)
{
    Start({{"LogFnDecodeArgs", "1"}});
    EXPECT_EQ(Logged([&] { Api().PDUSetComParam(1, 42, nullptr); }),
              "{stamp} + PDUSetComParam" + SetEntry(nullptr) +
                  "\n"
                  "{stamp}    -->  WARNING - pParamItem\t= <NULL>\n"
                  "{stamp} - PDUSetComParam<PDU_STATUS_NOERROR (0x0000)>\n");
}

TEST_F(ComParamCalls, ASetOfANullTableIsReportedByTheDecoderAlone)
{
    Start({{"LogFnDecodeArgs", "1"}});
    EXPECT_EQ(Logged([&] { Api().PDUSetUniqueRespIdTable(1, 42, nullptr); }),
              "{stamp} + PDUSetUniqueRespIdTable" + TableEntry(nullptr) +
                  "\n"
                  "{stamp}    -->  pUniqueRespIdTable\t= <NULL>\n"
                  "{stamp} - PDUSetUniqueRespIdTable<PDU_STATUS_NOERROR (0x0000)>\n");
}

TEST_F(ComParamCalls, AGetOfATableWithANullOutputPointerHasNoDecodedLine)
{
    Start({{"LogFnDecodeArgs", "2"}, {"LogFnDecodeRsps", "2"}});
    EXPECT_EQ(Logged([&] { Api().PDUGetUniqueRespIdTable(1, 42, nullptr); }),
              Plain("PDUGetUniqueRespIdTable", TableEntry(nullptr)));
}

TEST_F(ComParamCalls, ASuccessThatReturnsNullIsReportedByTheDecoder)
{
    Start({{"LogFnDecodeRsps", "1"}});
    EXPECT_EQ(Logged([&] { Api().PDUGetComParam(1, 42, 7, &paramPlace); }),
              "{stamp} + PDUGetComParam" + GetEntry(&paramPlace) +
                  "\n"
                  "{stamp}    <--  ComParam pointer\t= <NULL>\n"
                  "{stamp} - PDUGetComParam<PDU_STATUS_NOERROR (0x0000)>\n");
    EXPECT_EQ(Logged([&] { Api().PDUGetUniqueRespIdTable(1, 42, &tablePlace); }),
              "{stamp} + PDUGetUniqueRespIdTable" + TableEntry(&tablePlace) +
                  "\n"
                  "{stamp}    <--  pUniqueRespIdTable\t= <NULL>\n"
                  "{stamp} - PDUGetUniqueRespIdTable<PDU_STATUS_NOERROR (0x0000)>\n");
}

TEST_F(ComParamCalls, WithLogFnDecodeRspsAloneASetShowsNoRecordAndAGetDoes)
{
    Start({{"LogFnDecodeRsps", "1"}});
    Answer("PDUGetComParam", PDU_STATUS_NOERROR, ReturnParam(&baudrate));
    EXPECT_EQ(Logged([&] { Api().PDUSetComParam(1, 42, &baudrate); }),
              Plain("PDUSetComParam", SetEntry(&baudrate)));
    EXPECT_EQ(Logged([&] { Api().PDUSetUniqueRespIdTable(1, 42, &table); }),
              Plain("PDUSetUniqueRespIdTable", TableEntry(&table)));
    EXPECT_EQ(
        Logged([&] { Api().PDUGetComParam(1, 42, 7, &paramPlace); }),
        "{stamp} + PDUGetComParam" + GetEntry(&paramPlace) +
            "\n"
            "{stamp}    <--  ComParam (" +
            PointerText(&baudrate) +
            ") Id = [NOT YET READ] (id=7), DataType = PDU_PT_UNUM32 (0x0105), Class = PDU_PC_BUSTYPE "
            "(0x0005)\n"
            "{stamp}     <<< [NOT YET READ]                 (id=  7): =\t(u32)    500000\t(0x0007A120)\n"
            "{stamp} - PDUGetComParam<PDU_STATUS_NOERROR (0x0000)>\n");
}

TEST_F(ComParamCalls, WithLogFnDecodeArgsAloneAGetShowsNoRecordAndASetDoes)
{
    Start({{"LogFnDecodeArgs", "1"}});
    Answer("PDUGetComParam", PDU_STATUS_NOERROR, ReturnParam(&baudrate));
    EXPECT_EQ(Logged([&] { Api().PDUGetComParam(1, 42, 7, &paramPlace); }),
              Plain("PDUGetComParam", GetEntry(&paramPlace)));
    Answer("PDUGetUniqueRespIdTable", PDU_STATUS_NOERROR, ReturnTable(&table));
    EXPECT_EQ(Logged([&] { Api().PDUGetUniqueRespIdTable(1, 42, &tablePlace); }),
              Plain("PDUGetUniqueRespIdTable", TableEntry(&tablePlace)));
    EXPECT_EQ(
        Logged([&] { Api().PDUSetComParam(1, 42, &baudrate); }),
        "{stamp} + PDUSetComParam" + SetEntry(&baudrate) +
            "\n"
            "{stamp}    -->  ComParam (" +
            PointerText(&baudrate) +
            ") Id = [NOT YET READ] (id=7), DataType = PDU_PT_UNUM32 (0x0105), Class = PDU_PC_BUSTYPE "
            "(0x0005)\n"
            "{stamp}     >>> [NOT YET READ]                 (id=  7): =\t(u32)    500000\t(0x0007A120)\n"
            "{stamp} - PDUSetComParam<PDU_STATUS_NOERROR (0x0000)>\n");
}

TEST_F(ComParamCalls, AnIdIsNotYetReadUntilTheApplicationAsksForItAndKeepsItsFirstName)
{
    Start({{"LogFnDecodeRsps", "1"}});
    const auto get = [&] {
        Answer("PDUGetComParam", PDU_STATUS_NOERROR, ReturnParam(&baudrate));
        return Logged([&] { Api().PDUGetComParam(1, 42, 7, &paramPlace); });
    };
    const auto named = [&](const std::string& name, const std::string& padded) {
        return "{stamp} + PDUGetComParam" + GetEntry(&paramPlace, name + " (7)") +
               "\n{stamp}    <--  ComParam (" + PointerText(&baudrate) + ") Id = " + name +
               " (id=7), DataType = PDU_PT_UNUM32 (0x0105), Class = PDU_PC_BUSTYPE (0x0005)\n{stamp}     "
               "<<< " +
               padded +
               " (id=  7): =\t(u32)    500000\t(0x0007A120)\n{stamp} - PDUGetComParam<PDU_STATUS_NOERROR "
               "(0x0000)>\n";
    };
    const std::string unread = named("[NOT YET READ]", "[NOT YET READ]                ");
    EXPECT_EQ(get(), unread);
    AskObjectId(PDU_OBJT_COMPARAM, "CP_Baudrate", 7, PDU_ERR_FCT_FAILED);
    AskObjectId(PDU_OBJT_IO_CTRL, "PDU_IOCTL_RESET", 7);
    EXPECT_EQ(get(), unread);
    const std::string read = named("CP_Baudrate", "CP_Baudrate                   ");
    AskObjectId(PDU_OBJT_COMPARAM, "CP_Baudrate", 7);
    EXPECT_EQ(get(), read);
    AskObjectId(PDU_OBJT_COMPARAM, "CP_BaudrateRecord", 7);
    EXPECT_EQ(get(), read);
}

TEST_F(ComParamCalls, UndefinedHandlesAreNamedAndDecodedResultsComeAfterTheCallOut)
{
    constexpr UNUM32 undefined = 0xFFFFFFFF;
    Start({{"LogCallOuts", "1"}, {"LogFnDecodeRsps", "1"}});
    const std::string text = Logged([&] {
        Api().PDUGetComParam(undefined, undefined, undefined, &paramPlace);
        Api().PDUSetComParam(undefined, 0, &baudrate);
        Api().PDUGetUniqueRespIdTable(0, undefined, &tablePlace);
        Api().PDUSetUniqueRespIdTable(undefined, undefined, &table);
    });
    EXPECT_EQ(
        text,
        "{stamp} + PDUGetComParam(hMod=<PDU_HANDLE_UNDEF>, hCLL=<PDU_HANDLE_UNDEF>, ParamID=[NOT YET READ] "
        "(4294967295), pParamItem=" +
            PointerText(&paramPlace) +
            ")\n"
            "{stamp}     <PDUGetComParam\n"
            "{stamp}    <--  ComParam pointer\t= <NULL>\n"
            "{stamp} - PDUGetComParam<PDU_STATUS_NOERROR (0x0000)>\n"
            "{stamp} + PDUSetComParam(hMod=<PDU_HANDLE_UNDEF>, hCLL=0x00000000, pParamItem=" +
            PointerText(&baudrate) +
            ")\n"
            "{stamp}     <PDUSetComParam\n"
            "{stamp} - PDUSetComParam<PDU_STATUS_NOERROR (0x0000)>\n"
            "{stamp} + PDUGetUniqueRespIdTable(hMod=0x00000000, hCLL=<PDU_HANDLE_UNDEF>, "
            "pUniqueRespIdTable=" +
            PointerText(&tablePlace) +
            ")\n"
            "{stamp}     <PDUGetUniqueRespIdTable\n"
            "{stamp}    <--  pUniqueRespIdTable\t= <NULL>\n"
            "{stamp} - PDUGetUniqueRespIdTable<PDU_STATUS_NOERROR (0x0000)>\n"
            "{stamp} + PDUSetUniqueRespIdTable(hMod=<PDU_HANDLE_UNDEF>, hCLL=<PDU_HANDLE_UNDEF>, "
            "pUniqueRespIdTable=" +
            PointerText(&table) +
            ")\n"
            "{stamp}     <PDUSetUniqueRespIdTable\n"
            "{stamp} - PDUSetUniqueRespIdTable<PDU_STATUS_NOERROR (0x0000)>\n");
}

TEST(ComParamCallsWithoutATarget, EachCallIsNotLoadedAndReadsNoRecord)
{
    Session session({{"LogFnDecodeArgs", "2"}, {"LogFnDecodeRsps", "2"}}, "no_such_library");
    session.Construct();
    const auto& api = session.Api();
    EXPECT_EQ(session.Logged([&] {
        EXPECT_EQ(api.PDUGetComParam(1, 2, 3, Unreadable<PDU_PARAM_ITEM*>()), 0x20u);
        EXPECT_EQ(api.PDUSetComParam(1, 2, Unreadable<PDU_PARAM_ITEM>()), 0x20u);
        EXPECT_EQ(api.PDUGetUniqueRespIdTable(1, 2, Unreadable<PDU_UNIQUE_RESP_ID_TABLE_ITEM*>()), 0x20u);
        EXPECT_EQ(api.PDUSetUniqueRespIdTable(1, 2, Unreadable<PDU_UNIQUE_RESP_ID_TABLE_ITEM>()), 0x20u);
    }),
              "{stamp} PDUGetComParam - Called but library not loaded!\n"
              "{stamp} PDUSetComParam - Called but library not loaded!\n"
              "{stamp} PDUGetUniqueRespIdTable - Called but library not loaded!\n"
              "{stamp} PDUSetUniqueRespIdTable - Called but library not loaded!\n");
}

} // namespace
} // namespace marvane::testing
