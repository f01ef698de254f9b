// All kinds of calls from many threads at once, with events and comms reports, while the log file changes.
#include <atomic>
#include <condition_variable>
#include <cstring>
#include <thread>

#include <gtest/gtest.h>

#include "platform/files.h"
#include "tests/support/log_summary.h"
#include "tests/support/session.h"

namespace marvane::testing {
namespace {

// A third of the rounds where a logged call is many times slower.
#ifdef MARVANE_SANITIZED
constexpr bool Slow = true;
#else
const bool Slow = platform::PathSeparator != '/';
#endif
constexpr UNUM32 CallingThreads = 8;
const UNUM32 RoundsOfCalls = Slow ? 4 : 12;
constexpr UNUM32 EventThreads = 2;
constexpr UNUM32 ReportThreads = 2;
const UNUM32 EventsEach = Slow ? 50 : 150;
const char* const FileSize = Slow ? "20000" : "60000";
constexpr UNUM32 BlockingModule = 0xB10C;

// What the target returns. Constant during a test, so all threads may read it.
UNUM32 Value = 500000;
PDU_PARAM_ITEM Param = {.ItemType = PDU_IT_PARAM,
                        .ComParamId = 0,
                        .ComParamDataType = PDU_PT_UNUM32,
                        .ComParamClass = PDU_PC_COM,
                        .pComParamData = &Value};
UNUM8 Payload[] = {0x62, 0xF1, 0x90, 0x57, 0x41};
PDU_RESULT_DATA Result = {};
PDU_EVENT_ITEM Event = {
    .ItemType = PDU_IT_RESULT, .hCop = 3, .pCoPTag = nullptr, .Timestamp = 4711, .pData = &Result};
PDU_MODULE_DATA Module = {.ModuleTypeId = 1,
                          .hMod = 1,
                          .pVendorModuleName = nullptr,
                          .pVendorAdditionalInfo = nullptr,
                          .ModuleStatus = 0};
PDU_MODULE_ITEM Modules = {.ItemType = PDU_IT_MODULE_ID, .NumEntries = 1, .pModuleData = &Module};
PDU_ECU_UNIQUE_RESP_DATA Response = {.UniqueRespIdentifier = 7, .NumParamItems = 1, .pParams = &Param};
PDU_UNIQUE_RESP_ID_TABLE_ITEM Table = {
    .ItemType = PDU_IT_UNIQUE_RESP_ID_TABLE, .NumEntries = 1, .pUniqueData = &Response};

template <class Pointed> void Give(std::uint64_t place, Pointed value)
{
    *reinterpret_cast<Pointed*>(static_cast<std::uintptr_t>(place)) = value;
}

/// The target: returns items, and blocks one call until it is released.
class BusyTarget
{
public:
    T_PDU_ERROR Answer(const FakeCall& call)
    {
        const std::string name = call.Function;
        if (name == "PDUGetEventItem")
            Give(call.Arguments[2], &Event);
        else if (name == "PDUGetComParam")
            Give(call.Arguments[3], &Param);
        else if (name == "PDUGetModuleIds")
            Give(call.Arguments[0], &Modules);
        else if (name == "PDUGetUniqueRespIdTable")
            Give(call.Arguments[2], &Table);
        else if (name == "PDUGetObjectId")
            Give(call.Arguments[2],
                 static_cast<UNUM32>(std::strlen(reinterpret_cast<const char*>(call.Arguments[1]))));
        else if (name == "PDUIoCtl" && call.Arguments[0] == BlockingModule)
            Block();
        return PDU_STATUS_NOERROR;
    }

    void AwaitBlocked()
    {
        std::unique_lock hold(mutex_);
        changed_.wait(hold, [&] { return blocked_; });
    }

    void Release()
    {
        const std::lock_guard hold(mutex_);
        released_ = true;
        changed_.notify_all();
    }

private:
    void Block()
    {
        std::unique_lock hold(mutex_);
        blocked_ = true;
        changed_.notify_all();
        changed_.wait(hold, [&] { return released_; });
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    bool blocked_ = false;
    bool released_ = false;
};

// The application's callback calls the API, as real ones do.
const CPduDll* EventApi = nullptr;
std::atomic<UNUM32> EventsSeen = 0;
void PDU_CALL OnEvent(T_PDU_EVT_DATA, UNUM32 hMod, UNUM32 hCLL, void*, void*)
{
    PDU_EVENT_ITEM* item = nullptr;
    EventApi->PDUGetEventItem(hMod, hCLL, &item);
    EventApi->PDUDestroyItem(item);
    ++EventsSeen;
}

/// Makes each of the 27 calls that are allowed between PDUConstruct and PDUDestruct.
void CallAll(const CPduDll& api, UNUM32 thread, UNUM32 round)
{
    UNUM32 places[4] = {};
    PDU_VERSION_DATA version = {};
    PDU_RSC_DATA resource = {.BusTypeId = 1, .ProtocolId = 2, .NumPinData = 0, .pDLCPinData = nullptr};
    UNUM8 flagByte = 0x80;
    PDU_FLAG_DATA flags = {.NumFlagBytes = 1, .pFlagData = &flagByte};
    PDU_COP_CTRL_DATA control = {.Time = 0,
                                 .NumSendCycles = 1,
                                 .NumReceiveCycles = 1,
                                 .TempParamUpdate = 0,
                                 .TxFlag = {1, &flagByte},
                                 .NumPossibleExpectedResponses = 0,
                                 .pExpectedResponseArray = nullptr};
    PDU_RSC_STATUS_ITEM resourceStatus = {
        .ItemType = PDU_IT_RSC_STATUS, .NumEntries = 0, .pResourceStatusData = nullptr};
    PDU_RSC_ID_ITEM* resourceIds = nullptr;
    PDU_RSC_CONFLICT_ITEM* conflicts = nullptr;
    PDU_MODULE_ITEM* modules = nullptr;
    PDU_PARAM_ITEM* param = nullptr;
    PDU_UNIQUE_RESP_ID_TABLE_ITEM* table = nullptr;
    PDU_EVENT_ITEM* event = nullptr;
    PDU_DATA_ITEM input = {.ItemType = PDU_IT_IO_UNUM32, .pData = &places[0]};
    PDU_DATA_ITEM* output = nullptr;
    std::string name = "Name_" + std::to_string(thread) + "_" + std::to_string(round);

    api.PDUGetModuleIds(&modules);
    api.PDUModuleConnect(thread);
    api.PDUGetVersion(thread, &version);
    api.PDUGetTimestamp(thread, &places[0]);
    api.PDUGetObjectId(PDU_OBJT_COMPARAM + round % 2, name.data(), &places[1]);
    api.PDUGetResourceIds(thread, &resource, &resourceIds);
    api.PDUGetConflictingResources(round, &Modules, &conflicts);
    api.PDUGetResourceStatus(&resourceStatus);
    api.PDUCreateComLogicalLink(thread, &resource, round, nullptr, &places[2], &flags);
    api.PDURegisterEventCallback(thread, round, OnEvent);
    api.PDUGetComParam(thread, round, places[1], &param);
    api.PDUSetComParam(thread, round, param);
    api.PDUGetUniqueRespIdTable(thread, round, &table);
    api.PDUSetUniqueRespIdTable(thread, round, table);
    api.PDUConnect(thread, round);
    api.PDULockResource(thread, round, 1);
    api.PDUStartComPrimitive(thread, round, PDU_COPT_SENDRECV, sizeof Payload, Payload, &control, nullptr,
                             &places[3]);
    api.PDUGetStatus(thread, round, 1, &places[0], &places[1], &places[2]);
    api.PDUGetLastError(thread, round, &places[0], &places[1], &places[2], &places[3]);
    api.PDUGetEventItem(thread, round, &event);
    api.PDUDestroyItem(event);
    api.PDUCancelComPrimitive(thread, round, 1);
    api.PDUIoCtl(thread, round, 1, &input, &output);
    api.PDUUnlockResource(thread, round, 1);
    api.PDUDisconnect(thread, round);
    api.PDUDestroyComLogicalLink(thread, round);
    api.PDUModuleDisconnect(thread);
}

/// A pointer argument of the only call of a function.
std::uintptr_t Given(const std::vector<SeenCall>& calls, const std::string& function, std::size_t argument)
{
    for (const SeenCall& call : calls)
        if (call.Function == function)
            return static_cast<std::uintptr_t>(call.Arguments[argument]);
    return 0;
}

/// A session in which all threads run at once, and the calls that the target received.
class Stress : public ::testing::Test
{
protected:
    Stress()
        : session({{"LogFnDecodeArgs", "2"},
                   {"LogFnDecodeRsps", "2"},
                   {"LogCbCalls", "1"},
                   {"LogCallOuts", "1"},
                   {"LogFileMaxSize", FileSize},
                   {"LogFileMaxNum", "100000"}})
    {
        EventApi = &session.Api();
        EventsSeen = 0;
        Result.NumDataBytes = sizeof Payload;
        Result.pDataBytes = Payload;
    }

    void Run()
    {
        session.Fake().Answer = [this](const FakeCall& call) { return target.Answer(call); };
        session.Construct();
        session.Api().PDURegisterEventCallback(PDU_HANDLE_UNDEF, PDU_HANDLE_UNDEF, OnEvent);
        Take();
        std::thread blocked([this] { session.Api().PDUIoCtl(BlockingModule, 0, 1, nullptr, nullptr); });
        target.AwaitBlocked();
        RunThreads();
        target.Release();
        blocked.join();
        session.Api().PDUDestruct();
        Take();
    }

    Session session;
    BusyTarget target;
    std::map<std::string, std::size_t> seen; ///< calls received by the target, by function

private:
    void Take()
    {
        const std::vector<SeenCall> calls = session.Fake().TakeCalls();
        for (const SeenCall& call : calls)
            ++seen[call.Function];
        if (!trap) {
            trap = reinterpret_cast<CALLBACKFNC>(Given(calls, "PDURegisterEventCallback", 2));
            report = reinterpret_cast<PDU_MS_LOG_CALLBACK>(Given(calls, "PDU_MS_SetLogCallback", 0));
        }
    }

    void RunThreads()
    {
        std::vector<std::thread> threads;
        for (UNUM32 thread = 0; thread < CallingThreads; ++thread)
            threads.emplace_back([this, thread] {
                for (UNUM32 round = 0; round < RoundsOfCalls; ++round)
                    CallAll(session.Api(), thread, round);
            });
        for (UNUM32 thread = 0; thread < EventThreads; ++thread)
            threads.emplace_back([this] {
                for (UNUM32 i = 0; i < EventsEach; ++i)
                    trap(PDU_EVT_DATA_AVAILABLE, i % CallingThreads, i % RoundsOfCalls, nullptr, nullptr);
            });
        for (UNUM32 thread = 0; thread < ReportThreads; ++thread)
            threads.emplace_back([this] {
                const LogParameterBytes bytes = {.Length = sizeof Payload, .Bytes = Payload};
                const LogParameter parameter = {
                    .Type = 0x1002, .Reserved = 0, .Name = "Payload", .Data = &bytes};
                for (UNUM32 i = 0; i < EventsEach; ++i)
                    report("message", i % 2, 256 + i % 3, 1, &parameter);
            });
        for (std::thread& thread : threads)
            thread.join();
    }

    CALLBACKFNC trap = nullptr;
    PDU_MS_LOG_CALLBACK report = nullptr;
};

TEST_F(Stress, EveryCallEventAndReportIsInTheLogAndEveryLineIsWhole)
{
    Run();
    const LogSummary log = Summarise(LogInOrder(session.LogFolder()));
    EXPECT_EQ(WrongLines(log), "");
    EXPECT_EQ(EventsSeen, EventThreads * EventsEach);
    std::map<std::string, std::size_t> expected = seen;
    expected.erase("PDU_MS_SetLogCallback");
    EXPECT_EQ(expected.size(), 29u);
    expected["PDUCallbackTrap"] = EventThreads * EventsEach;
    expected["LOGGER_Uninitialise"] = 1;
    EXPECT_EQ(log.Entries, expected);
    expected["LOGGER_Initialise"] = 1;
    EXPECT_EQ(log.Exits, expected);
    EXPECT_EQ(log.Reports, ReportThreads * EventsEach);
    EXPECT_GE(log.Continuations, 10u);
    EXPECT_EQ(log.Closings, log.Continuations);
}

} // namespace
} // namespace marvane::testing
