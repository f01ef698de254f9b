// The state of the simulated interface: one module, its links, their queues, and the thread that runs
// ComPrimitives.
#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

#include "examples/sim_vci/alarm.h"
#include "examples/sim_vci/comparams.h"
#include "examples/sim_vci/ecu.h"
#include "examples/sim_vci/items.h"
#include "examples/sim_vci/unload.h"
#include "pdu/pdu_api.h"

namespace sim {

inline constexpr UNUM32 ModuleHandle = 1;

/// An expected response, copied from the application.
struct Expected
{
    bool Positive;
    UNUM32 AcceptanceId;
    Bytes Mask;
    Bytes Pattern;
    std::vector<UNUM32> UniqueRespIds;
};

/// A ComPrimitive from its start to its end.
struct ComPrimitive
{
    UNUM32 Handle;
    UNUM32 Link;
    T_PDU_COPT Type;
    Bytes Data;
    UNUM32 Time = 0;
    SNUM32 SendCycles = 1;
    SNUM32 ReceiveCycles = 1;
    bool ExtraInfo = false;
    std::vector<Expected> Responses;
    void* Tag = nullptr;
    T_PDU_STATUS Status = PDU_COPST_IDLE;
    SNUM32 Sent = 0;
    UNUM32 SentAt = 0; ///< when the latest request went out, by the clock of the interface, in microseconds
    UNUM16 P2Max = 0;  ///< how long an answer is waited for, in milliseconds
    std::deque<Bytes> Pending; ///< answers not delivered yet; an empty one means that none will come in time
    Clock::time_point Due;
};

struct LastError
{
    T_PDU_ERR_EVT Code = PDU_ERR_EVT_NOERROR;
    UNUM32 Primitive = PDU_HANDLE_UNDEF;
    UNUM32 Time = 0;
};

/// A control unit that may answer, from the table of response identifiers.
struct Respondent
{
    UNUM32 UniqueRespId;
    ComParams Parameters;
};

struct Link
{
    UNUM32 Resource;
    void* Tag;
    T_PDU_STATUS Status = PDU_CLLST_OFFLINE;
    bool Raw = false;
    UNUM32 LockMask = 0;
    UNUM16 P2Max = ComParams().P2Max(); ///< in effect: that of Parameters at the last PDU_COPT_UPDATEPARAM
    std::vector<Respondent> Respondents;
    ComParams Parameters;
    std::deque<PDU_EVENT_ITEM*> Queue;
    LastError Error;
    Ecu Unit;

    /// The one simulated control unit is the first of the table.
    UNUM32 UniqueRespId() const
    {
        return Respondents.empty() ? PDU_ID_UNDEF : Respondents.front().UniqueRespId;
    }
};

/// An event callback to call once no lock is held.
struct Notification
{
    CALLBACKFNC Callback;
    T_PDU_EVT_DATA Event;
    UNUM32 Link;
    void* LinkTag;
};

/// A comms report to make once no lock is held.
struct Report
{
    UNUM32 Resource;
    bool Sent;
    Bytes Message;
};

/// What remains to be done after the mutex is released.
struct Outbox
{
    std::vector<Notification> Notifications;
    std::vector<Report> Reports;
};

/// The whole interface. Mutex guards all of it except the items; no callback runs while it is held.
class Vci
{
public:
    /// Runs at the end of the process, or when the library is unloaded. Ends the worker if PDUDestruct did
    /// not.
    ~Vci();

    /// Starts the worker thread, and returns when it runs.
    void Start(void* apiTag);
    /// Ends the worker thread; waits for it unless it is the caller.
    void Stop();

    /// The link with that handle, or null. The caller holds Mutex.
    Link* FindLink(UNUM32 hMod, UNUM32 hCLL);
    /// Appends an event to a link's queue, or with PDU_HANDLE_UNDEF to the module's. The caller holds Mutex.
    void PutEvent(Outbox& outbox, UNUM32 hCLL, PDU_EVENT_ITEM* event);
    /// Signals something about a link's queue to the callback in effect for it. The caller holds Mutex.
    void Notify(Outbox& outbox, UNUM32 hCLL, T_PDU_EVT_DATA what) const;
    /// Appends a status event of a ComPrimitive, or with null of the link. The caller holds Mutex.
    void PutStatus(Outbox& outbox, UNUM32 hCLL, const ComPrimitive* primitive, T_PDU_STATUS status);
    void PutInfo(Outbox& outbox, T_PDU_INFO code);
    /// Wakes the worker after a change of the ComPrimitives.
    void Wake() { alarm_.Ring(); }
    /// Ends a ComPrimitive that is running or waiting. The caller holds Mutex.
    void Cancel(Outbox& outbox, ComPrimitive& primitive);
    /// Makes the comms reports, then calls the event callbacks. The caller must not hold Mutex.
    void Deliver(const Outbox& outbox);
    /// Microseconds since the interface was started.
    UNUM32 Now() const;

    std::mutex Mutex;
    bool Constructed = false;
    bool ModuleConnected = false;
    void* ApiTag = nullptr;
    PDU_MS_LOG_CALLBACK LogCallback = nullptr;
    std::map<std::pair<UNUM32, UNUM32>, CALLBACKFNC> Callbacks;
    std::map<UNUM32, Link> Links;
    std::map<UNUM32, ComPrimitive> Primitives;
    std::vector<ComPrimitive> Late; ///< copies whose answers, Pending, come after the original has ended
    std::deque<PDU_EVENT_ITEM*> ModuleQueue;
    UNUM32 NextLink = 1;
    UNUM32 NextPrimitive = 1;
    UNUM32 ProgVoltage = 0;
    UNUM32 EthernetSwitch = 0;

private:
    void Run();
    void RunUntilStopped(std::unique_lock<std::mutex>& hold);
    void Step(Outbox& outbox, ComPrimitive& primitive);
    void Send(Outbox& outbox, ComPrimitive& primitive, Link& link);
    void Receive(Outbox& outbox, ComPrimitive& primitive, Link& link);
    void Finish(Outbox& outbox, ComPrimitive& primitive);
    /// False until the original of a late copy has timed out, however late the worker thread is.
    bool IsTimeOver(const ComPrimitive& late) const;
    void DeliverLateAnswers(Outbox& outbox);
    /// Puts a result if the answer is expected. False if the queue has lost it.
    bool PutAnswer(Outbox& outbox, const ComPrimitive& primitive, const Link& link, const Bytes& answer);
    void PutResult(Outbox& outbox, const ComPrimitive& primitive, const Link& link, UNUM32 acceptanceId,
                   const Bytes& answer);
    void PutTimeout(Outbox& outbox, const ComPrimitive& primitive, Link& link);
    std::optional<Clock::time_point> NextDue() const;

    /// How far the worker thread has come, in this order.
    enum class Worker
    {
        Starting,
        Running,
        Left
    };

    /// Has the worker leave its loop and forgets what the application registered.
    void AskToStop();
    /// The caller holds Mutex.
    void SetWorker(Worker state);
    /// Returns once the worker has come as far as `state`.
    void WaitForWorker(Worker state);

    Alarm alarm_;
    std::condition_variable workerChanged_;
    std::thread thread_;
    SystemThread systemThread_ = 0;
    Worker worker_ = Worker::Left;
    bool stopping_ = false;
    bool unloading_ = false;
    Clock::time_point started_ = Clock::now();
};

extern Vci Interface;
extern Items OpenItems;

} // namespace sim
