// Calls, events and comms reports, each with Marvane and with the loggers that it is compared with.
#include <array>
#include <atomic>
#include <memory>

#include "bench/rows.h"
#include "bench/session.h"
#include "bench/writers.h"
#include "pdu/pdu_api.h"

namespace marvane::bench {

namespace {

/// An operation on a function table, and the settings under which it is logged.
struct Operation
{
    std::string Family;
    bench::Settings Settings;
    std::function<void(const CPduDll& api, std::size_t times)> Run;
    bool Formatted = false; ///< spdlog formats the lines from the arguments of PDULockResource
    bool Silent = false;    ///< nothing is logged
    unsigned Threads = 1;
};

bool Has(const Operation& operation, const std::string& key)
{
    for (const auto& [name, value] : operation.Settings)
        if (name == key && value != 0)
            return true;
    return false;
}

std::unique_ptr<Session> NewSession(const Operation& operation, const Settings& more = {})
{
    Settings settings = operation.Settings;
    settings.insert(settings.end(), more.begin(), more.end());
    return std::make_unique<Session>(settings);
}

// The state of the current row. One row runs at a time.
std::unique_ptr<Session> Running;
std::unique_ptr<FloorWriter> Floor;
#ifdef MARVANE_BENCH_SPDLOG
std::unique_ptr<SpdlogWriter> Spdlog;
#endif

/// True for a line that belongs to the second half of a call.
bool IsOfExit(const std::string& line)
{
    constexpr std::size_t stampLength = 26;
    for (const char* mark : {"- ", "   <--  ", "    <<< "})
        if (line.compare(stampLength, std::string(mark).size(), mark) == 0)
            return true;
    return false;
}

/// The text that one operation writes to the log, by phases.
Phases LoggedPhases(const Operation& operation)
{
    const std::unique_ptr<Session> session = NewSession(operation, {{"LogFlush", 1}});
    const std::size_t before = session->LogText().size();
    operation.Run(session->Api(), 1);
    const std::string text = session->LogText().substr(before);
    for (std::size_t at = 0; at < text.size(); at = text.find('\n', at) + 1)
        if (at > 0 && text[at] == '{' && IsOfExit(text.substr(at)))
            return {text.substr(0, at), text.substr(at)};
    return text.empty() ? Phases{} : Phases{text};
}

void AddRow(std::vector<Row>& rows, const Operation& operation, const char* way, std::function<void()> begin,
            std::function<void(std::size_t)> run, std::function<void()> end)
{
    rows.push_back(
        {operation.Family, way, std::move(begin), std::move(run), std::move(end), operation.Threads});
}

void AddFloor(std::vector<Row>& rows, const Operation& operation, bool flush)
{
    AddRow(
        rows, operation, "floor",
        [=] { Floor = std::make_unique<FloorWriter>(LoggedPhases(operation), flush); },
        [=](std::size_t times) {
            for (std::size_t i = 0; i < times; ++i) {
                Floor->Write(0);
                operation.Run(BareApi(), 1);
                if (Floor->PhaseCount() > 1)
                    Floor->Write(1);
            }
        },
        [] { Floor.reset(); });
}

#ifdef MARVANE_BENCH_SPDLOG
void AddSpdlog(std::vector<Row>& rows, const Operation& operation, bool flush)
{
    AddRow(
        rows, operation, "spdlog",
        [=] { Spdlog = std::make_unique<SpdlogWriter>(LoggedPhases(operation), flush); },
        [=](std::size_t times) {
            for (std::size_t i = 0; i < times; ++i) {
                operation.Formatted ? Spdlog->WriteLockEntry(1, 2, 1) : Spdlog->Write(0);
                operation.Run(BareApi(), 1);
                if (operation.Formatted)
                    Spdlog->WriteLockExit(0);
                else if (Spdlog->PhaseCount() > 1)
                    Spdlog->Write(1);
            }
        },
        [] { Spdlog.reset(); });
}
#endif

void AddOperation(std::vector<Row>& rows, const Operation& operation)
{
    AddRow(
        rows, operation, "marvane", [=] { Running = NewSession(operation); },
        [=](std::size_t times) { operation.Run(Running->Api(), times); }, [] { Running.reset(); });
    AddRow(
        rows, operation, "bare", [] { BareApi(); },
        [=](std::size_t times) { operation.Run(BareApi(), times); }, [] {});
    if (operation.Silent)
        return;
    const bool flush = Has(operation, "LogFlush") || Has(operation, "LogFileMaxSize");
    AddFloor(rows, operation, flush);
#ifdef MARVANE_BENCH_SPDLOG
    AddSpdlog(rows, operation, flush);
#endif
}

void Lock(const CPduDll& api, std::size_t times)
{
    for (std::size_t i = 0; i < times; ++i)
        api.PDULockResource(1, 2, 1);
}

std::array<UNUM8, 4095> Payload()
{
    std::array<UNUM8, 4095> bytes;
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<UNUM8>(i * 7 + 0x22);
    return bytes;
}

/// Starts requests with two expected responses, as testers send them.
void Start(const CPduDll& api, UNUM32 size, std::size_t times)
{
    static std::array<UNUM8, 4095> payload = Payload();
    static std::array<UNUM8, 4> flags = {0, 0, 0, 0};
    static std::array<UNUM8, 3> mask = {0xFF, 0xFF, 0xFF};
    static std::array<UNUM8, 3> pattern = {0x62, 0xF1, 0x90};
    static std::array<UNUM32, 2> identifiers = {1, 2};
    static std::array<PDU_EXP_RESP_DATA, 2> responses = {{
        {0, 1, 3, mask.data(), pattern.data(), 2, identifiers.data()},
        {1, 2, 1, mask.data(), pattern.data(), 0, nullptr},
    }};
    PDU_COP_CTRL_DATA control = {.Time = 0,
                                 .NumSendCycles = 1,
                                 .NumReceiveCycles = 1,
                                 .TempParamUpdate = 0,
                                 .TxFlag = {.NumFlagBytes = 4, .pFlagData = flags.data()},
                                 .NumPossibleExpectedResponses = 2,
                                 .pExpectedResponseArray = responses.data()};
    UNUM32 hCoP = 0;
    for (std::size_t i = 0; i < times; ++i)
        api.PDUStartComPrimitive(1, 2, PDU_COPT_SENDRECV, size, payload.data(), &control, nullptr, &hCoP);
}

void GetEvent(const CPduDll& api, std::size_t times)
{
    for (std::size_t i = 0; i < times; ++i) {
        PDU_EVENT_ITEM* item = nullptr;
        api.PDUGetEventItem(1, 2, &item);
    }
}

std::atomic<unsigned> EventsSeen = 0;

void PDU_CALL OnEvent(T_PDU_EVT_DATA, UNUM32, UNUM32, void*, void*)
{
    EventsSeen.store(EventsSeen.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
}

// Calls what is registered with the target library: the logger's function, or the application's own.
void Event(const CPduDll& api, std::size_t times)
{
    api.PDURegisterEventCallback(1, 2, OnEvent);
    const volatile CALLBACKFNC callback = RegisteredEventCallback()();
    for (std::size_t i = 0; i < times; ++i)
        callback(PDU_EVT_DATA_AVAILABLE, 1, 2, nullptr, nullptr);
}

UNUM32 PDU_CALL NoReport(const CHAR8*, UNUM8, UNUM32, UNUM32, const LogParameter*)
{
    return 0;
}

void Report(const CPduDll& api, std::size_t times)
{
    static const std::array<UNUM8, 12> bytes = {0x02, 0xFD, 0x80, 0x01, 0, 0, 0, 4, 0x0E, 0, 0x10, 1};
    static const LogParameterBytes data = {.Length = 12, .Bytes = bytes.data()};
    static const UNUM32 port = 13400;
    static const std::array<LogParameter, 2> parameters = {
        {{0x1000, 0, "Port\0................", &port}, {0x1002, 0, "Message", &data}}};
    const PDU_MS_LOG_CALLBACK registered = RegisteredLogCallback()();
    const volatile PDU_MS_LOG_CALLBACK report = &api == &BareApi() ? NoReport : registered;
    for (std::size_t i = 0; i < times; ++i)
        report("Diagnostic message", 1, 0, 2, parameters.data());
}

} // namespace

void AddCallRows(std::vector<Row>& rows)
{
    const std::pair<const char*, unsigned> on = {"LogEnabled", 1};
    const auto calls = [](unsigned level) { return std::pair<const char*, unsigned>{"LogFnCalls", level}; };
    AddOperation(rows, {"lock/off", {}, Lock, false, true});
    AddOperation(rows, {"lock/calls0", {on}, Lock, false, true});
    AddOperation(rows, {"lock/calls1", {on, calls(1)}, Lock});
    AddOperation(rows, {"lock/calls2", {on, calls(2)}, Lock, true});
    AddOperation(rows, {"lock/flush", {on, calls(2), {"LogFlush", 1}}, Lock, true});
    AddOperation(
        rows,
        {"lock/rotation", {on, calls(2), {"LogFileMaxSize", 2000000000}, {"LogFileMaxNum", 4}}, Lock, true});
    for (const UNUM32 size : {8u, 64u, 4095u})
        AddOperation(rows,
                     {"start/" + std::to_string(size),
                      {on, calls(2), {"LogFnDecodeArgs", 2}, {"LogFnDecodeRsps", 2}, {"LogMaxPduBuff", 4095}},
                      [=](const CPduDll& api, std::size_t times) { Start(api, size, times); }});
    AddOperation(rows,
                 {"event_item",
                  {on, calls(2), {"LogFnDecodeArgs", 2}, {"LogFnDecodeRsps", 2}, {"LogMaxPduBuff", 4095}},
                  GetEvent});
    AddOperation(rows, {"event/off", {on}, Event, false, true});
    AddOperation(rows, {"event/on", {on, {"LogCbCalls", 1}}, Event});
    AddOperation(rows, {"report", {on, {"LogDoIPComms", 1}}, Report});
    for (const unsigned threads : {2u, 4u})
        AddOperation(
            rows,
            {"lock/calls2/threads" + std::to_string(threads), {on, calls(2)}, Lock, true, false, threads});
}

} // namespace marvane::bench
