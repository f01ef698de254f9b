// What the target library and the caller of this folder share: the values that they pass through Marvane, and
// a call that watches the stack pointer. Neither includes a header of Marvane, so that a fault in its calling
// convention can't be in them too.
#pragma once

#include <stdint.h>

// A prototype has __stdcall where Windows has it; 64-bit compilers ignore it.

/// Numbers of the functions, part of the values that they pass.
enum Function
{
    ModuleConnect = 1,
    ModuleDisconnect,
    GetTimestamp,
    IoCtl,
    GetVersion,
    GetStatus,
    GetLastErrorOf,
    GetResourceStatus,
    CreateComLogicalLink,
    DestroyComLogicalLink,
    Connect,
    Disconnect,
    LockResourceOf,
    UnlockResourceOf,
    GetComParam,
    SetComParam,
    StartComPrimitive,
    CancelComPrimitive,
    GetEventItem,
    DestroyItem,
    RegisterEventCallback,
    GetObjectId,
    GetModuleIds,
    GetResourceIds,
    GetConflictingResources,
    GetUniqueRespIdTable,
    SetUniqueRespIdTable,
    Construct,
    Destruct,
    EventCallback,
};

/// Most arguments of a function.
enum
{
    MostArguments = 8
};

/// The value of a function's argument, or what a pointer argument points to.
static inline unsigned ValueOf(enum Function function, unsigned index)
{
    return 0x5A000000u + (unsigned)function * 0x100u + index + 1;
}

/// The status of a function that got the right arguments. Some must succeed.
static inline unsigned StatusOf(enum Function function)
{
    const int succeeds = function == Construct || function == Destruct || function == RegisterEventCallback;
    return succeeds ? 0 : 0x7700u + (unsigned)function;
}

/// Calls a stdcall function with `count` of MostArguments arguments, and with `shift` bytes (4, 8 or 12; 0
/// for none) between the stack pointer and a multiple of 16, since many compilers align stacks to 4 only.
/// Returns its status; `left` receives how many bytes of arguments it left on the stack, which must be 0.
static inline unsigned CallWatched(uintptr_t function, const uintptr_t* arguments, unsigned count,
                                   unsigned shift, int* left)
{
#if defined(_WIN32) && !defined(_WIN64)
    unsigned status;
    unsigned difference = shift;
    __asm__ volatile("movl %%esp, %%ebx\n\t"
                     "andl $-16, %%esp\n\t"
                     "subl %%edi, %%esp\n\t"
                     "movl %%esp, %%edi\n\t"
                     "jmp 2f\n"
                     "1:\tdecl %%ecx\n\t"
                     "pushl (%%esi,%%ecx,4)\n"
                     "2:\ttestl %%ecx, %%ecx\n\t"
                     "jnz 1b\n\t"
                     "call *%%eax\n\t"
                     "subl %%esp, %%edi\n\t"
                     "movl %%ebx, %%esp"
                     : "=a"(status), "+D"(difference), "+c"(count)
                     : "a"(function), "S"(arguments)
                     : "ebx", "edx", "memory", "cc");
    *left = (int)difference;
    return status;
#else
    typedef unsigned (*EightArguments)(uintptr_t, uintptr_t, uintptr_t, uintptr_t, uintptr_t, uintptr_t,
                                       uintptr_t, uintptr_t);
    uintptr_t a[MostArguments] = {0};
    for (unsigned i = 0; i < count; ++i)
        a[i] = arguments[i];
    *left = 0;
    (void)shift;
    return ((EightArguments)function)(a[0], a[1], a[2], a[3], a[4], a[5], a[6], a[7]);
#endif
}
