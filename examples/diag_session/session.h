// A diagnostic session: the state and the functions that its steps share.
#pragma once

#include <condition_variable>
#include <cstdarg>
#include <initializer_list>
#include <mutex>
#include <string>
#include <vector>

#include "examples/diag_session/api.h"

namespace diag {

using Bytes = std::vector<UNUM8>;

/// The result of a ComPrimitive.
struct Outcome
{
    std::vector<Bytes> Answers;
    bool TimedOut = false;
    T_PDU_STATUS Status = PDU_COPST_IDLE;
};

/// How a request is sent.
struct Sending
{
    UNUM32 Time = 0;
    SNUM32 Cycles = 1;
    SNUM32 ReceiveCycles = 1;
    bool ExtraInfo = false;
    bool SuppressAnswer = false;
    /// The ComParams set last apply to this request only.
    bool TemporaryParameters = false;
    /// Accept only answers that match by mask and pattern; otherwise accept all.
    bool Matched = true;
};

/// How the application behaves, its faults included.
struct Habits
{
    bool Quiet = false;         ///< prints errors only
    bool Leaks = false;         ///< destroys no item of an answer
    unsigned PauseMs = 0;       ///< before each request
    unsigned GiveUpSeconds = 0; ///< ends the process if the session lasts longer; 0: never
    std::string Options;        ///< option string of PDUConstruct
};

class Session
{
public:
    Session(const Api& api, const Habits& habits) : Pdu(api), habits_(habits) {}

    /// Prints a line unless the session is quiet.
    void Say(const char* format, ...) const;
    /// Throws Failure if a call did not return the expected status.
    void Expect(const char* call, T_PDU_ERROR status, T_PDU_ERROR expected = PDU_STATUS_NOERROR) const;
    UNUM32 IdOf(T_PDU_OBJT type, const char* name) const;
    /// False if the library has no such object.
    bool Knows(T_PDU_OBJT type, const char* name) const;
    /// Status of the module, of a link, or of a ComPrimitive, in words.
    const char* StatusOf(UNUM32 hCLL, UNUM32 hCoP = PDU_HANDLE_UNDEF) const;
    /// Destroys an item of the library.
    void Destroy(void* item) const;

    /// Starts a ComPrimitive, waits for its end and returns its result.
    Outcome Run(UNUM32 hCLL, T_PDU_COPT type, const Bytes& request, const Sending& sending = {});
    /// Starts a ComPrimitive and returns its handle.
    UNUM32 Start(UNUM32 hCLL, T_PDU_COPT type, const Bytes& request, const Sending& sending);
    /// Waits for the end of a ComPrimitive.
    Outcome Wait(UNUM32 hCLL, UNUM32 hCoP);
    /// Sends a request, once more if there is no answer, and returns the last answer. Throws Failure if there
    /// is none or it is not positive.
    Bytes Ask(UNUM32 hCLL, const Bytes& request, const Sending& sending = {});
    /// Fetches and prints the pending events of the module.
    void DrainModuleEvents() const;

    /// The event callback: wakes the waiting thread. Runs on any thread of the library.
    static void PDU_CALL OnEvent(T_PDU_EVT_DATA eventType, UNUM32 hMod, UNUM32 hCLL, void* pCLLTag,
                                 void* pAPITag);

    const Api& Pdu;
    UNUM32 Module = PDU_HANDLE_UNDEF;

private:
    /// Adds an event to the result. True if it ends the ComPrimitive.
    static bool Take(const PDU_EVENT_ITEM& event, UNUM32 hCoP, Outcome& outcome);

    Habits habits_;
    std::mutex mutex_;
    std::condition_variable signalled_;
    bool pending_ = false;
};

/// Bytes as hexadecimal pairs.
std::string Hex(const Bytes& bytes);
/// The first answer, likewise; "no answer" if there is none.
std::string FirstAnswer(const Outcome& outcome);

// The steps, in order.
void IdentifyModule(Session& session);
void ShowResources(Session& session);
void UseParameters(Session& session, UNUM32 hCLL);
/// A second link on a resource whose parameters the first one, `owner`, has locked; unlocks them.
void ShareResource(Session& session, UNUM32 owner);
void Diagnose(Session& session, UNUM32 hCLL);
void UseModuleCommands(Session& session, UNUM32 hCLL);
void UseDoIP(Session& session);
void ResetModule(Session& session);

// Shared by the steps.

/// Creates and connects a link for a protocol on pins; the caller disconnects and destroys it.
UNUM32 OpenLink(Session& session, const char* busType, const char* protocol, std::vector<PDU_PIN_DATA> pins);
void CloseLink(Session& session, UNUM32 hCLL);
void ShowResourceStatus(Session& session, UNUM32 resource);
/// Sets CP_P2Max, the maximum time to wait for an answer.
void SetP2Max(Session& session, UNUM32 hCLL, UNUM16 value);

} // namespace diag
