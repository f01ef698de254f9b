// The target library of the benchmark: has all functions, and each does next to nothing.
#pragma once

#include "pdu/pdu_api.h"

extern "C" {
/// The callbacks that the logger library has registered.
PDU_API CALLBACKFNC PDUBenchEventCallback();
PDU_API PDU_MS_LOG_CALLBACK PDUBenchLogCallback();
PDU_API T_PDU_ERROR PDU_CALL PDU_MS_SetLogCallback(PDU_MS_LOG_CALLBACK callback);
}
