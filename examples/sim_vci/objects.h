// The objects that the simulated interface knows, by type, short name and id.
#pragma once

#include <string_view>

#include "pdu/pdu_api.h"

namespace sim {

namespace id {

inline constexpr UNUM32 ProtocolUdsOnCan = 100;
inline constexpr UNUM32 ProtocolUdsOnDoIP = 101;
inline constexpr UNUM32 BusCan = 200;
inline constexpr UNUM32 BusEthernet = 201;
inline constexpr UNUM32 PinHi = 300;
inline constexpr UNUM32 PinLow = 301;
inline constexpr UNUM32 PinRx = 302;
inline constexpr UNUM32 PinTx = 303;
inline constexpr UNUM32 PinPlus = 304;
inline constexpr UNUM32 PinMinus = 305;
inline constexpr UNUM32 ResourceCan = 400;
inline constexpr UNUM32 ResourceDoIP = 401;

inline constexpr UNUM32 ReadBattery = 500;
inline constexpr UNUM32 SetProgVoltage = 501;
inline constexpr UNUM32 ReadProgVoltage = 502;
inline constexpr UNUM32 StartFilter = 503;
inline constexpr UNUM32 StopFilter = 504;
inline constexpr UNUM32 ClearFilter = 505;
inline constexpr UNUM32 SetQueueProperty = 506;
inline constexpr UNUM32 VehicleId = 507;
inline constexpr UNUM32 EthernetSwitch = 508;
inline constexpr UNUM32 EntityAddress = 509;
inline constexpr UNUM32 EntityStatus = 510;
inline constexpr UNUM32 ReadIgnition = 511;
inline constexpr UNUM32 CableId = 512;
inline constexpr UNUM32 Reset = 513;
/// Only in this simulation: the number of items that the application has not destroyed.
inline constexpr UNUM32 OpenItems = 599;

inline constexpr UNUM32 Baudrate = 600;
inline constexpr UNUM32 CanRespId = 601;
inline constexpr UNUM32 TesterPresentTime = 602;
inline constexpr UNUM32 P2Max = 603;
inline constexpr UNUM32 RetryCount = 604;
inline constexpr UNUM32 TimeOffset = 605;
inline constexpr UNUM32 TemperatureOffset = 606;
inline constexpr UNUM32 ClockDrift = 607;
inline constexpr UNUM32 TesterPresentMessage = 608;
inline constexpr UNUM32 SessionTiming = 609;
inline constexpr UNUM32 AccessTiming = 610;
inline constexpr UNUM32 PhysicalRequestIds = 611;

} // namespace id

struct Object
{
    T_PDU_OBJT Type;
    const char* ShortName;
    UNUM32 Id;
};

/// The object of that type and name, or null.
const Object* FindObject(T_PDU_OBJT type, std::string_view shortName);

} // namespace sim
