// The loggers that Marvane is compared with: a minimal one, and spdlog.
#pragma once

#include <memory>
#include <string>
#include <vector>

namespace marvane::bench {

/// The text of one call, one string for each phase, which is written at once.
using Phases = std::vector<std::string>;

/// Writes prepared phases of a call: clock, lock, fwrite, and a flush if requested.
class FloorWriter
{
public:
    FloorWriter(const Phases& phases, bool flush);
    ~FloorWriter();
    void Write(std::size_t phase);
    std::size_t PhaseCount() const;

private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

#ifdef MARVANE_BENCH_SPDLOG
/// Writes the same lines with spdlog's synchronous file logger.
class SpdlogWriter
{
public:
    SpdlogWriter(Phases phases, bool flush);
    ~SpdlogWriter();
    /// The two lines of a call of PDULockResource, formatted from its arguments.
    void WriteLockEntry(unsigned hMod, unsigned hCLL, unsigned mask);
    void WriteLockExit(unsigned status);
    /// Writes the lines of a phase, complete except for the stamp.
    void Write(std::size_t phase);
    std::size_t PhaseCount() const;

private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};
#endif

} // namespace marvane::bench
