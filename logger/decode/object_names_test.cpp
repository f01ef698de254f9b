#include <atomic>
#include <thread>
#include <vector>

#include "logger/decode/object_names.h"
#include "tests/support/decoded_text.h"

namespace marvane {
namespace {

/// A map and the object type that fills it.
struct MapOfType
{
    ObjectNameMap Map;
    T_PDU_OBJT Type;
};

constexpr MapOfType Maps[] = {
    {ObjectNameMap::ProtocolNames, 0x8021}, {ObjectNameMap::BusTypeNames, 0x8022},
    {ObjectNameMap::IoCtlNames, 0x8023},    {ObjectNameMap::ComParamNames, 0x8024},
    {ObjectNameMap::PinTypeNames, 0x8025},  {ObjectNameMap::ResourceNames, 0x8026},
    {ObjectNameMap::OtherObjectNames, 0},
};

/// No object has a name at the beginning and the end of each test.
class ObjectNames : public testing::Decoding
{
protected:
    static std::string Name(ObjectNameMap map, UNUM32 id)
    {
        return std::string(ObjectName(map, id, "<none>"));
    }
    static std::string Numbered(std::string text, UNUM32 number) { return text += std::to_string(number); }
    static std::string ComParam(UNUM32 id) { return Name(ObjectNameMap::ComParamNames, id); }
};

TEST_F(ObjectNames, AllMapsAreEmptyAtFirst)
{
    for (const MapOfType& entry : Maps)
        for (const UNUM32 id : {0u, 1u, 7u, PDU_ID_UNDEF, 0xFFFFFFFFu})
            EXPECT_EQ(Name(entry.Map, id), "<none>");
}

TEST_F(ObjectNames, EachTypeFillsItsOwnMapAlone)
{
    for (const MapOfType& filled : Maps) {
        ClearObjectNames();
        RecordObjectName(filled.Type, 7, "name");
        for (const MapOfType& entry : Maps)
            EXPECT_EQ(Name(entry.Map, 7), entry.Map == filled.Map ? "name" : "<none>") << filled.Type;
    }
}

TEST_F(ObjectNames, OneIdHasANameInEachMap)
{
    for (const MapOfType& entry : Maps)
        RecordObjectName(entry.Type, 7, Numbered("name of type ", entry.Type));
    for (const MapOfType& entry : Maps)
        EXPECT_EQ(Name(entry.Map, 7), Numbered("name of type ", entry.Type));
}

TEST_F(ObjectNames, AllOtherTypesShareTheLastMap)
{
    UNUM32 id = 0;
    for (const T_PDU_OBJT type : {0u, 1u, 0x8020u, 0x8027u, 0x18021u, 0xFFFFFFFFu}) {
        ++id;
        RecordObjectName(type, id, Numbered("other ", id));
        EXPECT_EQ(Name(ObjectNameMap::OtherObjectNames, id), Numbered("other ", id));
        for (std::size_t i = 0; i < 6; ++i)
            EXPECT_EQ(Name(Maps[i].Map, id), "<none>") << type;
    }
    RecordObjectName(0x8027, 1, "late");
    EXPECT_EQ(Name(ObjectNameMap::OtherObjectNames, 1), "other 1");
}

TEST_F(ObjectNames, TheFirstNameOfAnIdStays)
{
    RecordObjectName(PDU_OBJT_COMPARAM, 7, "first");
    RecordObjectName(PDU_OBJT_COMPARAM, 7, "second");
    RecordObjectName(PDU_OBJT_COMPARAM, 7, "");
    EXPECT_EQ(ComParam(7), "first");
}

TEST_F(ObjectNames, AnEmptyNameIsAName)
{
    RecordObjectName(PDU_OBJT_COMPARAM, 7, "");
    RecordObjectName(PDU_OBJT_COMPARAM, 7, "second");
    EXPECT_EQ(ComParam(7), "");
}

TEST_F(ObjectNames, TheNameIsACopy)
{
    std::string text = "CP_Baudrate";
    RecordObjectName(PDU_OBJT_COMPARAM, 7, text);
    text.assign(text.size(), 'x');
    EXPECT_EQ(ComParam(7), "CP_Baudrate");
}

TEST_F(ObjectNames, ALongNameIsKeptWhole)
{
    const std::string text(5000, 'n');
    RecordObjectName(PDU_OBJT_COMPARAM, 7, text);
    EXPECT_EQ(ComParam(7), text);
}

TEST_F(ObjectNames, UndefinedAndExtremeIdsAreLikeAnyOther)
{
    RecordObjectName(PDU_OBJT_COMPARAM, PDU_ID_UNDEF, "undefined");
    RecordObjectName(PDU_OBJT_COMPARAM, 0xFFFFFFFF, "highest");
    RecordObjectName(PDU_OBJT_COMPARAM, 0, "lowest");
    EXPECT_EQ(ComParam(0xFFFFFFFE), "undefined");
    EXPECT_EQ(ComParam(0xFFFFFFFF), "highest");
    EXPECT_EQ(ComParam(0), "lowest");
    EXPECT_EQ(ComParam(0xFFFFFFFD), "<none>");
    EXPECT_EQ(ComParam(1), "<none>");
}

TEST_F(ObjectNames, ClearingEmptiesAllMapsAndTheyFillAnew)
{
    for (const MapOfType& entry : Maps)
        RecordObjectName(entry.Type, 7, "before");
    ClearObjectNames();
    for (const MapOfType& entry : Maps)
        EXPECT_EQ(Name(entry.Map, 7), "<none>");
    for (const MapOfType& entry : Maps)
        RecordObjectName(entry.Type, 7, "behind");
    for (const MapOfType& entry : Maps)
        EXPECT_EQ(Name(entry.Map, 7), "behind");
}

TEST_F(ObjectNames, ClearingEmptyMapsTwiceIsHarmless)
{
    ClearObjectNames();
    ClearObjectNames();
    EXPECT_EQ(ComParam(7), "<none>");
}

TEST_F(ObjectNames, ATextThatWasFoundOutlivesTheClearing)
{
    RecordObjectName(PDU_OBJT_COMPARAM, 7, "CP_Baudrate");
    const std::string_view found = ObjectName(ObjectNameMap::ComParamNames, 7, "<none>");
    ClearObjectNames();
    RecordObjectName(PDU_OBJT_COMPARAM, 7, "CP_P2Max");
    EXPECT_EQ(found, "CP_Baudrate");
    EXPECT_EQ(ComParam(7), "CP_P2Max");
}

TEST_F(ObjectNames, ALookUpAddsNothing)
{
    EXPECT_EQ(ComParam(7), "<none>");
    RecordObjectName(PDU_OBJT_COMPARAM, 7, "CP_Baudrate");
    EXPECT_EQ(ComParam(7), "CP_Baudrate");
}

TEST_F(ObjectNames, ManyIdsKeepTheirOwnNames)
{
    // Neighbours, multiples of powers of two, and ids that differ in their high bits only.
    std::vector<UNUM32> ids;
    for (UNUM32 i = 0; i < 3000; ++i)
        ids.insert(ids.end(),
                   {i, 0x10000 + i * 64, 0x400000 + i * 4096, 0x80000000 + (i << 18), 0xFFFFFFFF - i});
    for (const UNUM32 id : ids)
        RecordObjectName(PDU_OBJT_RESOURCE, id, Numbered("r", id));
    for (const UNUM32 id : ids)
        ASSERT_EQ(Name(ObjectNameMap::ResourceNames, id), Numbered("r", id));
    EXPECT_EQ(Name(ObjectNameMap::ResourceNames, 5000), "<none>");
    EXPECT_EQ(ComParam(1), "<none>");
}

TEST_F(ObjectNames, ThreadsThatLearnAtOnceLoseNothing)
{
    constexpr UNUM32 threads = 4;
    constexpr UNUM32 count = 500;
    std::vector<std::thread> running;
    for (UNUM32 thread = 0; thread < threads; ++thread)
        running.emplace_back([thread] {
            for (UNUM32 i = 0; i < count; ++i)
                RecordObjectName(PDU_OBJT_COMPARAM, i * threads + thread,
                                 std::to_string(i * threads + thread));
        });
    for (std::thread& thread : running)
        thread.join();
    for (UNUM32 id = 0; id < threads * count; ++id)
        ASSERT_EQ(ComParam(id), std::to_string(id));
}

TEST_F(ObjectNames, ThreadsThatLearnTheSameIdsAgreeOnOneName)
{
    constexpr UNUM32 count = 500;
    std::atomic<UNUM32> changed = 0;
    std::vector<std::thread> running;
    for (char thread = 'a'; thread < 'e'; ++thread)
        running.emplace_back([thread, &changed] {
            for (UNUM32 id = 0; id < count; ++id) {
                RecordObjectName(PDU_OBJT_COMPARAM, id, std::string(20, thread));
                const std::string_view first = ObjectName(ObjectNameMap::ComParamNames, id, "<none>");
                RecordObjectName(PDU_OBJT_COMPARAM, id, "too late");
                const bool whole = first.size() == 20 && first.find_first_not_of(first[0]) == first.npos;
                if (!whole || ObjectName(ObjectNameMap::ComParamNames, id, "<none>") != first)
                    ++changed;
            }
        });
    for (std::thread& thread : running)
        thread.join();
    EXPECT_EQ(changed, 0u);
}

TEST_F(ObjectNames, AReaderSeesWholeNamesWhileOthersLearnAndClear)
{
    std::atomic<bool> stop = false;
    std::atomic<UNUM32> torn = 0;
    std::thread reader([&] {
        while (!stop)
            for (UNUM32 id = 0; id < 50; ++id) {
                const std::string_view name = ObjectName(ObjectNameMap::ComParamNames, id, "<none>");
                if (name != "<none>" && name != Numbered("name ", id))
                    ++torn;
            }
    });
    for (int round = 0; round < 50; ++round) {
        for (UNUM32 id = 0; id < 50; ++id)
            RecordObjectName(PDU_OBJT_COMPARAM, id, Numbered("name ", id));
        ClearObjectNames();
    }
    stop = true;
    reader.join();
    EXPECT_EQ(torn, 0u);
}

TEST_F(ObjectNames, EachKindOfObjectHasItsWordsForAMissingName)
{
    const auto decoded = [](auto decode) { return Decoded(decode); };
    UNUM32 value = 1;
    const PDU_PARAM_ITEM param = {.ItemType = PDU_IT_PARAM,
                                  .ComParamId = 7,
                                  .ComParamDataType = PDU_PT_UNUM32,
                                  .ComParamClass = PDU_PC_COM,
                                  .pComParamData = &value};
    EXPECT_EQ(
        decoded([&](const DecoderContext& context) { DecodeComParam(context, ToTarget, &param); }),
        "   -->  ComParam (" + testing::PointerText(&param) +
            ") Id = [NOT YET READ] (id=7), DataType = PDU_PT_UNUM32 (0x0105), Class = PDU_PC_COM (0x0003)\n"
            "    >>> [NOT YET READ]                 (id=  7): =\t(u32)         1\t(0x00000001)\n");
    PDU_PIN_DATA pin = {.DLCPinNumber = 6, .DLCPinTypeId = 7};
    const PDU_RSC_DATA data = {.BusTypeId = 7, .ProtocolId = 7, .NumPinData = 1, .pDLCPinData = &pin};
    EXPECT_EQ(
        decoded([&](const DecoderContext& context) { DecodeRscData(context, "pRscData", &data); }),
        "   -->  pRscData       : BusTypeId = <UNKNOWN> (7), ProtocolId = <UNKNOWN> (7), NumPinData = 1\n"
        "    >>> pDLCPinData[0]:\tNum =  6, Type = <UNKNOWN> (7)\n");
    const PDU_RSC_CONFLICT_DATA conflict = {.hMod = 1, .ResourceId = 7};
    EXPECT_EQ(decoded([&](const DecoderContext& context) { DecodeRscConflictList(context, &conflict); }),
              "\t\t  >>> pConflictData:\t\thMod=0x00000001, ResourceId=<UNKNOWN>(7)\n");
}

} // namespace
} // namespace marvane
