#include <array>

#include "tests/golden/diagnostic_steps.h"

namespace marvane::testing {

namespace {

/// Gets a ComParam with a value, and sets it to the same value.
template <class Value>
void Use(Stage& stage, UNUM32 id, T_PDU_PT type, T_PDU_PC parameterClass, const std::string& name,
         Value& value)
{
    auto& item = stage.log.Keep<PDU_PARAM_ITEM>(name, {PDU_IT_PARAM, id, type, parameterClass, &value});
    auto& found = stage.log.Keep<PDU_PARAM_ITEM*>("found " + name, nullptr);
    stage.script.Give("PDUGetComParam", 3, &item);
    stage.api.PDUGetComParam(1, 2, id, &found);
    stage.api.PDUSetComParam(1, 2, found);
}

template <class Number>
void UseNumber(Stage& stage, UNUM32 id, T_PDU_PT type, T_PDU_PC parameterClass, const std::string& name,
               Number number)
{
    Use(stage, id, type, parameterClass, name, stage.log.Keep("value of " + name, number));
}

void UseFields(Stage& stage)
{
    auto& bytes =
        stage.log.Keep<std::array<UNUM8, 18>>("field bytes", {0x3E, 0x80, 0x20, 0x7E, 0x7F, 0x1F, 0x41, 0x42,
                                                              0x43, 0, 1, 2, 3, 4, 5, 6, 0x61, 0x62});
    auto& byteField = stage.log.Keep<PDU_PARAM_BYTEFIELD_DATA>("byte field", {32, 18, bytes.data()});
    Use(stage, 608, PDU_PT_BYTEFIELD, PDU_PC_TESTER_PRESENT, "byte field parameter", byteField);

    auto& longs = stage.log.Keep<std::array<UNUM32, 2>>("field longs", {0x000007E0, 0x64636261});
    auto& longField = stage.log.Keep<PDU_PARAM_LONGFIELD_DATA>("long field", {4, 2, longs.data()});
    Use(stage, 609, PDU_PT_LONGFIELD, PDU_PC_COM, "long field parameter", longField);
}

void UseTimings(Stage& stage)
{
    auto& sessions = stage.log.Keep<std::array<PDU_PARAM_STRUCT_SESSION_TIMING, 2>>(
        "session timings", {{{1, 0, 50, 1, 244}, {3, 0, 100, 2, 88}}});
    auto& sessionField = stage.log.Keep<PDU_PARAM_STRUCTFIELD_DATA>(
        "session timing field", {PDU_CPST_SESSION_TIMING, 4, 2, sessions.data()});
    Use(stage, 610, PDU_PT_STRUCTFIELD, PDU_PC_TIMING, "session timing parameter", sessionField);

    auto& access = stage.log.Keep<std::array<PDU_PARAM_STRUCT_ACCESS_TIMING, 1>>("access timings",
                                                                                 {{{50, 100, 110, 0, 5, 2}}});
    auto& accessField = stage.log.Keep<PDU_PARAM_STRUCTFIELD_DATA>(
        "access timing field", {PDU_CPST_ACCESS_TIMING, 1, 1, access.data()});
    Use(stage, 611, PDU_PT_STRUCTFIELD, PDU_PC_TIMING, "access timing parameter", accessField);
}

} // namespace

void UseComParams(Stage& stage)
{
    UseNumber<UNUM8>(stage, RepeatCount, PDU_PT_UNUM8, PDU_PC_ERRHDL, "unsigned byte", 200);
    UseNumber<SNUM8>(stage, 603, PDU_PT_SNUM8, PDU_PC_INIT, "signed byte", -128);
    UseNumber<UNUM16>(stage, 604, PDU_PT_UNUM16, PDU_PC_TIMING, "unsigned word", 50000);
    UseNumber<SNUM16>(stage, 605, PDU_PT_SNUM16, PDU_PC_TIMING, "signed word", -1);
    UseNumber<UNUM32>(stage, 606, PDU_PT_UNUM32, PDU_PC_BUSTYPE, "unsigned long", 4000000000);
    UseNumber<SNUM32>(stage, 607, PDU_PT_SNUM32, PDU_PC_COM, "signed long", -100000);
    UseFields(stage);
    UseTimings(stage);
}

void UseResponseTable(Stage& stage)
{
    auto& canId = stage.log.Keep<UNUM32>("response address", 0x7E8);
    auto& access = stage.log.Keep<std::array<PDU_PARAM_STRUCT_ACCESS_TIMING, 1>>("table timings",
                                                                                 {{{1, 2, 3, 4, 5, 255}}});
    auto& field = stage.log.Keep<PDU_PARAM_STRUCTFIELD_DATA>("table timing field",
                                                             {PDU_CPST_ACCESS_TIMING, 1, 1, access.data()});
    auto& parameters = stage.log.Keep<std::array<PDU_PARAM_ITEM, 2>>(
        "table parameter 0", {{{PDU_IT_PARAM, ResponseId, PDU_PT_UNUM32, PDU_PC_UNIQUE_ID, &canId},
                               {PDU_IT_PARAM, 611, PDU_PT_STRUCTFIELD, PDU_PC_TIMING, &field}}});
    stage.log.Name(&parameters[1], "table parameter 1");
    auto& entries = stage.log.Keep<std::array<PDU_ECU_UNIQUE_RESP_DATA, 2>>(
        "table entries", {{{7, 2, parameters.data()}, {PDU_ID_UNDEF, 0, nullptr}}});
    auto& table = stage.log.Keep<PDU_UNIQUE_RESP_ID_TABLE_ITEM>(
        "response table", {PDU_IT_UNIQUE_RESP_ID_TABLE, 2, entries.data()});
    auto& found = stage.log.Keep<PDU_UNIQUE_RESP_ID_TABLE_ITEM*>("found response table", nullptr);
    stage.api.PDUSetUniqueRespIdTable(1, 2, &table);
    stage.script.Give("PDUGetUniqueRespIdTable", 2, &table);
    stage.api.PDUGetUniqueRespIdTable(1, 2, &found);
    stage.api.PDUDestroyItem(found);
}

} // namespace marvane::testing
