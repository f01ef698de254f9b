// The one implementation of CMutexBase, a recursive mutex of the system, and the log mutex made of it.
#pragma once

#include <string>

#include "logger/diagnostics/CMutexBase.h"
#include "platform/lock.h"

namespace marvane {

/// Recursive: each taking needs its own release. If the system refuses to make the mutex, that is reported
/// to the diagnostic log and every wait fails at once.
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
/// diagnostic log is, never during a call into the target library or the application. Usable as long as there
/// is a thread to use it.
extern CMutexWindows& LogMutex;

/// Makes LogMutex if that has not been done yet. An object whose constructor calls it may use LogMutex in its
/// destructor too.
void MakeLogMutex();

/// Holds LogMutex for a scope. A wait that fails is not looked at: logging never fails a call.
class LogMutexHold
{
public:
    LogMutexHold() { LogMutex.Lock(); }
    ~LogMutexHold() { LogMutex.Unlock(); }
    LogMutexHold(const LogMutexHold&) = delete;
    LogMutexHold& operator=(const LogMutexHold&) = delete;
};

/// Copy of a text that LogMutex guards.
inline std::string CopyGuarded(const std::string& text)
{
    LogMutexHold hold;
    return text;
}

} // namespace marvane
