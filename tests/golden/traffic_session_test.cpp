// A session at the middle level, LogFnCalls 1: call-outs, events and comms reports between the calls, and two
// changes of the log file.
#include <array>
#include <chrono>
#include <numeric>
#include <thread>

#include <gtest/gtest.h>

#include "tests/golden/stage.h"

namespace marvane::testing {
namespace {

void PDU_CALL OnModuleEvent(T_PDU_EVT_DATA, UNUM32, UNUM32, void*, void*) {}
void PDU_CALL OnLinkEvent(T_PDU_EVT_DATA, UNUM32, UNUM32, void*, void*) {}

constexpr CHAR8 AddressName[21] = "Address";
constexpr UNUM32 Number = 0x1000, Bytes = 0x1002, Unhandled = 0x1001;

/// A call during which the target reports communication and signals an event on the same thread.
void Begin(Stage& stage)
{
    stage.api.PDUConstruct(nullptr, nullptr);
    stage.api.PDURegisterEventCallback(1, PDU_HANDLE_UNDEF, OnModuleEvent);
    stage.script.On("PDUModuleConnect", [&](const FakeCall&) {
        stage.script.Report("Interface started", 0, 3, {});
        stage.script.Signal(1, PDU_HANDLE_UNDEF, nullptr, nullptr);
        return PDU_STATUS_NOERROR;
    });
    stage.api.PDUModuleConnect(1);
}

/// Calls whose arguments and results would be decoded at the next level.
void CallAll(Stage& stage)
{
    UNUM32 number = 0;
    PDU_RSC_DATA resource = {.BusTypeId = 1, .ProtocolId = 2, .NumPinData = 0, .pDLCPinData = nullptr};
    UNUM8 flagByte = 0x80;
    PDU_FLAG_DATA flags = {.NumFlagBytes = 1, .pFlagData = &flagByte};
    stage.script.Give<UNUM32>("PDUGetTimestamp", 1, 99);
    stage.api.PDUGetTimestamp(1, &number);
    stage.script.Give<UNUM32>("PDUCreateComLogicalLink", 4, 2);
    stage.api.PDUCreateComLogicalLink(1, &resource, 400, nullptr, &number, &flags);
    stage.api.PDURegisterEventCallback(1, 2, OnLinkEvent);
    PDU_COP_CTRL_DATA control = {.Time = 1,
                                 .NumSendCycles = 1,
                                 .NumReceiveCycles = 1,
                                 .TempParamUpdate = 0,
                                 .TxFlag = {1, &flagByte},
                                 .NumPossibleExpectedResponses = 0,
                                 .pExpectedResponseArray = nullptr};
    stage.api.PDUStartComPrimitive(1, 2, PDU_COPT_SENDRECV, 1, &flagByte, &control, nullptr, &number);
    // An empty payload is reported at this level too.
    stage.api.PDUStartComPrimitive(1, 2, PDU_COPT_SENDRECV, 0, &flagByte, &control, nullptr, &number);
    stage.script.Fail("PDUGetEventItem", PDU_ERR_EVENT_QUEUE_EMPTY);
    PDU_EVENT_ITEM* event = nullptr;
    stage.api.PDUGetEventItem(1, 2, &event);
}

/// The addresses of an output are logged at every level.
void UseCommand(Stage& stage)
{
    auto& voltage = stage.log.Keep<UNUM32>("voltage", 12640);
    auto& item = stage.log.Keep<PDU_DATA_ITEM>("voltage item", {PDU_IT_IO_UNUM32, &voltage});
    PDU_DATA_ITEM* output = nullptr;
    stage.script.Give("PDUIoCtl", 4, &item);
    stage.api.PDUIoCtl(1, 2, 500, nullptr, &output);
}

/// Reports communication and signals events on a thread of the interface.
void ReportTraffic(Stage& stage)
{
    const UNUM32 address = 0x0E80;
    const std::array<UNUM8, 19> payload = {0x02, 0xFD, 0x80, 0x01, 0x00, 0x00, 0x00, 0x0B, 0x0E, 0x80,
                                           0x10, 0x10, 0x62, 0xF1, 0x90, 0x56, 0x49, 0x4E, 0x7E};
    const LogParameterBytes bytes = {.Length = 19, .Bytes = payload.data()};
    const LogParameterBytes none = {.Length = 0, .Bytes = nullptr};
    std::thread([&] {
        stage.script.Report("Diagnostic message", 1, 256,
                            {{Number, 0, AddressName, &address}, {Bytes, 0, "Message", &bytes}});
        stage.script.Report("Diagnostic message", 0, 257, {{Bytes, 0, "Message", &none}});
        stage.script.Report("Alive check", 0, 258, {{Unhandled, 0, nullptr, nullptr}});
        stage.script.Signal(1, 2, nullptr, nullptr);
        // Neither this module nor the default has a callback: nothing is logged.
        stage.script.Signal(9, PDU_HANDLE_UNDEF, nullptr, nullptr);
    }).join();
}

/// Waits for the next second, so that the next log file gets a new name. The clocks that a name may come from
/// differ by some milliseconds.
void WaitForANewName()
{
    using namespace std::chrono;
    constexpr milliseconds margin(100);
    std::this_thread::sleep_until(floor<seconds>(system_clock::now() + margin) + seconds(1) + margin);
}

/// Exceeds the limit of 16,000 bytes by a report; the next call changes the file.
void OutgrowTheFile(Stage& stage)
{
    std::array<UNUM8, 1536> payload;
    std::iota(payload.begin(), payload.end(), UNUM8{0});
    const LogParameterBytes bytes = {.Length = 1536, .Bytes = payload.data()};
    stage.script.Report("Download", 1, 256, {{Bytes, 0, "Block", &bytes}});
    WaitForANewName();
    stage.api.PDUDestroyComLogicalLink(1, 2);
}

TEST(GoldenSession, TrafficAndChangesOfTheFileAtTheMiddleLevel)
{
    Stage stage({{"LogFnCalls", "1"},
                 {"LogFnDecodeArgs", "2"},
                 {"LogFnDecodeRsps", "2"},
                 {"LogCallOuts", "1"},
                 {"LogCbCalls", "1"},
                 {"LogNewFileCfg", "1"},
                 {"LogFileMaxSize", "16000"},
                 {"LogFileMaxNum", "8"}});
    Begin(stage);
    CallAll(stage);
    UseCommand(stage);
    ReportTraffic(stage);
    OutgrowTheFile(stage);
    WaitForANewName();
    stage.api.PDUModuleDisconnect(1);
    stage.api.PDUDestruct();
    EXPECT_FALSE(stage.script.CanReport());
    EXPECT_EQ(stage.session.LogNames().size(), 3u);
    stage.log.ExpectEqual("traffic_session");
}

} // namespace
} // namespace marvane::testing
