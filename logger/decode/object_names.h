// Short names of the API's objects, as far as the application has asked for them.
#pragma once

#include <cstdint>
#include <string_view>

#include "pdu/pdu_api.h"

namespace marvane {

/// The maps from object id to short name, one for each object type and one for all others.
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

/// Short name of an object, or the text that the call site has for an unknown one. Safe on any thread, and
/// the text stays valid until the library is unloaded.
std::string_view ObjectName(ObjectNameMap map, UNUM32 id, std::string_view notFound);

/// Remembers a copy of an object's short name in the map of its type. The first name of an id stays.
void RecordObjectName(T_PDU_OBJT objectType, UNUM32 id, std::string_view shortName);

/// Empties all maps.
void ClearObjectNames();

} // namespace marvane
