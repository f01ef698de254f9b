// Whole sessions compared with golden logs: the log of a session without what varies from run to run and from
// platform to platform, and the file that it has to equal.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "tests/support/session.h"

namespace marvane::testing {

/// The log of a session in which
/// - the time of a stamp is "time" and thread ids are T1, T2 and so on, in the order in which they appear;
/// - each named address is its name in angle brackets, and a null pointer is <null>;
/// - the folders of the libraries and of the logs, the name of the target library and the version of the
///   logger library are words in angle brackets.
/// Any other difference must fail the comparison.
class GoldenLog
{
public:
    explicit GoldenLog(Session& session);

    /// Names an address that is valid until the end of the test.
    void Name(const void* address, const std::string& name);
    /// Stores a value under a named address until the end of the test.
    template <class Value> Value& Keep(const std::string& name, Value value)
    {
        const auto kept = std::make_shared<Value>(std::move(value));
        kept_.push_back(kept);
        Name(kept.get(), name);
        return *kept;
    }
    /// Stores a string until the end of the test.
    CHAR8* KeepText(const std::string& text)
    {
        const auto kept = std::make_shared<std::string>(text);
        kept_.push_back(kept);
        return kept->data();
    }
    template <class Function> void NameFunction(Function* function, const std::string& name)
    {
        Name(reinterpret_cast<const void*>(function), name);
    }

    /// Expects the session's log so far to equal the golden file of that name, and names the first line that
    /// differs. With MARVANE_WRITE_GOLDEN set to a folder, writes the log there instead, and fails.
    void ExpectEqual(const std::string& name) const;

private:
    std::string Normalised() const;
    std::string WithoutNames(std::string text) const;

    Session& session_;
    std::vector<std::shared_ptr<void>> kept_;
    std::vector<std::pair<std::string, std::string>> words_;
};

/// The fake target's answers by function; functions without one return 0.
class Script
{
public:
    using Answer = std::function<T_PDU_ERROR(const FakeCall&)>;

    explicit Script(Session& session) { Begin(session); }
    /// Becomes the answer of the fake target again, after a test has set another one.
    void Begin(Session& session);

    /// Sets the answer of a function from now on; null for status 0.
    void On(const std::string& function, Answer answer) { answers_[function] = std::move(answer); }
    /// Returns a status.
    void Fail(const std::string& function, T_PDU_ERROR status)
    {
        On(function, [status](const FakeCall&) { return status; });
    }
    /// Writes a value through a pointer argument and returns 0.
    template <class Value> void Give(const std::string& function, std::size_t argument, Value value)
    {
        On(function, [argument, value](const FakeCall& call) {
            Write(call, argument, value);
            return PDU_STATUS_NOERROR;
        });
    }
    template <class Value> static void Write(const FakeCall& call, std::size_t argument, Value value)
    {
        *reinterpret_cast<Value*>(static_cast<std::uintptr_t>(call.Arguments[argument])) = value;
    }

    /// Signals an event. A callback must be registered with the target.
    void Signal(UNUM32 hMod, UNUM32 hCLL, void* linkTag, void* apiTag) const
    {
        trap_(PDU_EVT_DATA_AVAILABLE, hMod, hCLL, linkTag, apiTag);
    }
    /// Reports communication. Only between PDUConstruct and PDUDestruct.
    void Report(const char* text, UNUM8 direction, UNUM32 protocol,
                const std::vector<LogParameter>& values) const
    {
        report_(text, direction, protocol, static_cast<UNUM32>(values.size()), values.data());
    }
    /// True while the target has a comms callback.
    bool CanReport() const { return report_ != nullptr; }

private:
    T_PDU_ERROR Play(const FakeCall& call);

    std::map<std::string, Answer> answers_;
    CALLBACKFNC trap_ = nullptr;
    PDU_MS_LOG_CALLBACK report_ = nullptr;
};

} // namespace marvane::testing
