#include "examples/diag_session/session.h"

#include <chrono>
#include <cstdio>
#include <thread>

namespace diag {

namespace {

/// The expected responses to a request: a positive one of its service, and any negative one.
struct ExpectedResponses
{
    explicit ExpectedResponses(const Bytes& request)
        : Pattern{static_cast<UNUM8>(request[0] + 0x40)}, Mask{0xFF}, NegativePattern{0x7F, request[0]},
          NegativeMask{0xFF, 0xFF}
    {
        Records[0] = {0, 1, 1, Mask, Pattern, 3, UniqueRespIds};
        Records[1] = {1, 2, 2, NegativeMask, NegativePattern, 0, nullptr};
    }

    UNUM8 Pattern[1];
    UNUM8 Mask[1];
    UNUM8 NegativePattern[2];
    UNUM8 NegativeMask[2];
    UNUM32 UniqueRespIds[3] = {7, 8, PDU_ID_UNDEF};
    PDU_EXP_RESP_DATA Records[2];
};

UNUM8 FirstFlags(const Sending& sending)
{
    return static_cast<UNUM8>((sending.ExtraInfo ? 0x20 : 0x00) | (sending.SuppressAnswer ? 0x40 : 0x00));
}

const char* Words(T_PDU_INFO code)
{
    switch (code) {
    case PDU_INFO_MODULE_LIST_CHG:
        return "the list of modules has changed";
    case PDU_INFO_RSC_LOCK_CHG:
        return "the locks of a resource have changed";
    case PDU_INFO_PHYS_COMPARAM_CHG:
        return "parameters of the bus have changed";
    default:
        return "something unknown";
    }
}

} // namespace

void Session::Say(const char* format, ...) const
{
    if (habits_.Quiet)
        return;
    std::va_list arguments;
    va_start(arguments, format);
    std::vprintf(format, arguments);
    va_end(arguments);
    std::puts("");
    std::fflush(stdout);
}

void Session::Expect(const char* call, T_PDU_ERROR status, T_PDU_ERROR expected) const
{
    if (status != expected)
        throw Failure(std::string(call) + " returned " + StatusName(status) + ", expected was " +
                      StatusName(expected));
}

UNUM32 Session::IdOf(T_PDU_OBJT type, const char* name) const
{
    std::string text = name;
    UNUM32 id = PDU_ID_UNDEF;
    Expect(("PDUGetObjectId of " + text).c_str(), Pdu.PDUGetObjectId(type, text.data(), &id));
    return id;
}

bool Session::Knows(T_PDU_OBJT type, const char* name) const
{
    std::string text = name;
    UNUM32 id = PDU_ID_UNDEF;
    return Pdu.PDUGetObjectId(type, text.data(), &id) == PDU_STATUS_NOERROR;
}

const char* Session::StatusOf(UNUM32 hCLL, UNUM32 hCoP) const
{
    T_PDU_STATUS status = 0;
    UNUM32 time = 0, extra = 0;
    Expect("PDUGetStatus", Pdu.PDUGetStatus(Module, hCLL, hCoP, &status, &time, &extra));
    switch (status) {
    case PDU_MODST_READY:
        return "ready";
    case PDU_CLLST_OFFLINE:
        return "offline";
    case PDU_CLLST_ONLINE:
        return "online";
    case PDU_CLLST_COMM_STARTED:
        return "communication started";
    case PDU_COPST_EXECUTING:
        return "executing";
    case PDU_COPST_FINISHED:
        return "finished";
    default:
        return "in another state";
    }
}

void Session::Destroy(void* item) const
{
    Expect("PDUDestroyItem", Pdu.PDUDestroyItem(item));
}

UNUM32 Session::Start(UNUM32 hCLL, T_PDU_COPT type, const Bytes& request, const Sending& sending)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(habits_.PauseMs));
    Bytes data = request;
    UNUM8 flags[4] = {FirstFlags(sending), 0x00, 0x00, 0x80};
    PDU_COP_CTRL_DATA control = {.Time = sending.Time,
                                 .NumSendCycles = sending.Cycles,
                                 .NumReceiveCycles = sending.ReceiveCycles,
                                 .TempParamUpdate = sending.TemporaryParameters ? 1u : 0u,
                                 .TxFlag = {.NumFlagBytes = 4, .pFlagData = flags},
                                 .NumPossibleExpectedResponses = 0,
                                 .pExpectedResponseArray = nullptr};
    Bytes pattern = request.empty() ? Bytes{0} : request;
    ExpectedResponses expected(pattern);
    if (type == PDU_COPT_SENDRECV && sending.Matched) {
        control.NumPossibleExpectedResponses = 2;
        control.pExpectedResponseArray = expected.Records;
    }
    UNUM32 hCoP = PDU_HANDLE_UNDEF;
    Expect("PDUStartComPrimitive",
           Pdu.PDUStartComPrimitive(Module, hCLL, type, static_cast<UNUM32>(data.size()),
                                    data.empty() ? nullptr : data.data(), &control, this, &hCoP));
    return hCoP;
}

Outcome Session::Wait(UNUM32 hCLL, UNUM32 hCoP)
{
    Outcome outcome;
    for (;;) {
        PDU_EVENT_ITEM* event = nullptr;
        const T_PDU_ERROR status = Pdu.PDUGetEventItem(Module, hCLL, &event);
        if (status == PDU_STATUS_NOERROR) {
            const bool ended = Take(*event, hCoP, outcome);
            if (!habits_.Leaks || event->ItemType != PDU_IT_RESULT)
                Destroy(event);
            if (ended)
                return outcome;
            continue;
        }
        Expect("PDUGetEventItem", status, PDU_ERR_EVENT_QUEUE_EMPTY);
        std::unique_lock hold(mutex_);
        signalled_.wait(hold, [this] { return pending_; });
        pending_ = false;
    }
}

bool Session::Take(const PDU_EVENT_ITEM& event, UNUM32 hCoP, Outcome& outcome)
{
    if (event.hCop != hCoP)
        return false;
    if (event.ItemType == PDU_IT_RESULT) {
        const auto& result = *static_cast<const PDU_RESULT_DATA*>(event.pData);
        outcome.Answers.emplace_back(result.pDataBytes, result.pDataBytes + result.NumDataBytes);
    } else if (event.ItemType == PDU_IT_ERROR)
        outcome.TimedOut =
            static_cast<const PDU_ERROR_DATA*>(event.pData)->ErrorCodeId == PDU_ERR_EVT_RX_TIMEOUT;
    else if (event.ItemType == PDU_IT_STATUS)
        outcome.Status = *static_cast<const T_PDU_STATUS*>(event.pData);
    return outcome.Status == PDU_COPST_FINISHED || outcome.Status == PDU_COPST_CANCELLED;
}

Outcome Session::Run(UNUM32 hCLL, T_PDU_COPT type, const Bytes& request, const Sending& sending)
{
    return Wait(hCLL, Start(hCLL, type, request, sending));
}

Bytes Session::Ask(UNUM32 hCLL, const Bytes& request, const Sending& sending)
{
    Outcome outcome = Run(hCLL, PDU_COPT_SENDRECV, request, sending);
    if (outcome.Answers.empty())
        outcome = Run(hCLL, PDU_COPT_SENDRECV, request, sending);
    if (outcome.Answers.empty())
        throw Failure("no answer to " + Hex(request));
    const Bytes& answer = outcome.Answers.back();
    if (answer[0] != request[0] + 0x40)
        throw Failure("the answer to " + Hex(request) + " is " + Hex(answer));
    return answer;
}

void Session::DrainModuleEvents() const
{
    PDU_EVENT_ITEM* event = nullptr;
    T_PDU_ERROR status;
    while ((status = Pdu.PDUGetEventItem(Module, PDU_HANDLE_UNDEF, &event)) == PDU_STATUS_NOERROR) {
        if (event->ItemType == PDU_IT_INFO)
            Say("  the module reports: %s", Words(static_cast<const PDU_INFO_DATA*>(event->pData)->InfoCode));
        Destroy(event);
    }
    Expect("PDUGetEventItem", status, PDU_ERR_EVENT_QUEUE_EMPTY);
}

void Session::OnEvent(T_PDU_EVT_DATA, UNUM32, UNUM32, void*, void* pAPITag)
{
    auto& session = *static_cast<Session*>(pAPITag);
    const std::lock_guard hold(session.mutex_);
    session.pending_ = true;
    session.signalled_.notify_all();
}

std::string Hex(const Bytes& bytes)
{
    std::string text;
    for (const UNUM8 byte : bytes) {
        char pair[4];
        std::snprintf(pair, sizeof pair, text.empty() ? "%02X" : " %02X", byte);
        text += pair;
    }
    return text;
}

std::string FirstAnswer(const Outcome& outcome)
{
    return outcome.Answers.empty() ? "no answer" : Hex(outcome.Answers.front());
}

} // namespace diag
