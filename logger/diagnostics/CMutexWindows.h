// The one implementation of CMutexBase, a recursive mutex of the system, and the log mutex made of it.
#pragma once

#include <string>

#include "logger/diagnostics/CMutexBase.h"
#include "platform/lock.h"

namespace marvane {

/// Recursive: each Lock needs its own Unlock. If the system can't create the mutex, that is reported to the
/// diagnostic log and every wait fails at once.
class CMutexWindows final : public CMutexBase
{
public:
    CMutexWindows();
    ~CMutexWindows() override;

    bool Lock() override;
    bool LockTimed(std::int32_t milliseconds) override;
    bool Unlock() override;

private:
    platform::Mutex Handle = nullptr;
};

/// The one lock of this library: held while a log file is written, measured or changed and while the
/// diagnostic log is, never during a call into the target library or the application. Never
/// destroyed while a thread can still take it.
extern CMutexWindows& LogMutex;

/// Creates LogMutex if that has not been done yet. An object whose constructor calls it may use LogMutex in
/// its destructor too.
void MakeLogMutex();

/// Holds LogMutex for a scope. A failed wait is ignored: logging never fails a call.
class LogMutexHold
{
public:
    LogMutexHold() { LogMutex.Lock(); }
    ~LogMutexHold() { LogMutex.Unlock(); }
    LogMutexHold(const LogMutexHold&) = delete;
    LogMutexHold& operator=(const LogMutexHold&) = delete;
};

/// Copy of a string that LogMutex guards.
inline std::string CopyGuarded(const std::string& text)
{
    LogMutexHold hold;
    return text;
}

} // namespace marvane
