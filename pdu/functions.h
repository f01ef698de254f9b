// The functions of the API, once: their names and their table, in the order of their slots.
#pragma once

#include <array>
#include <cstddef>
#include <cstring>
#include <string_view>

#include "pdu/pdu_api.h"

/// Expands EXPORTED(name) for each of the 29 functions of the API and EXTENSION(name) for the one that a
/// target library may have beside them, in the order of their slots. A macro, since members of a struct can't
/// be made from a list by anything else; nothing but this header needs it.
#define PDU_FUNCTION_SLOTS(EXPORTED, EXTENSION)                                                              \
    EXPORTED(PDUModuleConnect)                                                                               \
    EXPORTED(PDUModuleDisconnect)                                                                            \
    EXPORTED(PDUGetTimestamp)                                                                                \
    EXPORTED(PDUIoCtl)                                                                                       \
    EXPORTED(PDUGetVersion)                                                                                  \
    EXPORTED(PDUGetStatus)                                                                                   \
    EXPORTED(PDUGetLastError)                                                                                \
    EXPORTED(PDUGetResourceStatus)                                                                           \
    EXPORTED(PDUCreateComLogicalLink)                                                                        \
    EXPORTED(PDUDestroyComLogicalLink)                                                                       \
    EXPORTED(PDUConnect)                                                                                     \
    EXPORTED(PDUDisconnect)                                                                                  \
    EXPORTED(PDULockResource)                                                                                \
    EXPORTED(PDUUnlockResource)                                                                              \
    EXPORTED(PDUGetComParam)                                                                                 \
    EXPORTED(PDUSetComParam)                                                                                 \
    EXPORTED(PDUStartComPrimitive)                                                                           \
    EXPORTED(PDUCancelComPrimitive)                                                                          \
    EXPORTED(PDUGetEventItem)                                                                                \
    EXPORTED(PDUDestroyItem)                                                                                 \
    EXPORTED(PDURegisterEventCallback)                                                                       \
    EXPORTED(PDUGetObjectId)                                                                                 \
    EXPORTED(PDUGetModuleIds)                                                                                \
    EXPORTED(PDUGetResourceIds)                                                                              \
    EXPORTED(PDUGetConflictingResources)                                                                     \
    EXPORTED(PDUGetUniqueRespIdTable)                                                                        \
    EXPORTED(PDUSetUniqueRespIdTable)                                                                        \
    EXTENSION(PDU_MS_SetLogCallback)                                                                         \
    EXPORTED(PDUConstruct)                                                                                   \
    EXPORTED(PDUDestruct)

namespace marvane {

#define PDU_NAME(name) std::string_view(#name),
#define PDU_NOTHING(name)
/// The names of the 29 functions.
inline constexpr std::array FunctionNames = {PDU_FUNCTION_SLOTS(PDU_NAME, PDU_NOTHING)};
static_assert(FunctionNames.size() == 29);
#undef PDU_NOTHING
#undef PDU_NAME

// NOLINTBEGIN(bugprone-macro-parentheses): a declared name can't be in parentheses.
#define PDU_MEMBER(name) decltype(&::name) name = nullptr;
#define PDU_EXTENSION_MEMBER(name) name##_t name = nullptr;
// NOLINTEND(bugprone-macro-parentheses)
/// The functions of a library that implements the API, null where it lacks one.
struct FunctionTable
{
    PDU_FUNCTION_SLOTS(PDU_MEMBER, PDU_EXTENSION_MEMBER)
};
#undef PDU_EXTENSION_MEMBER
#undef PDU_MEMBER

struct FunctionSlot
{
    const char* Name;
    std::size_t Offset; ///< of its pointer in a FunctionTable
};

#define PDU_SLOT(name) FunctionSlot{#name, offsetof(FunctionTable, name)},
/// All slots, for filling a table by name.
inline constexpr std::array FunctionSlots = {PDU_FUNCTION_SLOTS(PDU_SLOT, PDU_SLOT)};
static_assert(sizeof(FunctionTable) == FunctionSlots.size() * sizeof(void*));
#undef PDU_SLOT

/// Fills a table: `find` takes a name and returns the function's address, null if there is none.
template <class Find> void FillFunctionTable(FunctionTable& table, Find find)
{
    for (const FunctionSlot& slot : FunctionSlots) {
        // Function pointers are stored by their bytes: they all have one size, but each its own type.
        void* const address = find(slot.Name);
        std::memcpy(reinterpret_cast<char*>(&table) + slot.Offset, &address, sizeof address);
    }
}

} // namespace marvane

#undef PDU_FUNCTION_SLOTS
