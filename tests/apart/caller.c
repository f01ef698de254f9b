// An application that is compiled apart and linked with Marvane's import library. It calls each of the 29
// functions and checks its status and the stack pointer. Prints every fault; without one the last line says
// so.
#include <stdio.h>

#include "tests/apart/apart.h"

#define IMPORT __declspec(dllimport)

typedef unsigned UNUM32;
typedef void(__stdcall* EventHandler)(UNUM32 type, UNUM32 hMod, UNUM32 hCLL, void* linkTag, void* apiTag);

IMPORT UNUM32 __stdcall PDUConstruct(char*, void*);
IMPORT UNUM32 __stdcall PDUDestruct(void);
IMPORT UNUM32 __stdcall PDUIoCtl(UNUM32, UNUM32, UNUM32, void*, void**);
IMPORT UNUM32 __stdcall PDUGetVersion(UNUM32, void*);
IMPORT UNUM32 __stdcall PDUGetStatus(UNUM32, UNUM32, UNUM32, UNUM32*, UNUM32*, UNUM32*);
IMPORT UNUM32 __stdcall PDUGetLastError(UNUM32, UNUM32, UNUM32*, UNUM32*, UNUM32*, UNUM32*);
IMPORT UNUM32 __stdcall PDUGetResourceStatus(void*);
IMPORT UNUM32 __stdcall PDUCreateComLogicalLink(UNUM32, void*, UNUM32, void*, UNUM32*, void*);
IMPORT UNUM32 __stdcall PDUDestroyComLogicalLink(UNUM32, UNUM32);
IMPORT UNUM32 __stdcall PDUConnect(UNUM32, UNUM32);
IMPORT UNUM32 __stdcall PDUDisconnect(UNUM32, UNUM32);
IMPORT UNUM32 __stdcall PDULockResource(UNUM32, UNUM32, UNUM32);
IMPORT UNUM32 __stdcall PDUUnlockResource(UNUM32, UNUM32, UNUM32);
IMPORT UNUM32 __stdcall PDUGetComParam(UNUM32, UNUM32, UNUM32, void**);
IMPORT UNUM32 __stdcall PDUSetComParam(UNUM32, UNUM32, void*);
IMPORT UNUM32 __stdcall PDUStartComPrimitive(UNUM32, UNUM32, UNUM32, UNUM32, unsigned char*, void*, void*,
                                             UNUM32*);
IMPORT UNUM32 __stdcall PDUCancelComPrimitive(UNUM32, UNUM32, UNUM32);
IMPORT UNUM32 __stdcall PDUGetEventItem(UNUM32, UNUM32, void**);
IMPORT UNUM32 __stdcall PDUDestroyItem(void*);
IMPORT UNUM32 __stdcall PDURegisterEventCallback(UNUM32, UNUM32, EventHandler);
IMPORT UNUM32 __stdcall PDUGetObjectId(UNUM32, char*, UNUM32*);
IMPORT UNUM32 __stdcall PDUGetModuleIds(void**);
IMPORT UNUM32 __stdcall PDUGetResourceIds(UNUM32, void*, void**);
IMPORT UNUM32 __stdcall PDUGetConflictingResources(UNUM32, void*, void**);
IMPORT UNUM32 __stdcall PDUGetUniqueRespIdTable(UNUM32, UNUM32, void**);
IMPORT UNUM32 __stdcall PDUSetUniqueRespIdTable(UNUM32, UNUM32, void*);
IMPORT UNUM32 __stdcall PDUModuleConnect(UNUM32);
IMPORT UNUM32 __stdcall PDUModuleDisconnect(UNUM32);
IMPORT UNUM32 __stdcall PDUGetTimestamp(UNUM32, UNUM32*);

/// A function and the kinds of its arguments: n, a number; p, a pointer to one; c, the event callback.
struct Call
{
    const char* name;
    uintptr_t address;
    enum Function function;
    const char* kinds;
};

static unsigned events;
static unsigned faults;

static void __stdcall OnEvent(UNUM32 type, UNUM32 hMod, UNUM32 hCLL, void* linkTag, void* apiTag)
{
    if (type == ValueOf(EventCallback, 0) && hMod == ValueOf(RegisterEventCallback, 0) &&
        hCLL == ValueOf(RegisterEventCallback, 1) && *(unsigned*)linkTag == ValueOf(EventCallback, 3) &&
        *(unsigned*)apiTag == ValueOf(EventCallback, 4))
        ++events;
}

static void Make(const struct Call* call, unsigned shift)
{
    static unsigned places[MostArguments][64];
    uintptr_t arguments[MostArguments];
    unsigned count = 0;
    int left = 0;
    for (; call->kinds[count] != '\0'; ++count) {
        const unsigned value = ValueOf(call->function, count);
        places[count][0] = value;
        arguments[count] = call->kinds[count] == 'n'   ? value
                           : call->kinds[count] == 'p' ? (uintptr_t)places[count]
                                                       : (uintptr_t)OnEvent;
    }
    const unsigned status = CallWatched(call->address, arguments, count, shift, &left);
    if (status == StatusOf(call->function) && left == 0)
        return;
    ++faults;
    printf("%s, stack shifted by %u: status 0x%X, %d bytes left on the stack\n", call->name, shift, status,
           left);
}

#define ROW(name, function, kinds)                                                                           \
    {                                                                                                        \
        "PDU" #name, (uintptr_t)PDU##name, function, kinds                                                   \
    }

int main(void)
{
    static const struct Call construct = ROW(Construct, Construct, "pp");
    static const struct Call destruct = ROW(Destruct, Destruct, "");
    static const struct Call calls[] = {
        ROW(ModuleConnect, ModuleConnect, "n"),
        ROW(ModuleDisconnect, ModuleDisconnect, "n"),
        ROW(RegisterEventCallback, RegisterEventCallback, "nnc"),
        ROW(GetTimestamp, GetTimestamp, "np"),
        ROW(IoCtl, IoCtl, "nnnpp"),
        ROW(GetVersion, GetVersion, "np"),
        ROW(GetStatus, GetStatus, "nnnppp"),
        ROW(GetLastError, GetLastErrorOf, "nnpppp"),
        ROW(GetResourceStatus, GetResourceStatus, "p"),
        ROW(CreateComLogicalLink, CreateComLogicalLink, "npnppp"),
        ROW(DestroyComLogicalLink, DestroyComLogicalLink, "nn"),
        ROW(Connect, Connect, "nn"),
        ROW(Disconnect, Disconnect, "nn"),
        ROW(LockResource, LockResourceOf, "nnn"),
        ROW(UnlockResource, UnlockResourceOf, "nnn"),
        ROW(GetComParam, GetComParam, "nnnp"),
        ROW(SetComParam, SetComParam, "nnp"),
        ROW(StartComPrimitive, StartComPrimitive, "nnnnpppp"),
        ROW(CancelComPrimitive, CancelComPrimitive, "nnn"),
        ROW(GetEventItem, GetEventItem, "nnp"),
        ROW(DestroyItem, DestroyItem, "p"),
        ROW(GetObjectId, GetObjectId, "npp"),
        ROW(GetModuleIds, GetModuleIds, "p"),
        ROW(GetResourceIds, GetResourceIds, "npp"),
        ROW(GetConflictingResources, GetConflictingResources, "npp"),
        ROW(GetUniqueRespIdTable, GetUniqueRespIdTable, "nnp"),
        ROW(SetUniqueRespIdTable, SetUniqueRespIdTable, "nnp"),
    };
    const unsigned count = sizeof calls / sizeof calls[0];
    Make(&construct, 4);
    for (unsigned shift = 0; shift < 16; shift += 4)
        for (unsigned i = 0; i < count; ++i)
            Make(&calls[i], shift);
    Make(&destruct, 12);
    printf("%u functions called, %u events, %u faults\n", count + 2, events, faults);
    return faults == 0 ? 0 : 1;
}
