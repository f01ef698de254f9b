#include "tests/fuzz/checked_logger.h"

#include <cstdio>
#include <utility>

#include <gtest/gtest.h>

#include "tests/fuzz/call_facts.h"

namespace marvane::testing {

namespace {

std::string ExitText(const char* name, T_PDU_ERROR status)
{
    char number[20];
    std::snprintf(number, sizeof number, " (0x%04X)>", static_cast<unsigned>(status));
    return std::string("- ") + name + "<" + std::string(StatusText(status)) + number;
}

/// A raw argument as the pointer that it is.
template <class Pointer> Pointer ToPointer(std::uint64_t argument)
{
    return reinterpret_cast<Pointer>(static_cast<std::uintptr_t>(argument));
}

} // namespace

CheckedLogger* CheckedLogger::running_ = nullptr;

CheckedLogger::CheckedLogger(Session& session, std::function<void()> nested)
    : session_(session), nested_(std::move(nested)), checks_(session.LogFolder())
{
    running_ = this;
    session_.Fake().Answer = [this](const FakeCall& call) { return OnCall(call); };
}

CheckedLogger::~CheckedLogger()
{
    session_.Fake().Answer = nullptr;
    running_ = nullptr;
}

void CheckedLogger::ExpectNoCallUnderWay() const
{
    EXPECT_TRUE(underWay_.empty());
}

void CheckedLogger::RunNested()
{
    ++depth_;
    nested_();
    --depth_;
}

T_PDU_ERROR CheckedLogger::Status(RecordSource& source)
{
    return source.Coin() ? PDU_STATUS_NOERROR : source.Code(ErrorCodeNames);
}

void CheckedLogger::ExpectSame(const std::string& before, const std::string& after, const char* name)
{
    EXPECT_TRUE(before == after) << "the records of " << name << " were changed";
}

void CheckedLogger::BeginCall(ExpectedCall& expected)
{
    trace_.Add(std::string(static_cast<std::size_t>(depth_), ' ') + "call " + expected.Name);
    if (model_.LogsCalls() && model_.HasTarget())
        checks_.Expect(std::string("+ ") + expected.Name);
    expected.MustBeSeen = model_.HasTarget();
    underWay_.push_back(&expected);
}

void CheckedLogger::EndCall(ExpectedCall& expected, T_PDU_ERROR status)
{
    underWay_.pop_back();
    EXPECT_EQ(expected.Seen, expected.MustBeSeen) << expected.Name;
    EXPECT_EQ(status, expected.Seen ? expected.Status : PDU_ERR_PDUAPI_NOT_CONSTRUCTED) << expected.Name;
    if (!expected.Seen) {
        if (model_.IsLogged())
            checks_.Expect(std::string(expected.Name) + " - Called but library not loaded!");
        return;
    }
    if (model_.LogsCalls()) {
        checks_.Expect(ExitText(expected.Name, expected.Status));
        checks_.Note(FactOfCall(expected.Name, expected.Arguments, expected.Status));
    }
    if (std::string_view(expected.Name) == "PDUModuleDisconnect")
        model_.EndModuleDisconnect();
}

T_PDU_ERROR CheckedLogger::OnCall(const FakeCall& call)
{
    const std::string_view name = call.Function;
    if (name == "PDU_MS_SetLogCallback") {
        if (call.Arguments[0] != 0)
            comms_ = ToPointer<PDU_MS_LOG_CALLBACK>(call.Arguments[0]);
        return PDU_STATUS_NOERROR;
    }
    if (underWay_.empty()) {
        ADD_FAILURE() << name << " was not called";
        return PDU_STATUS_NOERROR;
    }
    ExpectedCall& expected = *underWay_.back();
    std::vector<std::uint64_t> arguments(call.Arguments, call.Arguments + call.Count);
    EXPECT_EQ(name, expected.Name);
    EXPECT_FALSE(expected.Seen) << name << " was forwarded twice";
    expected.Seen = true;
    if (name == "PDURegisterEventCallback")
        OnRegistration(arguments, expected);
    if (name == "PDUConstruct")
        model_.ConstructReachesTarget();
    EXPECT_EQ(arguments, expected.Arguments) << name;
    expected.Answer();
    RunNested();
    return expected.Status;
}

/// The target is given the logger's own callback in place of the application's: the one argument that
/// changes.
void CheckedLogger::OnRegistration(std::vector<std::uint64_t>& arguments, const ExpectedCall& expected)
{
    EXPECT_EQ(arguments[2] == 0, expected.Arguments[2] == 0);
    if (arguments[2] != 0)
        trap_ = ToPointer<CALLBACKFNC>(arguments[2]);
    handlers_.Register(static_cast<UNUM32>(arguments[0]), static_cast<UNUM32>(arguments[1]),
                       ToPointer<CALLBACKFNC>(expected.Arguments[2]));
    arguments[2] = expected.Arguments[2];
}

void CheckedLogger::Construct(RecordSource& source, const SequenceSettings& configured, bool folderIsSound)
{
    handlers_.ForgetDefault();
    checks_.NoteStart(model_.BeginConstruct(configured, folderIsSound), depth_ != 0);
    void* const tag = source.Bytes(1);
    CHAR8* const option = source.Text();
    ExpectedCall expected{
        .Name = "PDUConstruct", .Arguments = {Raw(option), Raw(tag)}, .Status = Status(source)};
    for (const auto& [key, value] : configured)
        trace_.Add(key + "=" + value);
    trace_.Add("loaded " + std::to_string(model_.IsLoaded()) + ", target " +
               std::to_string(model_.HasTarget()) + ", file open " + std::to_string(model_.FileIsOpen()) +
               ", in doubt " + std::to_string(checks_.InDoubt()));
    BeginCall(expected);
    source.ForbidWriting();
    const T_PDU_ERROR status = session_.Api().PDUConstruct(option, tag);
    if (!folderIsSound)
        expected.MustBeSeen = expected.Seen;
    EndCall(expected, status);
}

void CheckedLogger::Destruct(T_PDU_ERROR status)
{
    checks_.NoteLifecycle();
    ExpectedCall expected{.Name = "PDUDestruct", .Arguments = {}, .Status = status};
    BeginCall(expected);
    EndCall(expected, session_.Api().PDUDestruct());
    if (expected.Seen)
        model_.EndDestruct();
}

CALLBACKFNC CheckedLogger::AnyHandler(RecordSource& source)
{
    return source.Below(4) == 0 ? nullptr : source.Coin() ? FirstHandler : SecondHandler;
}

void CheckedLogger::FirstHandler(T_PDU_EVT_DATA type, UNUM32 hMod, UNUM32 hCLL, void* pCLLTag, void* pAPITag)
{
    running_->OnEvent(FirstHandler, {type, hMod, hCLL, Raw(pCLLTag), Raw(pAPITag)});
}

void CheckedLogger::SecondHandler(T_PDU_EVT_DATA type, UNUM32 hMod, UNUM32 hCLL, void* pCLLTag, void* pAPITag)
{
    running_->OnEvent(SecondHandler, {type, hMod, hCLL, Raw(pCLLTag), Raw(pAPITag)});
}

void CheckedLogger::OnEvent(CALLBACKFNC handler, const std::vector<std::uint64_t>& arguments)
{
    ++eventsSeen_;
    EXPECT_EQ(handler, event_.Handler);
    EXPECT_EQ(arguments, event_.Arguments);
    RunNested();
}

void CheckedLogger::RaiseEvent(RecordSource& source)
{
    if (!trap_)
        return;
    const UNUM32 type = source.Code(EventTypeNames);
    const UNUM32 hMod = source.Below(4) == 0 ? PDU_HANDLE_UNDEF : source.Below(3);
    const UNUM32 hCLL = source.Below(4) == 0 ? PDU_HANDLE_UNDEF : source.Below(3);
    void* const linkTag = source.Bytes(1);
    void* const apiTag = source.Coin() ? source.Bytes(1) : nullptr;
    trace_.Add(std::string(static_cast<std::size_t>(depth_), ' ') + "event");
    const CALLBACKFNC handler = handlers_.HandlerOf(hMod, hCLL);
    const bool passes = model_.HasTarget() && handler;
    const int seen = eventsSeen_;
    source.ForbidWriting();
    const ExpectedEvent former =
        std::exchange(event_, {handler, {type, hMod, hCLL, Raw(linkTag), Raw(apiTag)}});
    if (!model_.HasTarget() && model_.IsLogged())
        checks_.Expect("PDUCallbackTrap - Called but library not loaded!");
    if (passes && model_.IsLogged() && model_.LogsCallbacks())
        checks_.Expect("+ PDUCallbackTrap");
    trap_(type, hMod, hCLL, linkTag, apiTag);
    // The handler may have ended the logger: the exit line needs an open file alone.
    if (passes && model_.IsActive() && model_.FileIsOpen() && model_.LogsCallbacks())
        checks_.Expect("- PDUCallbackTrap");
    EXPECT_EQ(eventsSeen_ > seen, passes);
    event_ = former;
}

void CheckedLogger::Report(RecordSource& source)
{
    if (!comms_)
        return;
    const std::string text = "report " + std::to_string(++reports_);
    trace_.Add(std::string(static_cast<std::size_t>(depth_), ' ') + text);
    std::vector<LogParameter> parameters;
    for (UNUM32 i = source.Below(4); i != 0; --i) {
        if (source.Coin())
            parameters.push_back({0x1000, 0, "A number", source.Bytes(4)});
        else
            parameters.push_back(
                {0x1002, 0, "Bytes", source.New(LogParameterBytes{.Length = 40, .Bytes = source.Bytes(40)})});
    }
    using CommsPlace = LoggerModel::CommsPlace;
    if (model_.IsActive() && model_.FileIsOpen() && model_.Comms() != CommsPlace::OwnFile)
        checks_.Expect(text, model_.Comms() == CommsPlace::Unknown);
    const auto count = static_cast<UNUM32>(parameters.size());
    CHAR8* const message = source.NewList(text.c_str(), text.size() + 1);
    LogParameter* const list = source.NewList(parameters.data(), parameters.size());
    const UNUM32 protocol = 255 + source.Below(5);
    const bool isSent = source.Coin();
    source.ForbidWriting();
    EXPECT_EQ(comms_(message, isSent, protocol, count, list), 0u);
}

} // namespace marvane::testing
