// The names of the functions of the D-PDU API, in the order of their slots.
#pragma once

#include <array>

namespace marvane {

inline constexpr std::array<const char*, 29> PduFunctionNames = {
    "PDUModuleConnect",
    "PDUModuleDisconnect",
    "PDUGetTimestamp",
    "PDUIoCtl",
    "PDUGetVersion",
    "PDUGetStatus",
    "PDUGetLastError",
    "PDUGetResourceStatus",
    "PDUCreateComLogicalLink",
    "PDUDestroyComLogicalLink",
    "PDUConnect",
    "PDUDisconnect",
    "PDULockResource",
    "PDUUnlockResource",
    "PDUGetComParam",
    "PDUSetComParam",
    "PDUStartComPrimitive",
    "PDUCancelComPrimitive",
    "PDUGetEventItem",
    "PDUDestroyItem",
    "PDURegisterEventCallback",
    "PDUGetObjectId",
    "PDUGetModuleIds",
    "PDUGetResourceIds",
    "PDUGetConflictingResources",
    "PDUGetUniqueRespIdTable",
    "PDUSetUniqueRespIdTable",
    "PDUConstruct",
    "PDUDestruct",
};

} // namespace marvane
