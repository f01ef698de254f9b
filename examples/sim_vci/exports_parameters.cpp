// Exported functions for the ComParams of a link and its table of response identifiers.
#include "examples/sim_vci/faults.h"
#include "examples/sim_vci/objects.h"
#include "examples/sim_vci/on_link.h"

using namespace sim;

T_PDU_ERROR PDUGetComParam(UNUM32 hMod, UNUM32 hCLL, UNUM32 ParamID, PDU_PARAM_ITEM** pParamItem)
{
    CurrentFaults.OnCall(__func__);
    if (!pParamItem)
        return PDU_ERR_INVALID_PARAMETERS;
    return OnLink(hMod, hCLL, [&](Link& link) {
        Item item;
        auto* const record = item.New<PDU_PARAM_ITEM>();
        if (!link.Parameters.Write(ParamID, item, *record))
            return PDU_ERR_COMPARAM_NOT_SUPPORTED;
        *pParamItem = OpenItems.Publish(std::move(item), record);
        return PDU_STATUS_NOERROR;
    });
}

T_PDU_ERROR PDUSetComParam(UNUM32 hMod, UNUM32 hCLL, PDU_PARAM_ITEM* pParamItem)
{
    CurrentFaults.OnCall(__func__);
    if (!pParamItem)
        return PDU_ERR_INVALID_PARAMETERS;
    return OnLink(hMod, hCLL, [&](Link& link) { return link.Parameters.Read(*pParamItem); });
}

T_PDU_ERROR PDUGetUniqueRespIdTable(UNUM32 hMod, UNUM32 hCLL,
                                    PDU_UNIQUE_RESP_ID_TABLE_ITEM** pUniqueRespIdTable)
{
    CurrentFaults.OnCall(__func__);
    if (!pUniqueRespIdTable)
        return PDU_ERR_INVALID_PARAMETERS;
    return OnLink(hMod, hCLL, [&](Link& link) {
        Item item;
        auto* const table = item.New<PDU_UNIQUE_RESP_ID_TABLE_ITEM>();
        auto* entry = item.New<PDU_ECU_UNIQUE_RESP_DATA>(link.Respondents.size());
        *table = {PDU_IT_UNIQUE_RESP_ID_TABLE, static_cast<UNUM32>(link.Respondents.size()), entry};
        for (const Respondent& respondent : link.Respondents) {
            *entry = {respondent.UniqueRespId, 2, item.New<PDU_PARAM_ITEM>(2)};
            respondent.Parameters.Write(id::CanRespId, item, entry->pParams[0]);
            respondent.Parameters.Write(id::SessionTiming, item, entry->pParams[1]);
            ++entry;
        }
        *pUniqueRespIdTable = OpenItems.Publish(std::move(item), table);
        return PDU_STATUS_NOERROR;
    });
}

T_PDU_ERROR PDUSetUniqueRespIdTable(UNUM32 hMod, UNUM32 hCLL,
                                    PDU_UNIQUE_RESP_ID_TABLE_ITEM* pUniqueRespIdTable)
{
    CurrentFaults.OnCall(__func__);
    if (!pUniqueRespIdTable || pUniqueRespIdTable->ItemType != PDU_IT_UNIQUE_RESP_ID_TABLE ||
        (!pUniqueRespIdTable->pUniqueData && pUniqueRespIdTable->NumEntries != 0))
        return PDU_ERR_INVALID_PARAMETERS;
    return OnLink(hMod, hCLL, [&](Link& link) {
        std::vector<Respondent> respondents;
        for (UNUM32 i = 0; i < pUniqueRespIdTable->NumEntries; ++i) {
            const PDU_ECU_UNIQUE_RESP_DATA& entry = pUniqueRespIdTable->pUniqueData[i];
            respondents.push_back({entry.UniqueRespIdentifier, {}});
            for (UNUM32 p = 0; entry.pParams && p < entry.NumParamItems; ++p)
                if (const T_PDU_ERROR status = respondents.back().Parameters.Read(entry.pParams[p]);
                    status != PDU_STATUS_NOERROR)
                    return status;
        }
        link.Respondents = std::move(respondents);
        return PDU_STATUS_NOERROR;
    });
}
