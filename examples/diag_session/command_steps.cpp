// Steps that send commands to the module: voltages, cable, filters, event queue.
#include "examples/diag_session/io_control.h"

namespace diag {

namespace {

void ShowVoltages(Session& session)
{
    session.Say("Battery voltage: %u mV", static_cast<unsigned>(ReadNumber(session, "PDU_IOCTL_READ_VBATT")));
    session.Say("Ignition: %s",
                ReadNumber(session, "PDU_IOCTL_READ_IGNITION_SENSE_STATE") == 1 ? "on" : "off");
    PDU_IO_PROG_VOLTAGE_DATA voltage = {.ProgVoltage_mv = 18000, .PinOnDLC = 15};
    Command(session, "PDU_IOCTL_SET_PROG_VOLTAGE", PDU_HANDLE_UNDEF, PDU_IT_IO_PROG_VOLTAGE, &voltage);
    session.Say("Programming voltage on pin 15: %u mV",
                static_cast<unsigned>(ReadNumber(session, "PDU_IOCTL_READ_PROG_VOLTAGE")));
}

void ShowCable(Session& session)
{
    PDU_DATA_ITEM* const cable = Output(session, "PDU_IOCTL_GET_CABLE_ID", PDU_HANDLE_UNDEF);
    const auto& bytes = *static_cast<const PDU_IO_BYTEARRAY_DATA*>(cable->pData);
    session.Say("Cable: %s", Hex({bytes.pData, bytes.pData + bytes.DataSize}).c_str());
    session.Destroy(cable);
}

void UseFilters(Session& session, UNUM32 hCLL)
{
    PDU_IO_FILTER_DATA filters[] = {{.FilterType = PDU_FLT_PASS,
                                     .FilterNumber = 1,
                                     .FilterCompareSize = 4,
                                     .FilterMaskMessage = {0xFF, 0xFF, 0xFF, 0xFF},
                                     .FilterPatternMessage = {0x00, 0x00, 0x07, 0xE8}},
                                    {.FilterType = PDU_FLT_BLOCK_UUDT,
                                     .FilterNumber = 2,
                                     .FilterCompareSize = 4,
                                     .FilterMaskMessage = {0xFF, 0xFF, 0xFF, 0xF0},
                                     .FilterPatternMessage = {0x00, 0x00, 0x06, 0x00}}};
    PDU_IO_FILTER_LIST list = {.NumFilterEntries = 2, .pFilterData = filters};
    Command(session, "PDU_IOCTL_START_MSG_FILTER", hCLL, PDU_IT_IO_FILTER, &list);
    UNUM32 filter = 1;
    Command(session, "PDU_IOCTL_STOP_MSG_FILTER", hCLL, PDU_IT_IO_UNUM32, &filter);
    Command(session, "PDU_IOCTL_CLEAR_MSG_FILTER", hCLL, 0, nullptr);
    session.Say("Filters: 2 set, one stopped, all cleared");
}

} // namespace

void UseModuleCommands(Session& session, UNUM32 hCLL)
{
    ShowVoltages(session);
    ShowCable(session);
    UseFilters(session, hCLL);
    PDU_IO_EVENT_QUEUE_PROPERTY_DATA queue = {.QueueSize = 200, .QueueMode = 0};
    Command(session, "PDU_IOCTL_SET_EVENT_QUEUE_PROPERTIES", hCLL, PDU_IT_IO_EVENT_QUEUE_PROPERTY, &queue);
    session.Say("Event queue of the link: for %u events", static_cast<unsigned>(queue.QueueSize));
    session.Say("A self-test is %s", session.Knows(PDU_OBJT_IO_CTRL, "PDU_IOCTL_SELF_TEST")
                                         ? "offered"
                                         : "no command of this module");
}

void ResetModule(Session& session)
{
    Command(session, "PDU_IOCTL_RESET", PDU_HANDLE_UNDEF, 0, nullptr);
    session.Say("The module is reset");
}

} // namespace diag
