// Exported functions of the whole interface: life cycle, modules, resources, items, events.
#include <cstdio>
#include <cstring>

#include "examples/sim_vci/comms_report.h"
#include "examples/sim_vci/faults.h"
#include "examples/sim_vci/objects.h"
#include "examples/sim_vci/vci.h"

using namespace sim;

extern "C" PDU_API T_PDU_ERROR PDU_CALL PDU_MS_SetLogCallback(PDU_MS_LOG_CALLBACK callback);

namespace {

constexpr UNUM32 Version(UNUM32 major, UNUM32 minor, UNUM32 revision)
{
    return major << 24 | minor << 16 | revision << 8;
}

constexpr UNUM32 Date(UNUM32 day, UNUM32 month, UNUM32 year, UNUM32 week)
{
    return (year - 1970) << 24 | month << 16 | day << 8 | week;
}

template <std::size_t Size> void SetText(CHAR8 (&place)[Size], const char* text)
{
    std::strncpy(place, text, Size - 1);
}

std::deque<PDU_EVENT_ITEM*>* QueueOf(UNUM32 hMod, UNUM32 hCLL)
{
    if (hCLL == PDU_HANDLE_UNDEF)
        return hMod == ModuleHandle || hMod == PDU_HANDLE_UNDEF ? &Interface.ModuleQueue : nullptr;
    Link* const link = Interface.FindLink(hMod, hCLL);
    return link ? &link->Queue : nullptr;
}

UNUM32 StatusOf(UNUM32 resource)
{
    constexpr UNUM32 inUse = 1, available = 2, queueLocked = 4, paramsLocked = 8;
    UNUM32 status = available;
    for (const auto& [handle, link] : Interface.Links)
        if (link.Resource == resource)
            status |= inUse | (link.LockMask & 1 ? paramsLocked : 0) | (link.LockMask & 2 ? queueLocked : 0);
    return status;
}

} // namespace

T_PDU_ERROR PDUConstruct(CHAR8* OptionStr, void* pAPITag)
{
    if (Interface.Constructed)
        return PDU_ERR_SHARING_VIOLATION;
    if (const std::string wrong = CurrentFaults.Take(OptionStr); !wrong.empty()) {
        std::fprintf(stderr, "SimVci: %s\n%s", wrong.c_str(), FaultHelp);
        return PDU_ERR_INVALID_PARAMETERS;
    }
    CurrentFaults.OnCall(__func__);
    Interface.Start(pAPITag);
    return PDU_STATUS_NOERROR;
}

T_PDU_ERROR PDUDestruct()
{
    CurrentFaults.OnCall(__func__);
    if (!Interface.Constructed)
        return PDU_ERR_PDUAPI_NOT_CONSTRUCTED;
    Interface.Stop();
    if (const std::size_t open = OpenItems.Open())
        std::fprintf(stderr, "SimVci: %zu items were not destroyed\n", open);
    return PDU_STATUS_NOERROR;
}

T_PDU_ERROR PDUGetModuleIds(PDU_MODULE_ITEM** pModuleItem)
{
    CurrentFaults.OnCall(__func__);
    if (!pModuleItem)
        return PDU_ERR_INVALID_PARAMETERS;
    const std::lock_guard hold(Interface.Mutex);
    Item item;
    auto* const list = item.New<PDU_MODULE_ITEM>();
    auto* const module = item.New<PDU_MODULE_DATA>();
    *module = {1, ModuleHandle, item.Text("Simulated VCI"),
               item.Text("ConnectionType='USB' SerialNumber='000042'"),
               Interface.ModuleConnected ? PDU_MODST_READY : PDU_MODST_AVAIL};
    *list = {PDU_IT_MODULE_ID, 1, module};
    *pModuleItem = OpenItems.Publish(std::move(item), list);
    return PDU_STATUS_NOERROR;
}

T_PDU_ERROR PDUModuleConnect(UNUM32 hMod)
{
    CurrentFaults.OnCall(__func__);
    Outbox outbox;
    PDU_MS_LOG_CALLBACK log = nullptr;
    {
        const std::lock_guard hold(Interface.Mutex);
        if (hMod != ModuleHandle && hMod != PDU_HANDLE_UNDEF)
            return PDU_ERR_INVALID_HANDLE;
        Interface.ModuleConnected = true;
        log = Interface.LogCallback;
        Interface.PutInfo(outbox, PDU_INFO_MODULE_LIST_CHG);
    }
    if (log)
        ReportStart(log);
    Interface.Deliver(outbox);
    return PDU_STATUS_NOERROR;
}

T_PDU_ERROR PDUModuleDisconnect(UNUM32 hMod)
{
    CurrentFaults.OnCall(__func__);
    const std::lock_guard hold(Interface.Mutex);
    if (hMod != ModuleHandle && hMod != PDU_HANDLE_UNDEF)
        return PDU_ERR_INVALID_HANDLE;
    if (!Interface.ModuleConnected)
        return PDU_ERR_MODULE_NOT_CONNECTED;
    Interface.ModuleConnected = false;
    return PDU_STATUS_NOERROR;
}

T_PDU_ERROR PDUGetVersion(UNUM32 hMod, PDU_VERSION_DATA* pVersionData)
{
    CurrentFaults.OnCall(__func__);
    if (!pVersionData)
        return PDU_ERR_INVALID_PARAMETERS;
    if (hMod != ModuleHandle)
        return PDU_ERR_INVALID_HANDLE;
    *pVersionData = {};
    pVersionData->MVCI_Part1StandardVersion = Version(2, 2, 0);
    pVersionData->MVCI_Part2StandardVersion = Version(2, 2, 0);
    pVersionData->HwSerialNumber = 42;
    SetText(pVersionData->HwName, "SimVci hardware");
    pVersionData->HwVersion = Version(1, 4, 2);
    pVersionData->HwDate = Date(17, 3, 2021, 11);
    pVersionData->HwInterface = 1;
    SetText(pVersionData->FwName, "SimVci firmware");
    pVersionData->FwVersion = Version(3, 0, 7);
    pVersionData->FwDate = Date(5, 9, 2023, 36);
    SetText(pVersionData->VendorName, "Marvane project");
    SetText(pVersionData->PDUApiSwName, "SimVci D-PDU API");
    pVersionData->PDUApiSwVersion = Version(1, 0, 0);
    pVersionData->PDUApiSwDate = Date(21, 11, 2026, 47);
    return PDU_STATUS_NOERROR;
}

T_PDU_ERROR PDUGetTimestamp(UNUM32 hMod, UNUM32* pTimestamp)
{
    CurrentFaults.OnCall(__func__);
    if (!pTimestamp)
        return PDU_ERR_INVALID_PARAMETERS;
    if (hMod != ModuleHandle)
        return PDU_ERR_INVALID_HANDLE;
    *pTimestamp = Interface.Now();
    return PDU_STATUS_NOERROR;
}

T_PDU_ERROR PDUGetObjectId(T_PDU_OBJT pduObjectType, CHAR8* pShortname, UNUM32* pPduObjectId)
{
    CurrentFaults.OnCall(__func__);
    if (!pShortname || !pPduObjectId)
        return PDU_ERR_INVALID_PARAMETERS;
    const Object* const object = FindObject(pduObjectType, pShortname);
    *pPduObjectId = object ? object->Id : PDU_ID_UNDEF;
    return object ? PDU_STATUS_NOERROR : PDU_ERR_ID_NOT_SUPPORTED;
}

T_PDU_ERROR PDUGetResourceIds(UNUM32 hMod, PDU_RSC_DATA* pResourceIdData, PDU_RSC_ID_ITEM** pResourceIdList)
{
    CurrentFaults.OnCall(__func__);
    if (!pResourceIdList)
        return PDU_ERR_INVALID_PARAMETERS;
    if (hMod != ModuleHandle && hMod != PDU_HANDLE_UNDEF)
        return PDU_ERR_INVALID_HANDLE;
    std::vector<UNUM32> found;
    if (!pResourceIdData || pResourceIdData->ProtocolId == id::ProtocolUdsOnCan)
        found.push_back(id::ResourceCan);
    if (!pResourceIdData || pResourceIdData->ProtocolId == id::ProtocolUdsOnDoIP)
        found.push_back(id::ResourceDoIP);
    Item item;
    auto* const list = item.New<PDU_RSC_ID_ITEM>();
    auto* const module = item.New<PDU_RSC_ID_ITEM_DATA>();
    *module = {ModuleHandle, static_cast<UNUM32>(found.size()), item.New<UNUM32>(found.size())};
    std::copy(found.begin(), found.end(), module->pResourceIdArray);
    *list = {PDU_IT_RSC_ID, 1, module};
    *pResourceIdList = OpenItems.Publish(std::move(item), list);
    return PDU_STATUS_NOERROR;
}

T_PDU_ERROR PDUGetResourceStatus(PDU_RSC_STATUS_ITEM* pResourceStatus)
{
    CurrentFaults.OnCall(__func__);
    if (!pResourceStatus || (!pResourceStatus->pResourceStatusData && pResourceStatus->NumEntries != 0))
        return PDU_ERR_INVALID_PARAMETERS;
    const std::lock_guard hold(Interface.Mutex);
    for (UNUM32 i = 0; i < pResourceStatus->NumEntries; ++i) {
        PDU_RSC_STATUS_DATA& entry = pResourceStatus->pResourceStatusData[i];
        if (entry.hMod != ModuleHandle)
            return PDU_ERR_INVALID_HANDLE;
        entry.ResourceStatus = StatusOf(entry.ResourceId);
    }
    return PDU_STATUS_NOERROR;
}

T_PDU_ERROR PDUGetConflictingResources(UNUM32 resourceId, PDU_MODULE_ITEM* pInputModuleList,
                                       PDU_RSC_CONFLICT_ITEM** pOutputConflictList)
{
    CurrentFaults.OnCall(__func__);
    if (!pInputModuleList || !pOutputConflictList)
        return PDU_ERR_INVALID_PARAMETERS;
    if (resourceId != id::ResourceCan && resourceId != id::ResourceDoIP)
        return PDU_ERR_ID_NOT_SUPPORTED;
    Item item;
    auto* const list = item.New<PDU_RSC_CONFLICT_ITEM>();
    auto* const conflict = item.New<PDU_RSC_CONFLICT_DATA>();
    // Each resource conflicts only with itself: their pins do not overlap.
    *conflict = {ModuleHandle, resourceId};
    *list = {PDU_IT_RSC_CONFLICT, 1, conflict};
    *pOutputConflictList = OpenItems.Publish(std::move(item), list);
    return PDU_STATUS_NOERROR;
}

T_PDU_ERROR PDURegisterEventCallback(UNUM32 hMod, UNUM32 hCLL, CALLBACKFNC EventCallbackFunction)
{
    CurrentFaults.OnCall(__func__);
    const std::lock_guard hold(Interface.Mutex);
    if (!QueueOf(hMod, hCLL))
        return PDU_ERR_INVALID_HANDLE;
    Interface.Callbacks[{hMod, hCLL}] = EventCallbackFunction;
    return PDU_STATUS_NOERROR;
}

T_PDU_ERROR PDUGetEventItem(UNUM32 hMod, UNUM32 hCLL, PDU_EVENT_ITEM** ppEventItem)
{
    CurrentFaults.OnCall(__func__);
    if (!ppEventItem)
        return PDU_ERR_INVALID_PARAMETERS;
    const std::lock_guard hold(Interface.Mutex);
    auto* const queue = QueueOf(hMod, hCLL);
    if (!queue)
        return PDU_ERR_INVALID_HANDLE;
    if (queue->empty())
        return PDU_ERR_EVENT_QUEUE_EMPTY;
    *ppEventItem = queue->front();
    queue->pop_front();
    return PDU_STATUS_NOERROR;
}

T_PDU_ERROR PDUDestroyItem(void* pItem)
{
    CurrentFaults.OnCall(__func__);
    return OpenItems.Destroy(pItem) ? PDU_STATUS_NOERROR : PDU_ERR_INVALID_PARAMETERS;
}

T_PDU_ERROR PDU_MS_SetLogCallback(PDU_MS_LOG_CALLBACK callback)
{
    CurrentFaults.OnCall(__func__);
    const std::lock_guard hold(Interface.Mutex);
    Interface.LogCallback = callback;
    return PDU_STATUS_NOERROR;
}
