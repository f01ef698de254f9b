#include "examples/sim_vci/comms_report.h"

#include "examples/sim_vci/objects.h"

namespace sim {

namespace {

constexpr UNUM32 DoIPProtocol = 256;
constexpr UNUM32 CanProtocol = 1;

constexpr UNUM32 NumberParameter = 0x1000;
constexpr UNUM32 VersionParameter = 0x1001;
constexpr UNUM32 BytesParameter = 0x1002;

// The name of a number is a field of 21 bytes, not only a pointer to characters.
constexpr CHAR8 AddressName[21] = "Address";

} // namespace

void ReportComms(PDU_MS_LOG_CALLBACK callback, const Report& report)
{
    const bool onDoIP = report.Resource == id::ResourceDoIP;
    const UNUM32 address = onDoIP ? (report.Sent ? 0x1010 : 0x0E80) : (report.Sent ? 0x7E0 : 0x7E8);
    const LogParameterBytes bytes = {.Length = static_cast<UNUM32>(report.Message.size()),
                                     .Bytes = report.Message.data()};
    const LogParameter parameters[] = {
        {.Type = NumberParameter, .Reserved = 0, .Name = AddressName, .Data = &address},
        {.Type = BytesParameter, .Reserved = 0, .Name = "Message", .Data = &bytes}};
    callback(onDoIP ? "Diagnostic message" : "CAN message", report.Sent ? 1 : 0,
             onDoIP ? DoIPProtocol : CanProtocol, 2, parameters);
}

void ReportStart(PDU_MS_LOG_CALLBACK callback)
{
    const LogParameter parameters[] = {
        {.Type = VersionParameter, .Reserved = 0, .Name = nullptr, .Data = nullptr}};
    callback("Simulated interface started", 0, CanProtocol, 1, parameters);
}

} // namespace sim
