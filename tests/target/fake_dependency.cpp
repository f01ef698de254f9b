// A library that one of the fake targets needs, and that lies beside it and nowhere else.
#include "pdu/pdu_api.h"

extern "C" {
PDU_API UNUM32 PDUFakeDependency();
}

UNUM32 PDUFakeDependency()
{
    return 4711;
}
