// What becomes of the texts of the whole process when the library ends.
#pragma once

#include <utility>

#include "logger/diagnostics/CMutexWindows.h"
#include "logger/state/settings.h"

namespace marvane {

/// Empties a lasting object if the library ends with the logger down, so that one that is unloaded leaves
/// nothing behind. With the logger up it is the process that ends, and its threads may still need the texts.
template <class Object> class GivenBack
{
public:
    explicit GivenBack(Object& lasting) : lasting_(lasting) { MakeLogMutex(); }
    ~GivenBack()
    {
        LogMutexHold hold;
        if (IsLoaded())
            return;
        // An assignment would keep the memory for texts to come.
        Object empty;
        std::swap(lasting_, empty);
    }
    GivenBack(const GivenBack&) = delete;
    GivenBack& operator=(const GivenBack&) = delete;

private:
    Object& lasting_;
};

} // namespace marvane
