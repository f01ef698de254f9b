#include <vector>

#include "tests/support/decoded_text.h"

namespace marvane {
namespace {

class ResponseTable : public testing::Decoding
{
protected:
    static std::string Table(const PDU_UNIQUE_RESP_ID_TABLE_ITEM* table, Arrow arrow = ToTarget)
    {
        return Decoded(
            [&](const DecoderContext& context) { DecodeUniqueRespIdTable(context, arrow, table); });
    }
};

TEST_F(ResponseTable, ANullTableIsReported)
{
    EXPECT_EQ(Table(nullptr), "   -->  pUniqueRespIdTable\t= <NULL>\n");
    EXPECT_EQ(Table(nullptr, FromTarget.Deeper()), "    <<< pUniqueRespIdTable\t= <NULL>\n");
}

TEST_F(ResponseTable, AnEmptyTableSaysSo)
{
    PDU_ECU_UNIQUE_RESP_DATA entry = {};
    const PDU_UNIQUE_RESP_ID_TABLE_ITEM none = {
        .ItemType = PDU_IT_UNIQUE_RESP_ID_TABLE, .NumEntries = 0, .pUniqueData = nullptr};
    const PDU_UNIQUE_RESP_ID_TABLE_ITEM unused = {
        .ItemType = PDU_IT_UNIQUE_RESP_ID_TABLE, .NumEntries = 0, .pUniqueData = &entry};
    EXPECT_EQ(Table(&none), "   -->  Num URIDs:\t0\n");
    EXPECT_EQ(Table(&unused), "   -->  Num URIDs:\t0\n");
}

TEST_F(ResponseTable, EntriesAreCountedInFourColumns)
{
    PDU_ECU_UNIQUE_RESP_DATA entries[] = {
        {.UniqueRespIdentifier = 7, .NumParamItems = 0, .pParams = nullptr},
        {.UniqueRespIdentifier = PDU_ID_UNDEF, .NumParamItems = 0, .pParams = nullptr}};
    const PDU_UNIQUE_RESP_ID_TABLE_ITEM table = {
        .ItemType = PDU_IT_UNIQUE_RESP_ID_TABLE, .NumEntries = 2, .pUniqueData = entries};
    EXPECT_EQ(Table(&table), "   -->  [   1 of    2] - URID = 7, Num params = 0\n"
                             "   -->  [   2 of    2] - URID = <PDU_ID_UNDEF>, Num params = 0\n");
}

TEST_F(ResponseTable, AWrongTypeIsAWarningAndTheEntriesFollow)
{
    PDU_ECU_UNIQUE_RESP_DATA entry = {
        .UniqueRespIdentifier = 4294967295u, .NumParamItems = 0, .pParams = nullptr};
    const PDU_UNIQUE_RESP_ID_TABLE_ITEM table = {.ItemType = 1, .NumEntries = 1, .pUniqueData = &entry};
    EXPECT_EQ(Table(&table), "   -->  WARNING: Wrong item type 1, should be 5888!\n"
                             "   -->  [   1 of    1] - URID = 4294967295, Num params = 0\n");
}

TEST_F(ResponseTable, EntriesWithoutABufferAreAWarning)
{
    const PDU_UNIQUE_RESP_ID_TABLE_ITEM table = {
        .ItemType = PDU_IT_UNIQUE_RESP_ID_TABLE, .NumEntries = 3, .pUniqueData = nullptr};
    EXPECT_EQ(Table(&table), "   -->  WARNING: Entries indicated but no buffer (3)!\n");
}

TEST_F(ResponseTable, ParametersStandOneLevelDeeper)
{
    UNUM8 value = 3;
    PDU_PARAM_ITEM params[] = {{.ItemType = PDU_IT_PARAM,
                                .ComParamId = 1,
                                .ComParamDataType = PDU_PT_UNUM8,
                                .ComParamClass = PDU_PC_COM,
                                .pComParamData = &value},
                               {.ItemType = PDU_IT_PARAM,
                                .ComParamId = 2,
                                .ComParamDataType = PDU_PT_UNUM8,
                                .ComParamClass = PDU_PC_COM,
                                .pComParamData = nullptr}};
    PDU_ECU_UNIQUE_RESP_DATA entry = {.UniqueRespIdentifier = 7, .NumParamItems = 2, .pParams = params};
    const PDU_UNIQUE_RESP_ID_TABLE_ITEM table = {
        .ItemType = PDU_IT_UNIQUE_RESP_ID_TABLE, .NumEntries = 1, .pUniqueData = &entry};
    EXPECT_EQ(
        Table(&table, FromTarget),
        "   <--  [   1 of    1] - URID = 7, Num params = 2\n"
        "    <<< ComParam (" +
            testing::PointerText(&params[0]) +
            ") Id = [NOT YET READ] (id=1), DataType = PDU_PT_UNUM8 (0x0101), Class = PDU_PC_COM (0x0003)\n"
            "\t\t <--  [NOT YET READ]                 (id=  1): =\t(u 8)         3\t(0x03)\n"
            "    <<< ComParam (" +
            testing::PointerText(&params[1]) +
            ") Id = [NOT YET READ] (id=2), DataType = PDU_PT_UNUM8 (0x0101), Class = PDU_PC_COM (0x0003)\n"
            "\t\t <--  pDataVal\t= <NULL>\n");
}

TEST_F(ResponseTable, ANullParameterArrayShowsItsFirstItemAsNull)
{
    PDU_ECU_UNIQUE_RESP_DATA entries[] = {
        {.UniqueRespIdentifier = 7, .NumParamItems = 3, .pParams = nullptr},
        {.UniqueRespIdentifier = 8, .NumParamItems = 0, .pParams = nullptr}};
    const PDU_UNIQUE_RESP_ID_TABLE_ITEM table = {
        .ItemType = PDU_IT_UNIQUE_RESP_ID_TABLE, .NumEntries = 2, .pUniqueData = entries};
    EXPECT_EQ(Table(&table), "   -->  [   1 of    2] - URID = 7, Num params = 3\n"
                             "    >>> ComParam pointer\t= <NULL>\n"
                             "   -->  [   2 of    2] - URID = 8, Num params = 0\n");
}

TEST_F(ResponseTable, AfterAnItemTableParametersAndValuesHaveLevelsOneToThree)
{
    UNUM8 value = 3;
    PDU_PARAM_ITEM param = {.ItemType = PDU_IT_PARAM,
                            .ComParamId = 1,
                            .ComParamDataType = PDU_PT_UNUM8,
                            .ComParamClass = PDU_PC_COM,
                            .pComParamData = &value};
    PDU_ECU_UNIQUE_RESP_DATA entry = {.UniqueRespIdentifier = 7, .NumParamItems = 1, .pParams = &param};
    PDU_UNIQUE_RESP_ID_TABLE_ITEM table = {
        .ItemType = PDU_IT_UNIQUE_RESP_ID_TABLE, .NumEntries = 1, .pUniqueData = &entry};
    const PDU_DATA_ITEM item = {.ItemType = PDU_IT_UNIQUE_RESP_ID_TABLE, .pData = &table};
    const auto afterItem = [&](Arrow arrow, const std::string& indent) {
        const std::string text =
            Decoded([&](const DecoderContext& context) { DecodeItem(context, arrow, "item", &item); });
        const std::size_t at = text.find(indent + "[   1 of");
        return at == std::string::npos ? text : text.substr(at);
    };
    const std::string param1 =
        "ComParam (" + testing::PointerText(&param) +
        ") Id = [NOT YET READ] (id=1), DataType = PDU_PT_UNUM8 (0x0101), Class = PDU_PC_COM "
        "(0x0003)\n";
    const std::string number = "[NOT YET READ]                 (id=  1): =\t(u 8)         3\t(0x03)\n";
    EXPECT_EQ(afterItem(ToTarget, "    >>> "),
              "    >>> [   1 of    1] - URID = 7, Num params = 1\n\t\t -->  " + param1 + "\t\t  >>> " +
                  number);
    EXPECT_EQ(afterItem(FromTarget, "    <<< "),
              "    <<< [   1 of    1] - URID = 7, Num params = 1\n\t\t <--  " + param1 + "\t\t  <<< " +
                  number);
}

TEST_F(ResponseTable, AfterAnItemAStructFieldRunsIntoTheNeighbouringIndents)
{
    PDU_PARAM_STRUCT_SESSION_TIMING timing = {
        .session = 1, .P2Max_high = 2, .P2Max_low = 3, .P2Star_high = 4, .P2Star_low = 5};
    PDU_PARAM_STRUCTFIELD_DATA field = {.ComParamStructType = PDU_CPST_SESSION_TIMING,
                                        .ParamMaxEntries = 1,
                                        .ParamActEntries = 1,
                                        .pStructArray = &timing};
    PDU_PARAM_ITEM param = {.ItemType = PDU_IT_PARAM,
                            .ComParamId = 1,
                            .ComParamDataType = PDU_PT_STRUCTFIELD,
                            .ComParamClass = PDU_PC_COM,
                            .pComParamData = &field};
    PDU_ECU_UNIQUE_RESP_DATA entry = {.UniqueRespIdentifier = 7, .NumParamItems = 1, .pParams = &param};
    PDU_UNIQUE_RESP_ID_TABLE_ITEM table = {
        .ItemType = PDU_IT_UNIQUE_RESP_ID_TABLE, .NumEntries = 1, .pUniqueData = &entry};
    const PDU_DATA_ITEM item = {.ItemType = PDU_IT_UNIQUE_RESP_ID_TABLE, .pData = &table};
    const auto afterItem = [&](Arrow arrow) {
        const std::string text =
            Decoded([&](const DecoderContext& context) { DecodeItem(context, arrow, "item", &item); });
        return text.substr(text.find("COM (0x0003)\n") + 13);
    };
    EXPECT_EQ(afterItem(ToTarget), "   <--  Id = [NOT YET READ] (id=1): ComParamStructType\t= 1\n"
                                   "   <--  MaxEntries\t= 1\n"
                                   "   <--  ActEntries\t= 1\n"
                                   "    <<< session\t= 1\n"
                                   "    <<< P2Max_high\t= 2\n"
                                   "    <<< P2Max_low\t= 3\n"
                                   "    <<< P2Star_high\t= 4\n"
                                   "    <<< P2Star_low\t= 5\n");
    EXPECT_EQ(afterItem(FromTarget), "\t\t\t\t...\nId = [NOT YET READ] (id=1): ComParamStructType\t= 1\n"
                                     "\t\t\t\t...\nMaxEntries\t= 1\n"
                                     "\t\t\t\t...\nActEntries\t= 1\n"
                                     "session\t= 1\n"
                                     "P2Max_high\t= 2\n"
                                     "P2Max_low\t= 3\n"
                                     "P2Star_high\t= 4\n"
                                     "P2Star_low\t= 5\n");
}

TEST_F(ResponseTable, OneLargerThanTheBufferEndsWithTheMarker)
{
    std::vector<PDU_ECU_UNIQUE_RESP_DATA> entries(10000);
    const PDU_UNIQUE_RESP_ID_TABLE_ITEM table = {
        .ItemType = PDU_IT_UNIQUE_RESP_ID_TABLE, .NumEntries = 10000, .pUniqueData = entries.data()};
    ExpectCutOff(Table(&table));
}

TEST_F(ResponseTable, HasItsGates)
{
    ExpectThreeGates(
        [](const DecoderContext& context) { DecodeUniqueRespIdTable(context, ToTarget, nullptr); });
}

} // namespace
} // namespace marvane
