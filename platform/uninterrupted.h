// Keeps what the system does to a thread that writes from the application: cancellation and signals.
#pragma once

#include <cstddef>

namespace marvane::platform {

/// Defers pthread_cancel for a scope: opening, writing and closing files are cancellation points, and a
/// thread that ended in one of them would leave a torn line or no log at all. No-op on Windows.
class CancellationDeferred
{
public:
#ifdef _WIN32
    CancellationDeferred() {}
    ~CancellationDeferred() {}
#else
    CancellationDeferred();
    ~CancellationDeferred();
#endif
    CancellationDeferred(const CancellationDeferred&) = delete;
    CancellationDeferred& operator=(const CancellationDeferred&) = delete;

private:
    [[maybe_unused]] int state_ = 0;
};

/// Holds the signals that a write may raise, SIGXFSZ and SIGPIPE, for a scope, and discards those that the
/// scope raised: by default they end the process. No-op on Windows.
class WriteSignalsHeld
{
public:
#ifdef _WIN32
    WriteSignalsHeld() {}
    ~WriteSignalsHeld() {}
#else
    WriteSignalsHeld();
    ~WriteSignalsHeld();
#endif
    WriteSignalsHeld(const WriteSignalsHeld&) = delete;
    WriteSignalsHeld& operator=(const WriteSignalsHeld&) = delete;

private:
    static constexpr std::size_t MaskSize = 128;
    [[maybe_unused]] alignas(std::max_align_t) unsigned char formerMask_[MaskSize];
    [[maybe_unused]] unsigned char pendingBefore_[MaskSize];
};

/// Both, for writes whose speed does not matter.
class Uninterrupted
{
    CancellationDeferred cancellation_;
    WriteSignalsHeld signals_;
};

} // namespace marvane::platform
