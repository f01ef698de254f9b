// Faults on request: an application, and a reader of logs, can meet a bad interface or control unit without
// one.
#pragma once

#include <chrono>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "pdu/pdu_api.h"

namespace sim {

enum class FaultKind
{
    Slow,     ///< the control unit answers later
    Silent,   ///< the control unit does not answer
    Refuse,   ///< the control unit answers with a negative response code
    Lose,     ///< the event queue overflows: results are lost
    SlowCall, ///< calls take longer
    Crash,    ///< the process ends in a call
    Hang      ///< a call does not return
};

struct Fault
{
    FaultKind Kind = FaultKind::Slow;
    unsigned Value = 0;           ///< milliseconds, response code, or the how many-th time
    std::optional<UNUM8> Service; ///< none: all services
    std::string Function;         ///< empty: all functions
    unsigned Met = 0;             ///< how often there was an occasion for it
};

/// Reads "NAME[:VALUE][@PLACE]", several of them separated by commas; usage in FaultHelp. Returns what is
/// wrong with the text, empty if nothing is.
std::string ReadFaults(std::string_view text, std::vector<Fault>& faults);

/// What goes into the option string and SIMVCI_FAULT.
extern const char* const FaultHelp;

/// The faults from the option string of PDUConstruct ("Fault='slow:30'") and the environment variable
/// SIMVCI_FAULT. Thread-safe.
class Faults
{
public:
    /// Replaces all faults. Returns what is wrong with one of the two, empty if nothing is; then there are
    /// none.
    std::string Take(const CHAR8* optionString);

    /// To be called at the beginning of each exported function, without a lock. May not return.
    void OnCall(std::string_view function);

    /// How much later than usual the control unit answers.
    std::chrono::milliseconds Delay(const std::vector<UNUM8>& request);
    /// True if the control unit ignores a request.
    bool Silences(const std::vector<UNUM8>& request);
    /// The code with which the control unit refuses a request.
    std::optional<UNUM8> Refusal(const std::vector<UNUM8>& request);
    /// True if the next result is to be lost.
    bool LosesResult();

private:
    /// The first fault of a kind that applies to a request; null if there is none. The caller holds mutex_.
    const Fault* FindFault(FaultKind kind, const std::vector<UNUM8>& request) const;

    std::mutex mutex_;
    std::vector<Fault> faults_;
};

extern Faults CurrentFaults;

} // namespace sim
