// The scriptable target library of the end-to-end tests: it passes every call to a hook of the test.
#pragma once

#include <cstddef>
#include <cstdint>

#include "pdu/pdu_api.h"

/// One call as received: name and raw arguments in order.
struct FakeCall
{
    const char* Function;
    std::size_t Count;
    std::uint64_t Arguments[8];
};

/// Shared by the test and the fake target. Plain data, since each may have a runtime library of its own.
struct FakeTargetControl
{
    /// Returns the status of a call; may write through pointer arguments. If null, the status is 0.
    T_PDU_ERROR (*OnCall)(void* context, const FakeCall* call);
    void* Context;
};

/// The only exported function that is not part of the API.
using GetFakeTargetControl_t = FakeTargetControl* (*)();
