#include "examples/sim_vci/objects.h"

namespace sim {

namespace {

constexpr Object Objects[] = {
    {PDU_OBJT_PROTOCOL, "ISO_15765_3_on_ISO_15765_2", id::ProtocolUdsOnCan},
    {PDU_OBJT_PROTOCOL, "ISO_14229_5_on_ISO_13400_2", id::ProtocolUdsOnDoIP},
    {PDU_OBJT_BUSTYPE, "ISO_11898_2_DWCAN", id::BusCan},
    {PDU_OBJT_BUSTYPE, "IEEE_802_3", id::BusEthernet},
    {PDU_OBJT_PINTYPE, "HI", id::PinHi},
    {PDU_OBJT_PINTYPE, "LOW", id::PinLow},
    {PDU_OBJT_PINTYPE, "RX", id::PinRx},
    {PDU_OBJT_PINTYPE, "TX", id::PinTx},
    {PDU_OBJT_PINTYPE, "PLUS", id::PinPlus},
    {PDU_OBJT_PINTYPE, "MINUS", id::PinMinus},
    {PDU_OBJT_RESOURCE, "ISO15765_CAN_6_14", id::ResourceCan},
    {PDU_OBJT_RESOURCE, "DOIP_3_8_11_12_13", id::ResourceDoIP},
    {PDU_OBJT_IO_CTRL, "PDU_IOCTL_READ_VBATT", id::ReadBattery},
    {PDU_OBJT_IO_CTRL, "PDU_IOCTL_SET_PROG_VOLTAGE", id::SetProgVoltage},
    {PDU_OBJT_IO_CTRL, "PDU_IOCTL_READ_PROG_VOLTAGE", id::ReadProgVoltage},
    {PDU_OBJT_IO_CTRL, "PDU_IOCTL_START_MSG_FILTER", id::StartFilter},
    {PDU_OBJT_IO_CTRL, "PDU_IOCTL_STOP_MSG_FILTER", id::StopFilter},
    {PDU_OBJT_IO_CTRL, "PDU_IOCTL_CLEAR_MSG_FILTER", id::ClearFilter},
    {PDU_OBJT_IO_CTRL, "PDU_IOCTL_SET_EVENT_QUEUE_PROPERTIES", id::SetQueueProperty},
    {PDU_OBJT_IO_CTRL, "PDU_IOCTL_VEHICLE_ID_REQUEST", id::VehicleId},
    {PDU_OBJT_IO_CTRL, "PDU_IOCTL_SET_ETH_SWITCH_STATE", id::EthernetSwitch},
    {PDU_OBJT_IO_CTRL, "PDU_IOCTL_GET_ENTITY_ADDRESS", id::EntityAddress},
    {PDU_OBJT_IO_CTRL, "PDU_IOCTL_GET_ENTITY_STATUS", id::EntityStatus},
    {PDU_OBJT_IO_CTRL, "PDU_IOCTL_READ_IGNITION_SENSE_STATE", id::ReadIgnition},
    {PDU_OBJT_IO_CTRL, "PDU_IOCTL_GET_CABLE_ID", id::CableId},
    {PDU_OBJT_IO_CTRL, "PDU_IOCTL_RESET", id::Reset},
    {PDU_OBJT_IO_CTRL, "SIM_IOCTL_OPEN_ITEMS", id::OpenItems},
    {PDU_OBJT_COMPARAM, "CP_Baudrate", id::Baudrate},
    {PDU_OBJT_COMPARAM, "CP_CanRespUSDTId", id::CanRespId},
    {PDU_OBJT_COMPARAM, "CP_TesterPresentTime", id::TesterPresentTime},
    {PDU_OBJT_COMPARAM, "CP_P2Max", id::P2Max},
    {PDU_OBJT_COMPARAM, "CP_RepeatReqCountApp", id::RetryCount},
    {PDU_OBJT_COMPARAM, "CP_TimeOffset", id::TimeOffset},
    {PDU_OBJT_COMPARAM, "CP_TemperatureOffset", id::TemperatureOffset},
    {PDU_OBJT_COMPARAM, "CP_ClockDrift", id::ClockDrift},
    {PDU_OBJT_COMPARAM, "CP_TesterPresentMessage", id::TesterPresentMessage},
    {PDU_OBJT_COMPARAM, "CP_SessionTiming_Ecu", id::SessionTiming},
    {PDU_OBJT_COMPARAM, "CP_AccessTiming_Ecu", id::AccessTiming},
    {PDU_OBJT_COMPARAM, "CP_CanPhysReqIdList", id::PhysicalRequestIds},
};

} // namespace

const Object* FindObject(T_PDU_OBJT type, std::string_view shortName)
{
    for (const Object& object : Objects)
        if (object.Type == type && object.ShortName == shortName)
            return &object;
    return nullptr;
}

} // namespace sim
