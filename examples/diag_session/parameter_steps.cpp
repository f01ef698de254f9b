// Steps about the parameters of a link: ComParams of all data types, and the table of response identifiers.
#include <iterator>

#include "examples/diag_session/session.h"

namespace diag {

namespace {

constexpr const char* ParameterNames[] = {
    "CP_RepeatReqCountApp",    "CP_TemperatureOffset", "CP_P2Max",
    "CP_TimeOffset",           "CP_Baudrate",          "CP_ClockDrift",
    "CP_TesterPresentMessage", "CP_CanPhysReqIdList",  "CP_SessionTiming_Ecu",
    "CP_AccessTiming_Ecu"};

template <class Number> std::string NumberText(const void* data)
{
    return std::to_string(*static_cast<const Number*>(data));
}

std::string LongsText(const PDU_PARAM_LONGFIELD_DATA& field)
{
    std::string text;
    for (UNUM32 i = 0; i < field.ParamActLen; ++i)
        text += (i == 0 ? "" : ", ") + std::to_string(field.pDataArray[i]);
    return text;
}

std::string StructsText(const PDU_PARAM_STRUCTFIELD_DATA& field)
{
    if (field.ComParamStructType == PDU_CPST_SESSION_TIMING) {
        const auto& first = *static_cast<const PDU_PARAM_STRUCT_SESSION_TIMING*>(field.pStructArray);
        return "timings of " + std::to_string(field.ParamActEntries) + " sessions, P2 of the first " +
               std::to_string(first.P2Max_high * 256 + first.P2Max_low);
    }
    const auto& first = *static_cast<const PDU_PARAM_STRUCT_ACCESS_TIMING*>(field.pStructArray);
    return "access timing set " + std::to_string(first.TimingSet) + ", P2 from " +
           std::to_string(first.P2Min) + " to " + std::to_string(first.P2Max);
}

std::string ValueText(const PDU_PARAM_ITEM& item)
{
    const void* const data = item.pComParamData;
    switch (item.ComParamDataType) {
    case PDU_PT_UNUM8:
        return NumberText<UNUM8>(data);
    case PDU_PT_SNUM8:
        return NumberText<SNUM8>(data);
    case PDU_PT_UNUM16:
        return NumberText<UNUM16>(data);
    case PDU_PT_SNUM16:
        return NumberText<SNUM16>(data);
    case PDU_PT_UNUM32:
        return NumberText<UNUM32>(data);
    case PDU_PT_SNUM32:
        return NumberText<SNUM32>(data);
    case PDU_PT_BYTEFIELD: {
        const auto& field = *static_cast<const PDU_PARAM_BYTEFIELD_DATA*>(data);
        return Hex({field.pDataArray, field.pDataArray + field.ParamActLen});
    }
    case PDU_PT_LONGFIELD:
        return LongsText(*static_cast<const PDU_PARAM_LONGFIELD_DATA*>(data));
    default:
        return StructsText(*static_cast<const PDU_PARAM_STRUCTFIELD_DATA*>(data));
    }
}

/// Reads a ComParam, prints its value, and writes it back unchanged.
void KeepParameter(Session& session, UNUM32 hCLL, const char* name)
{
    PDU_PARAM_ITEM* item = nullptr;
    session.Expect("PDUGetComParam", session.Pdu.PDUGetComParam(
                                         session.Module, hCLL, session.IdOf(PDU_OBJT_COMPARAM, name), &item));
    session.Say("  %s: %s", name, ValueText(*item).c_str());
    session.Expect("PDUSetComParam", session.Pdu.PDUSetComParam(session.Module, hCLL, item));
    session.Destroy(item);
}

/// Two control units may answer, each with its own identifier and CAN address.
void SetResponseTable(Session& session, UNUM32 hCLL)
{
    const UNUM32 id = session.IdOf(PDU_OBJT_COMPARAM, "CP_CanRespUSDTId");
    UNUM32 engine = 0x7E8, gearbox = 0x7E9;
    PDU_PARAM_ITEM parameters[] = {{.ItemType = PDU_IT_PARAM,
                                    .ComParamId = id,
                                    .ComParamDataType = PDU_PT_UNUM32,
                                    .ComParamClass = PDU_PC_UNIQUE_ID,
                                    .pComParamData = &engine},
                                   {.ItemType = PDU_IT_PARAM,
                                    .ComParamId = id,
                                    .ComParamDataType = PDU_PT_UNUM32,
                                    .ComParamClass = PDU_PC_UNIQUE_ID,
                                    .pComParamData = &gearbox}};
    PDU_ECU_UNIQUE_RESP_DATA entries[] = {
        {.UniqueRespIdentifier = 7, .NumParamItems = 1, .pParams = &parameters[0]},
        {.UniqueRespIdentifier = 8, .NumParamItems = 1, .pParams = &parameters[1]}};
    PDU_UNIQUE_RESP_ID_TABLE_ITEM table = {
        .ItemType = PDU_IT_UNIQUE_RESP_ID_TABLE, .NumEntries = 2, .pUniqueData = entries};
    session.Expect("PDUSetUniqueRespIdTable",
                   session.Pdu.PDUSetUniqueRespIdTable(session.Module, hCLL, &table));
    PDU_UNIQUE_RESP_ID_TABLE_ITEM* back = nullptr;
    session.Expect("PDUGetUniqueRespIdTable",
                   session.Pdu.PDUGetUniqueRespIdTable(session.Module, hCLL, &back));
    session.Say("Control units that may answer: %u", static_cast<unsigned>(back->NumEntries));
    session.Destroy(back);
}

} // namespace

void UseParameters(Session& session, UNUM32 hCLL)
{
    session.Say("Parameters, read and written back:");
    for (const char* name : ParameterNames)
        KeepParameter(session, hCLL, name);
    SetResponseTable(session, hCLL);
    session.Expect("PDULockResource", session.Pdu.PDULockResource(session.Module, hCLL, 1));
    session.DrainModuleEvents();
    session.Run(hCLL, PDU_COPT_UPDATEPARAM, {});
    session.DrainModuleEvents();
    session.Say("Parameters in effect: %u", static_cast<unsigned>(std::size(ParameterNames)));
}

void SetP2Max(Session& session, UNUM32 hCLL, UNUM16 value)
{
    PDU_PARAM_ITEM item = {.ItemType = PDU_IT_PARAM,
                           .ComParamId = session.IdOf(PDU_OBJT_COMPARAM, "CP_P2Max"),
                           .ComParamDataType = PDU_PT_UNUM16,
                           .ComParamClass = PDU_PC_TIMING,
                           .pComParamData = &value};
    session.Expect("PDUSetComParam", session.Pdu.PDUSetComParam(session.Module, hCLL, &item));
}

} // namespace diag
