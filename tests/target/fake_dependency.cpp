// A library that one of the fake targets needs. It exists only beside that target.
#include "pdu/pdu_api.h"

extern "C" {
PDU_API UNUM32 PDUFakeDependency();
}

UNUM32 PDUFakeDependency()
{
    return 4711;
}
