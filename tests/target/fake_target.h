// The scriptable target library of the end-to-end tests: it hands every call to a hook of the test.
#pragma once

#include <cstddef>
#include <cstdint>

#include "pdu/pdu_api.h"

/// One call as it arrived: name and raw arguments in order.
struct FakeCall
{
    const char* Function;
    std::size_t Count;
    std::uint64_t Arguments[8];
};

/// What the test and the fake target share. Plain data, since each has a runtime library of its own.
struct FakeTargetControl
{
    /// Answers a call with its status; may write through pointers among the arguments. None: status 0.
    T_PDU_ERROR (*OnCall)(void* context, const FakeCall* call);
    void* Context;
};

/// The one exported function that is not the API's.
using GetFakeTargetControl_t = FakeTargetControl* (*)();
