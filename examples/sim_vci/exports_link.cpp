// Exported functions of a link: its life cycle, locks and ComPrimitives.
#include "examples/sim_vci/faults.h"
#include "examples/sim_vci/objects.h"
#include "examples/sim_vci/on_link.h"

using namespace sim;

namespace {

constexpr UNUM32 ExtraInfoFlag = 5;
constexpr UNUM32 RawModeFlag = 7;

bool HasFlag(const PDU_FLAG_DATA* flags, UNUM32 bit)
{
    return flags && flags->pFlagData && flags->NumFlagBytes > bit / 8 &&
           (flags->pFlagData[bit / 8] >> bit % 8 & 1) != 0;
}

/// Runs an action on the locks of a link and signals a change.
template <class Action> T_PDU_ERROR ChangeLock(UNUM32 hMod, UNUM32 hCLL, Action action)
{
    Outbox outbox;
    const T_PDU_ERROR status = OnLink(hMod, hCLL, [&](Link& link) {
        const T_PDU_ERROR changed = action(link);
        if (changed == PDU_STATUS_NOERROR)
            Interface.PutInfo(outbox, PDU_INFO_RSC_LOCK_CHG);
        return changed;
    });
    Interface.Deliver(outbox);
    return status;
}

Bytes CopyOf(const UNUM8* bytes, UNUM32 count)
{
    return bytes ? Bytes(bytes, bytes + count) : Bytes();
}

void TakeControl(ComPrimitive& primitive, const Link& link, const PDU_COP_CTRL_DATA& control)
{
    if (control.TempParamUpdate == 1)
        primitive.P2Max = link.Parameters.P2Max();
    primitive.Time = control.Time;
    primitive.SendCycles = control.NumSendCycles;
    primitive.ReceiveCycles = control.NumReceiveCycles;
    primitive.ExtraInfo = HasFlag(&control.TxFlag, ExtraInfoFlag);
    for (UNUM32 i = 0; control.pExpectedResponseArray && i < control.NumPossibleExpectedResponses; ++i) {
        const PDU_EXP_RESP_DATA& expected = control.pExpectedResponseArray[i];
        const UNUM32* const ids = expected.pUniqueRespIds;
        primitive.Responses.push_back(
            {expected.ResponseType == 0, expected.AcceptanceId,
             CopyOf(expected.pMaskData, expected.NumMaskPatternBytes),
             CopyOf(expected.pPatternData, expected.NumMaskPatternBytes),
             ids ? std::vector<UNUM32>(ids, ids + expected.NumUniqueRespIds) : std::vector<UNUM32>()});
    }
}

T_PDU_ERROR MayStart(const Link& link, T_PDU_COPT type)
{
    if (type < PDU_COPT_STARTCOMM || type > PDU_COPT_RESTORE_PARAM)
        return PDU_ERR_ID_NOT_SUPPORTED;
    if (link.Status == PDU_CLLST_OFFLINE)
        return PDU_ERR_CLL_NOT_CONNECTED;
    const bool needsCommunication = type == PDU_COPT_SENDRECV || type == PDU_COPT_STOPCOMM;
    return needsCommunication && link.Status != PDU_CLLST_COMM_STARTED ? PDU_ERR_CLL_NOT_STARTED
                                                                       : PDU_STATUS_NOERROR;
}

} // namespace

T_PDU_ERROR PDUCreateComLogicalLink(UNUM32 hMod, PDU_RSC_DATA* pRscData, UNUM32 resourceId, void* pCLLTag,
                                    UNUM32* phCLL, PDU_FLAG_DATA* pCLLCreateFlag)
{
    CurrentFaults.OnCall(__func__);
    if (!phCLL)
        return PDU_ERR_INVALID_PARAMETERS;
    const std::lock_guard hold(Interface.Mutex);
    if (hMod != ModuleHandle)
        return PDU_ERR_INVALID_HANDLE;
    if (!Interface.ModuleConnected)
        return PDU_ERR_MODULE_NOT_CONNECTED;
    if (pRscData)
        resourceId = pRscData->ProtocolId == id::ProtocolUdsOnDoIP ? id::ResourceDoIP : id::ResourceCan;
    if (resourceId != id::ResourceCan && resourceId != id::ResourceDoIP)
        return PDU_ERR_ID_NOT_SUPPORTED;
    *phCLL = Interface.NextLink++;
    Link& link = Interface.Links[*phCLL];
    link.Resource = resourceId;
    link.Tag = pCLLTag;
    link.Raw = HasFlag(pCLLCreateFlag, RawModeFlag);
    return PDU_STATUS_NOERROR;
}

T_PDU_ERROR PDUDestroyComLogicalLink(UNUM32 hMod, UNUM32 hCLL)
{
    CurrentFaults.OnCall(__func__);
    return OnLink(hMod, hCLL, [&](Link& link) {
        std::erase_if(Interface.Primitives, [&](const auto& entry) { return entry.second.Link == hCLL; });
        std::erase_if(Interface.Late, [&](const ComPrimitive& late) { return late.Link == hCLL; });
        for (PDU_EVENT_ITEM* event : link.Queue)
            OpenItems.Destroy(event);
        Interface.Links.erase(hCLL);
        return PDU_STATUS_NOERROR;
    });
}

T_PDU_ERROR PDUConnect(UNUM32 hMod, UNUM32 hCLL)
{
    CurrentFaults.OnCall(__func__);
    return OnLink(hMod, hCLL, [](Link& link) {
        if (link.Status != PDU_CLLST_OFFLINE)
            return PDU_ERR_CLL_CONNECTED;
        link.Status = PDU_CLLST_ONLINE;
        return PDU_STATUS_NOERROR;
    });
}

T_PDU_ERROR PDUDisconnect(UNUM32 hMod, UNUM32 hCLL)
{
    CurrentFaults.OnCall(__func__);
    return OnLink(hMod, hCLL, [](Link& link) {
        if (link.Status == PDU_CLLST_OFFLINE)
            return PDU_ERR_CLL_NOT_CONNECTED;
        link.Status = PDU_CLLST_OFFLINE;
        return PDU_STATUS_NOERROR;
    });
}

T_PDU_ERROR PDULockResource(UNUM32 hMod, UNUM32 hCLL, UNUM32 LockMask)
{
    CurrentFaults.OnCall(__func__);
    return ChangeLock(hMod, hCLL, [&](Link& link) {
        for (const auto& [handle, other] : Interface.Links)
            if (handle != hCLL && other.Resource == link.Resource && (other.LockMask & LockMask) != 0)
                return PDU_ERR_RSC_LOCKED_BY_OTHER_CLL;
        link.LockMask |= LockMask;
        return PDU_STATUS_NOERROR;
    });
}

T_PDU_ERROR PDUUnlockResource(UNUM32 hMod, UNUM32 hCLL, UNUM32 LockMask)
{
    CurrentFaults.OnCall(__func__);
    return ChangeLock(hMod, hCLL, [&](Link& link) {
        if ((link.LockMask & LockMask) != LockMask)
            return PDU_ERR_RSC_NOT_LOCKED;
        link.LockMask &= ~LockMask;
        return PDU_STATUS_NOERROR;
    });
}

T_PDU_ERROR PDUStartComPrimitive(UNUM32 hMod, UNUM32 hCLL, T_PDU_COPT CoPType, UNUM32 CoPDataSize,
                                 UNUM8* pCoPData, PDU_COP_CTRL_DATA* pCoPCtrlData, void* pCoPTag,
                                 UNUM32* phCoP)
{
    CurrentFaults.OnCall(__func__);
    if (!phCoP || (CoPDataSize != 0 && !pCoPData))
        return PDU_ERR_INVALID_PARAMETERS;
    return OnLink(hMod, hCLL, [&](Link& link) {
        if (const T_PDU_ERROR status = MayStart(link, CoPType); status != PDU_STATUS_NOERROR)
            return status;
        *phCoP = Interface.NextPrimitive++;
        ComPrimitive& primitive = Interface.Primitives[*phCoP];
        primitive.Handle = *phCoP;
        primitive.Link = hCLL;
        primitive.Type = CoPType;
        primitive.Data = CopyOf(pCoPData, CoPDataSize);
        primitive.Tag = pCoPTag;
        primitive.P2Max = link.P2Max;
        primitive.Due = Clock::now();
        if (pCoPCtrlData)
            TakeControl(primitive, link, *pCoPCtrlData);
        Interface.Wake();
        return PDU_STATUS_NOERROR;
    });
}

T_PDU_ERROR PDUCancelComPrimitive(UNUM32 hMod, UNUM32 hCLL, UNUM32 hCoP)
{
    CurrentFaults.OnCall(__func__);
    Outbox outbox;
    const T_PDU_ERROR status = OnLink(hMod, hCLL, [&](Link&) {
        const auto found = Interface.Primitives.find(hCoP);
        if (found == Interface.Primitives.end() || found->second.Link != hCLL)
            return PDU_ERR_INVALID_HANDLE;
        Interface.Cancel(outbox, found->second);
        Interface.Wake();
        return PDU_STATUS_NOERROR;
    });
    Interface.Deliver(outbox);
    return status;
}

T_PDU_ERROR PDUGetStatus(UNUM32 hMod, UNUM32 hCLL, UNUM32 hCoP, T_PDU_STATUS* pStatusCode, UNUM32* pTimestamp,
                         UNUM32* pExtraInfo)
{
    CurrentFaults.OnCall(__func__);
    if (!pStatusCode)
        return PDU_ERR_INVALID_PARAMETERS;
    const auto answer = [&](T_PDU_STATUS code) {
        *pStatusCode = code;
        if (pTimestamp)
            *pTimestamp = Interface.Now();
        if (pExtraInfo)
            *pExtraInfo = 0;
        return PDU_STATUS_NOERROR;
    };
    if (hCLL == PDU_HANDLE_UNDEF) {
        const std::lock_guard hold(Interface.Mutex);
        return hMod == ModuleHandle ? answer(Interface.ModuleConnected ? PDU_MODST_READY : PDU_MODST_AVAIL)
                                    : PDU_ERR_INVALID_HANDLE;
    }
    return OnLink(hMod, hCLL, [&](Link& link) {
        if (hCoP == PDU_HANDLE_UNDEF)
            return answer(link.Status);
        const auto found = Interface.Primitives.find(hCoP);
        // ComPrimitives are removed when they end, so an unknown one has finished.
        return answer(found != Interface.Primitives.end() ? found->second.Status : PDU_COPST_FINISHED);
    });
}

T_PDU_ERROR PDUGetLastError(UNUM32 hMod, UNUM32 hCLL, T_PDU_ERR_EVT* pErrorCode, UNUM32* phCoP,
                            UNUM32* pTimestamp, UNUM32* pExtraErrorInfo)
{
    CurrentFaults.OnCall(__func__);
    if (!pErrorCode || !phCoP || !pTimestamp || !pExtraErrorInfo)
        return PDU_ERR_INVALID_PARAMETERS;
    return OnLink(hMod, hCLL, [&](Link& link) {
        *pErrorCode = link.Error.Code;
        *phCoP = link.Error.Primitive;
        *pTimestamp = link.Error.Time;
        *pExtraErrorInfo = 0;
        return PDU_STATUS_NOERROR;
    });
}
