#include "examples/sim_vci/faults.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <thread>

namespace sim {

namespace {

using std::chrono::milliseconds;

[[noreturn]] void Crash()
{
    // The handlers of the application, of a sanitizer for instance, are not to make an orderly end of it.
    std::signal(SIGSEGV, SIG_DFL);
    std::raise(SIGSEGV);
    std::abort();
}

[[noreturn]] void Hang()
{
    for (;;)
        std::this_thread::sleep_for(std::chrono::hours(1));
}

/// The value of Fault='...' in an option string; empty if there is none.
std::string_view FaultOption(std::string_view options)
{
    constexpr std::string_view name = "Fault='";
    const std::size_t at = options.find(name);
    if (at == std::string_view::npos)
        return {};
    const std::string_view value = options.substr(at + name.size());
    return value.substr(0, value.find('\''));
}

} // namespace

std::string Faults::Take(const CHAR8* optionString)
{
    std::vector<Fault> faults;
    const char* const variable = std::getenv("SIMVCI_FAULT");
    std::string wrong = ReadFaults(FaultOption(optionString ? optionString : ""), faults);
    if (wrong.empty() && variable)
        wrong = ReadFaults(variable, faults);
    if (!wrong.empty())
        faults.clear();
    const std::lock_guard hold(mutex_);
    faults_ = std::move(faults);
    return wrong;
}

void Faults::OnCall(std::string_view function)
{
    milliseconds pause(0);
    FaultKind end = FaultKind::SlowCall;
    {
        const std::lock_guard hold(mutex_);
        for (Fault& fault : faults_) {
            if (fault.Kind < FaultKind::SlowCall || (!fault.Function.empty() && fault.Function != function))
                continue;
            if (fault.Kind == FaultKind::SlowCall)
                pause += milliseconds(fault.Value);
            else if (++fault.Met == fault.Value)
                end = fault.Kind;
        }
    }
    if (pause.count() != 0)
        std::this_thread::sleep_for(pause);
    if (end == FaultKind::Crash)
        Crash();
    if (end == FaultKind::Hang)
        Hang();
}

const Fault* Faults::FindFault(FaultKind kind, const std::vector<UNUM8>& request) const
{
    const auto found = std::find_if(faults_.begin(), faults_.end(), [&](const Fault& fault) {
        return fault.Kind == kind && (!fault.Service || (!request.empty() && request[0] == *fault.Service));
    });
    return found == faults_.end() ? nullptr : &*found;
}

milliseconds Faults::Delay(const std::vector<UNUM8>& request)
{
    const std::lock_guard hold(mutex_);
    const Fault* const fault = FindFault(FaultKind::Slow, request);
    return milliseconds(fault ? fault->Value : 0);
}

bool Faults::Silences(const std::vector<UNUM8>& request)
{
    const std::lock_guard hold(mutex_);
    return FindFault(FaultKind::Silent, request) != nullptr;
}

std::optional<UNUM8> Faults::Refusal(const std::vector<UNUM8>& request)
{
    const std::lock_guard hold(mutex_);
    const Fault* const fault = FindFault(FaultKind::Refuse, request);
    return fault ? std::optional(static_cast<UNUM8>(fault->Value)) : std::nullopt;
}

bool Faults::LosesResult()
{
    const std::lock_guard hold(mutex_);
    bool loses = false;
    for (Fault& fault : faults_)
        if (fault.Kind == FaultKind::Lose)
            loses |= ++fault.Met % fault.Value == 0;
    return loses;
}

} // namespace sim
