#include "examples/sim_vci/comparams.h"

#include <cstring>

#include "examples/sim_vci/objects.h"

namespace sim {

namespace {

template <class... Visitors> struct Overloaded : Visitors...
{
    using Visitors::operator()...;
};
template <class... Visitors> Overloaded(Visitors...) -> Overloaded<Visitors...>;

template <class Number> constexpr T_PDU_PT TypeOf()
{
    constexpr bool isSigned = static_cast<Number>(-1) < Number{0};
    constexpr T_PDU_PT narrowest = sizeof(Number) == 1   ? PDU_PT_UNUM8
                                   : sizeof(Number) == 2 ? PDU_PT_UNUM16
                                                         : PDU_PT_UNUM32;
    return isSigned ? narrowest + 1 : narrowest;
}

template <class Field, class Element> void* NewField(Item& item, const std::vector<Element>& elements)
{
    auto* const field = item.New<Field>();
    field->ParamMaxLen = field->ParamActLen = static_cast<UNUM32>(elements.size());
    field->pDataArray = item.New<Element>(elements.size());
    if (field->pDataArray)
        std::memcpy(field->pDataArray, elements.data(), elements.size() * sizeof(Element));
    return field;
}

template <class Struct> void* NewStructField(Item& item, T_PDU_CPST type, const std::vector<Struct>& structs)
{
    auto* const field = item.New<PDU_PARAM_STRUCTFIELD_DATA>();
    field->ComParamStructType = type;
    field->ParamMaxEntries = field->ParamActEntries = static_cast<UNUM32>(structs.size());
    auto* const copies = item.New<Struct>(structs.size());
    if (copies)
        std::memcpy(copies, structs.data(), structs.size() * sizeof(Struct));
    field->pStructArray = copies;
    return field;
}

template <class Element> std::vector<Element> Elements(const void* first, UNUM32 count)
{
    const auto* const elements = static_cast<const Element*>(first);
    return elements ? std::vector<Element>(elements, elements + count) : std::vector<Element>();
}

} // namespace

ComParams::ComParams()
    : values_{
          {id::Baudrate, {PDU_PC_BUSTYPE, UNUM32{500000}}},
          {id::CanRespId, {PDU_PC_UNIQUE_ID, UNUM32{0x7E8}}},
          {id::TesterPresentTime, {PDU_PC_TESTER_PRESENT, UNUM32{2000000}}},
          {id::P2Max, {PDU_PC_TIMING, UNUM16{50}}},
          {id::RetryCount, {PDU_PC_ERRHDL, UNUM8{3}}},
          {id::TimeOffset, {PDU_PC_TIMING, SNUM16{-250}}},
          {id::TemperatureOffset, {PDU_PC_INIT, SNUM8{-40}}},
          {id::ClockDrift, {PDU_PC_COM, SNUM32{-100000}}},
          {id::TesterPresentMessage, {PDU_PC_TESTER_PRESENT, ByteField{0x3E, 0x80}}},
          {id::SessionTiming, {PDU_PC_TIMING, SessionTimings{{1, 0, 50, 1, 244}, {3, 0, 100, 2, 88}}}},
          {id::AccessTiming, {PDU_PC_TIMING, AccessTimings{{50, 100, 110, 0, 5, 4}}}},
          {id::PhysicalRequestIds, {PDU_PC_COM, LongField{0x7E0, 0x7E1, 0x7E2}}},
      }
{
}

bool ComParams::Write(UNUM32 id, Item& item, PDU_PARAM_ITEM& record) const
{
    const auto found = values_.find(id);
    if (found == values_.end())
        return false;
    record = {PDU_IT_PARAM, id, 0, found->second.Class, nullptr};
    std::visit(Overloaded{
                   [&](const ByteField& field) {
                       record.ComParamDataType = PDU_PT_BYTEFIELD;
                       record.pComParamData = NewField<PDU_PARAM_BYTEFIELD_DATA>(item, field);
                   },
                   [&](const LongField& field) {
                       record.ComParamDataType = PDU_PT_LONGFIELD;
                       record.pComParamData = NewField<PDU_PARAM_LONGFIELD_DATA>(item, field);
                   },
                   [&](const SessionTimings& timings) {
                       record.ComParamDataType = PDU_PT_STRUCTFIELD;
                       record.pComParamData = NewStructField(item, PDU_CPST_SESSION_TIMING, timings);
                   },
                   [&](const AccessTimings& timings) {
                       record.ComParamDataType = PDU_PT_STRUCTFIELD;
                       record.pComParamData = NewStructField(item, PDU_CPST_ACCESS_TIMING, timings);
                   },
                   [&](auto number) {
                       record.ComParamDataType = TypeOf<decltype(number)>();
                       auto* const place = item.New<decltype(number)>();
                       *place = number;
                       record.pComParamData = place;
                   },
               },
               found->second.Value);
    return true;
}

T_PDU_ERROR ComParams::Read(const PDU_PARAM_ITEM& record)
{
    const auto found = values_.find(record.ComParamId);
    if (found == values_.end())
        return PDU_ERR_COMPARAM_NOT_SUPPORTED;
    if (!record.pComParamData)
        return PDU_ERR_INVALID_PARAMETERS;
    // Refuses a value whose type is not that of the ComParam.
    Item shape;
    PDU_PARAM_ITEM known = {};
    Write(record.ComParamId, shape, known);
    if (known.ComParamDataType != record.ComParamDataType)
        return PDU_ERR_INVALID_PARAMETERS;
    const auto* const bytes = static_cast<const PDU_PARAM_BYTEFIELD_DATA*>(record.pComParamData);
    const auto* const longs = static_cast<const PDU_PARAM_LONGFIELD_DATA*>(record.pComParamData);
    const auto* const structs = static_cast<const PDU_PARAM_STRUCTFIELD_DATA*>(record.pComParamData);
    std::visit(Overloaded{
                   [&](ByteField& field) { field = Elements<UNUM8>(bytes->pDataArray, bytes->ParamActLen); },
                   [&](LongField& field) { field = Elements<UNUM32>(longs->pDataArray, longs->ParamActLen); },
                   [&](SessionTimings& timings) {
                       timings = Elements<PDU_PARAM_STRUCT_SESSION_TIMING>(structs->pStructArray,
                                                                           structs->ParamActEntries);
                   },
                   [&](AccessTimings& timings) {
                       timings = Elements<PDU_PARAM_STRUCT_ACCESS_TIMING>(structs->pStructArray,
                                                                          structs->ParamActEntries);
                   },
                   [&](auto& number) { std::memcpy(&number, record.pComParamData, sizeof number); },
               },
               found->second.Value);
    return PDU_STATUS_NOERROR;
}

UNUM16 ComParams::P2Max() const
{
    return std::get<UNUM16>(values_.at(id::P2Max).Value);
}

} // namespace sim
