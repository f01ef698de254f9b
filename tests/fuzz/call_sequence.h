// Random sequences of calls, events, comms reports, reconfigurations and trouble with the log folder, in one
// session with the fake target. CheckedLogger compares what each of them does with a model of the logger.
#pragma once

#include <random>

#include "tests/fuzz/checked_logger.h"
#include "tests/fuzz/random_file_faults.h"
#include "tests/fuzz/troubled_folder.h"

namespace marvane::testing {

class CallSequence
{
public:
    /// The same seed makes the same steps. With `faults`, they apply from the first step on.
    CallSequence(Session& session, std::uint32_t seed, RandomFileFaults* faults = nullptr);
    ~CallSequence();

    /// Runs steps until one fails.
    void Run(int steps);
    /// Makes each of the 29 calls this often with everything decoded, and as many events and reports, until a
    /// check fails.
    void RunEachCall(int rounds, const SequenceSettings& changed = {});

    /// What the logger must have logged.
    const std::vector<SequenceChecks::Mark>& History() { return logger_.Checks().History(); }

    /// What the calls did besides.
    const std::vector<std::string>& Facts() { return logger_.Checks().Facts(); }

    const CheckCounts& Counts() { return logger_.Checks().Counts(); }

private:
    /// Runs one step and checks the log after it.
    void RunStep(const std::function<void()>& step);
    void Step();
    /// Sometimes makes a further step inside the one that runs.
    void Nested();
    std::vector<std::uint8_t> RandomBytes(std::size_t size);

    /// Makes one of the 27 calls between PDUConstruct and PDUDestruct.
    void Call(UNUM32 choice, RecordSource& source);
    void CallModulesAndLinks(UNUM32 choice, RecordSource& source);
    void CallWithRecords(UNUM32 choice, RecordSource& source);
    void CallQueries(UNUM32 choice, RecordSource& source);

    void Construct(RecordSource& source);
    void Destruct();
    void Reconfigure(RecordSource& source);
    void Configure(const SequenceSettings& settings);
    void TroubleFolder(RecordSource& source);
    /// Ends the doubt about what is in the log: a new file in a sound folder.
    void Recover(RecordSource& source);
    void WaitForNextSecond();
    /// Chooses the kind of file faults for the next step. In doubt while they may lose lines.
    void ChooseFaults();
    void StopFailing();
    bool FilesMayFail() const;

    Session& session_;
    std::mt19937 random_;
    CheckedLogger logger_;
    TroubledFolder folder_;
    RandomFileFaults* faults_;
    SequenceSettings configured_;
    int waits_ = 0;
};

} // namespace marvane::testing
