// A target library that is compiled apart: it has its own prototypes and checks every argument that reaches
// it. It calls the registered callbacks back and checks what they leave on the stack.
#include "tests/apart/apart.h"

#define EXPORT __declspec(dllexport)

typedef unsigned UNUM32;
typedef void(__stdcall* EventHandler)(UNUM32 type, UNUM32 hMod, UNUM32 hCLL, void* linkTag, void* apiTag);
typedef UNUM32(__stdcall* ReportHandler)(const char* text, unsigned char direction, UNUM32 protocol,
                                         UNUM32 count, const void* parameters);

static EventHandler onEvent;
static ReportHandler onReport;
static unsigned round;

/// Checks arguments by their kinds, a letter for each: n, a number; p, a pointer to one; c, a callback.
static unsigned Answer(enum Function function, const char* kinds, const uintptr_t* arguments)
{
    for (unsigned i = 0; kinds[i] != '\0'; ++i) {
        const unsigned expected = ValueOf(function, i);
        const uintptr_t argument = arguments[i];
        const int isRight = kinds[i] == 'n'   ? argument == expected
                            : kinds[i] == 'p' ? argument > 0xFFFF && *(const unsigned*)argument == expected
                                              : argument > 0xFFFF;
        if (!isRight)
            return 0xBAD00u + i;
    }
    return StatusOf(function);
}

#define ANSWER(function, kinds, ...) Answer(function, kinds, (const uintptr_t[]){__VA_ARGS__})
#define P(pointer) ((uintptr_t)(pointer))

/// Sends an event and a report to the callbacks that Marvane registered. Returns whether both left the stack
/// as it was and the report was accepted.
static int CallBack(void)
{
    static const unsigned linkTag[] = {0x5A001E04, 0}, apiTag[] = {0x5A001E05, 0};
    static const char report[] = "a report of the target";
    const uintptr_t event[] = {ValueOf(EventCallback, 0), ValueOf(RegisterEventCallback, 0),
                               ValueOf(RegisterEventCallback, 1), P(linkTag), P(apiTag)};
    const uintptr_t reported[] = {P(report), 1, 256, 0, 0};
    const unsigned shift = round++ % 4 * 4;
    int left = 0;
    int leftByReport = 0;
    if (!onEvent || !onReport)
        return 0;
    CallWatched(P(onEvent), event, 5, shift, &left);
    const unsigned status = CallWatched(P(onReport), reported, 5, shift, &leftByReport);
    return left == 0 && leftByReport == 0 && status == 0;
}

EXPORT UNUM32 __stdcall PDUConstruct(char* options, void* apiTag)
{
    return ANSWER(Construct, "pp", P(options), P(apiTag));
}

EXPORT UNUM32 __stdcall PDUDestruct(void)
{
    return StatusOf(Destruct);
}

EXPORT UNUM32 __stdcall PDUIoCtl(UNUM32 hMod, UNUM32 hCLL, UNUM32 command, void* input, void** output)
{
    return ANSWER(IoCtl, "nnnpp", hMod, hCLL, command, P(input), P(output));
}

EXPORT UNUM32 __stdcall PDUGetVersion(UNUM32 hMod, void* version)
{
    return ANSWER(GetVersion, "np", hMod, P(version));
}

EXPORT UNUM32 __stdcall PDUGetStatus(UNUM32 hMod, UNUM32 hCLL, UNUM32 hCoP, UNUM32* status, UNUM32* timestamp,
                                     UNUM32* extra)
{
    return ANSWER(GetStatus, "nnnppp", hMod, hCLL, hCoP, P(status), P(timestamp), P(extra));
}

EXPORT UNUM32 __stdcall PDUGetLastError(UNUM32 hMod, UNUM32 hCLL, UNUM32* code, UNUM32* hCoP,
                                        UNUM32* timestamp, UNUM32* extra)
{
    return ANSWER(GetLastErrorOf, "nnpppp", hMod, hCLL, P(code), P(hCoP), P(timestamp), P(extra));
}

EXPORT UNUM32 __stdcall PDUGetResourceStatus(void* status)
{
    return ANSWER(GetResourceStatus, "p", P(status));
}

EXPORT UNUM32 __stdcall PDUCreateComLogicalLink(UNUM32 hMod, void* data, UNUM32 resource, void* tag,
                                                UNUM32* hCLL, void* flags)
{
    return ANSWER(CreateComLogicalLink, "npnppp", hMod, P(data), resource, P(tag), P(hCLL), P(flags));
}

EXPORT UNUM32 __stdcall PDUDestroyComLogicalLink(UNUM32 hMod, UNUM32 hCLL)
{
    return ANSWER(DestroyComLogicalLink, "nn", hMod, hCLL);
}

EXPORT UNUM32 __stdcall PDUConnect(UNUM32 hMod, UNUM32 hCLL)
{
    return ANSWER(Connect, "nn", hMod, hCLL);
}

EXPORT UNUM32 __stdcall PDUDisconnect(UNUM32 hMod, UNUM32 hCLL)
{
    return ANSWER(Disconnect, "nn", hMod, hCLL);
}

EXPORT UNUM32 __stdcall PDULockResource(UNUM32 hMod, UNUM32 hCLL, UNUM32 mask)
{
    return ANSWER(LockResourceOf, "nnn", hMod, hCLL, mask);
}

EXPORT UNUM32 __stdcall PDUUnlockResource(UNUM32 hMod, UNUM32 hCLL, UNUM32 mask)
{
    return ANSWER(UnlockResourceOf, "nnn", hMod, hCLL, mask);
}

EXPORT UNUM32 __stdcall PDUGetComParam(UNUM32 hMod, UNUM32 hCLL, UNUM32 id, void** item)
{
    return ANSWER(GetComParam, "nnnp", hMod, hCLL, id, P(item));
}

EXPORT UNUM32 __stdcall PDUSetComParam(UNUM32 hMod, UNUM32 hCLL, void* item)
{
    return ANSWER(SetComParam, "nnp", hMod, hCLL, P(item));
}

EXPORT UNUM32 __stdcall PDUStartComPrimitive(UNUM32 hMod, UNUM32 hCLL, UNUM32 type, UNUM32 size,
                                             unsigned char* data, void* control, void* tag, UNUM32* hCoP)
{
    return ANSWER(StartComPrimitive, "nnnnpppp", hMod, hCLL, type, size, P(data), P(control), P(tag),
                  P(hCoP));
}

EXPORT UNUM32 __stdcall PDUCancelComPrimitive(UNUM32 hMod, UNUM32 hCLL, UNUM32 hCoP)
{
    return ANSWER(CancelComPrimitive, "nnn", hMod, hCLL, hCoP);
}

EXPORT UNUM32 __stdcall PDUGetEventItem(UNUM32 hMod, UNUM32 hCLL, void** item)
{
    return ANSWER(GetEventItem, "nnp", hMod, hCLL, P(item));
}

EXPORT UNUM32 __stdcall PDUDestroyItem(void* item)
{
    return ANSWER(DestroyItem, "p", P(item));
}

EXPORT UNUM32 __stdcall PDURegisterEventCallback(UNUM32 hMod, UNUM32 hCLL, EventHandler handler)
{
    onEvent = handler;
    return ANSWER(RegisterEventCallback, "nnc", hMod, hCLL, P(handler));
}

EXPORT UNUM32 __stdcall PDUGetObjectId(UNUM32 type, char* name, UNUM32* id)
{
    return ANSWER(GetObjectId, "npp", type, P(name), P(id));
}

EXPORT UNUM32 __stdcall PDUGetModuleIds(void** modules)
{
    return ANSWER(GetModuleIds, "p", P(modules));
}

EXPORT UNUM32 __stdcall PDUGetResourceIds(UNUM32 hMod, void* data, void** resources)
{
    return ANSWER(GetResourceIds, "npp", hMod, P(data), P(resources));
}

EXPORT UNUM32 __stdcall PDUGetConflictingResources(UNUM32 resource, void* modules, void** conflicts)
{
    return ANSWER(GetConflictingResources, "npp", resource, P(modules), P(conflicts));
}

EXPORT UNUM32 __stdcall PDUGetUniqueRespIdTable(UNUM32 hMod, UNUM32 hCLL, void** table)
{
    return ANSWER(GetUniqueRespIdTable, "nnp", hMod, hCLL, P(table));
}

EXPORT UNUM32 __stdcall PDUSetUniqueRespIdTable(UNUM32 hMod, UNUM32 hCLL, void* table)
{
    return ANSWER(SetUniqueRespIdTable, "nnp", hMod, hCLL, P(table));
}

EXPORT UNUM32 __stdcall PDUModuleConnect(UNUM32 hMod)
{
    return ANSWER(ModuleConnect, "n", hMod);
}

EXPORT UNUM32 __stdcall PDUModuleDisconnect(UNUM32 hMod)
{
    return ANSWER(ModuleDisconnect, "n", hMod);
}

EXPORT UNUM32 __stdcall PDUGetTimestamp(UNUM32 hMod, UNUM32* timestamp)
{
    if (!CallBack())
        return 0xBADCBu;
    return ANSWER(GetTimestamp, "np", hMod, P(timestamp));
}

EXPORT UNUM32 __stdcall PDU_MS_SetLogCallback(ReportHandler handler)
{
    onReport = handler;
    return 0;
}
