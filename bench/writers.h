// What Marvane is compared with: the least that any logger has to do, and a common logging library.
#pragma once

#include <memory>
#include <string>
#include <vector>

namespace marvane::bench {

/// The text of one call, one string for each phase: what is written at once.
using Phases = std::vector<std::string>;

/// Writes the phases of a call that are ready already: clock, lock, fwrite, flush if so wanted.
class FloorWriter
{
public:
    FloorWriter(Phases phases, bool flush);
    ~FloorWriter();
    void Write(std::size_t phase);
    std::size_t PhaseCount() const;

private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

#ifdef MARVANE_BENCH_SPDLOG
/// Writes the same lines by spdlog's synchronous file logger.
class SpdlogWriter
{
public:
    SpdlogWriter(Phases phases, bool flush);
    ~SpdlogWriter();
    /// The two lines of a call of PDULockResource, formatted from its arguments.
    void WriteLockEntry(unsigned hMod, unsigned hCLL, unsigned mask);
    void WriteLockExit(unsigned status);
    /// The lines of a phase, their text ready but for the stamp.
    void Write(std::size_t phase);
    std::size_t PhaseCount() const;

private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};
#endif

} // namespace marvane::bench
