// The logger library in a session, each call, event and report compared with the model: what reaches the
// other side, what comes back, and what the log must say.
#pragma once

#include <functional>
#include <string>
#include <type_traits>
#include <vector>

#include "tests/fuzz/record_source.h"
#include "tests/fuzz/sequence_checks.h"
#include "tests/fuzz/sequence_model.h"
#include "tests/fuzz/step_trace.h"
#include "tests/support/session.h"

namespace marvane::testing {

/// One object at a time: callbacks of the API have no place for a context. Used by one thread at a time.
class CheckedLogger
{
public:
    /// `nested` runs inside forwarded calls and event handlers, and may call back into this object.
    CheckedLogger(Session& session, std::function<void()> nested);
    ~CheckedLogger();
    CheckedLogger(const CheckedLogger&) = delete;
    CheckedLogger& operator=(const CheckedLogger&) = delete;

    /// Makes a call with these arguments. The target runs `answer` and returns a status from the source.
    template <class Answer, class... Parameters>
    requires std::is_invocable_v<Answer>
    void Call(const char* name, T_PDU_ERROR (PDU_CALL* FunctionTable::*function)(Parameters...),
              RecordSource& source, Answer answer, std::type_identity_t<Parameters>... arguments)
    {
        const std::string records = source.Contents();
        source.ForbidWriting();
        ExpectedCall expected{
            .Name = name, .Arguments = {Raw(arguments)...}, .Status = Status(source), .Answer = answer};
        BeginCall(expected);
        EndCall(expected, (session_.Api().*function)(arguments...));
        ExpectSame(records, source.Contents(), name);
    }
    template <class... Parameters>
    void Call(const char* name, T_PDU_ERROR (PDU_CALL* FunctionTable::*function)(Parameters...),
              RecordSource& source, std::type_identity_t<Parameters>... arguments)
    {
        Call(
            name, function, source, [] {}, arguments...);
    }

    /// `folderIsSound`: a log file can certainly be opened. Otherwise the result is observed, not predicted.
    void Construct(RecordSource& source, const SequenceSettings& configured, bool folderIsSound);
    void Destruct(T_PDU_ERROR status);
    /// The target raises an event. Nothing happens before the application has registered a handler.
    void RaiseEvent(RecordSource& source);
    /// The target reports communication. Nothing happens before it was given the comms callback.
    void Report(RecordSource& source);

    /// One of two event handlers, or null.
    static CALLBACKFNC AnyHandler(RecordSource& source);

    void ExpectNoCallUnderWay() const;
    /// Number of forwarded calls and event handlers that are under way.
    int Depth() const { return depth_; }
    const LoggerModel& Model() const { return model_; }
    SequenceChecks& Checks() { return checks_; }
    StepTrace& Trace() { return trace_; }

private:
    /// A call that is under way.
    struct ExpectedCall
    {
        const char* Name;
        std::vector<std::uint64_t> Arguments;
        T_PDU_ERROR Status;
        std::function<void()> Answer = [] {};
        bool MustBeSeen = false;
        bool Seen = false;
    };
    /// The event that the application must receive.
    struct ExpectedEvent
    {
        CALLBACKFNC Handler = nullptr;
        std::vector<std::uint64_t> Arguments;
    };

    template <class Argument> static std::uint64_t Raw(Argument argument)
    {
        if constexpr (std::is_pointer_v<Argument>)
            return reinterpret_cast<std::uintptr_t>(argument);
        else
            return argument;
    }

    void BeginCall(ExpectedCall& expected);
    void EndCall(ExpectedCall& expected, T_PDU_ERROR status);
    T_PDU_ERROR OnCall(const FakeCall& call);
    void OnRegistration(std::vector<std::uint64_t>& arguments, const ExpectedCall& expected);
    static T_PDU_ERROR Status(RecordSource& source);
    static void ExpectSame(const std::string& before, const std::string& after, const char* name);

    static void PDU_CALL FirstHandler(T_PDU_EVT_DATA type, UNUM32 hMod, UNUM32 hCLL, void* pCLLTag,
                                      void* pAPITag);
    static void PDU_CALL SecondHandler(T_PDU_EVT_DATA type, UNUM32 hMod, UNUM32 hCLL, void* pCLLTag,
                                       void* pAPITag);
    void OnEvent(CALLBACKFNC handler, const std::vector<std::uint64_t>& arguments);
    void RunNested();

    static CheckedLogger* running_;

    Session& session_;
    std::function<void()> nested_;
    LoggerModel model_;
    HandlerModel handlers_;
    SequenceChecks checks_;
    StepTrace trace_;

    CALLBACKFNC trap_ = nullptr;
    PDU_MS_LOG_CALLBACK comms_ = nullptr;
    std::vector<ExpectedCall*> underWay_;
    ExpectedEvent event_;
    int eventsSeen_ = 0;
    int reports_ = 0;
    int depth_ = 0;
};

} // namespace marvane::testing
