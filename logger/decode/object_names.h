// Short names of objects, learned from PDUGetObjectId.
//
// Logs show a ComParam or a resource by the name under which the application asked for it; no other names are
// known.
#pragma once

#include <cstdint>
#include <string_view>

#include "pdu/pdu_api.h"

namespace marvane {

/// The maps from object id to short name: one for each object type, and one for all others.
enum class ObjectNameMap : std::uint8_t
{
    ProtocolNames,
    BusTypeNames,
    IoCtlNames,
    ComParamNames,
    PinTypeNames,
    ResourceNames,
    OtherObjectNames
};

/// Short name of an object, or `notFound`. Safe on any thread; the name stays valid until the library is
/// unloaded.
std::string_view ObjectName(ObjectNameMap map, UNUM32 id, std::string_view notFound);

/// Stores a copy of an object's short name in the map of its type. The first name of an id stays. Safe on any
/// thread.
void RecordObjectName(T_PDU_OBJT objectType, UNUM32 id, std::string_view shortName);

/// Empties all maps, at the end of a session.
void ClearObjectNames();

} // namespace marvane
