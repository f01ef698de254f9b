#include "tests/command/sample_log.h"

namespace marvane::testing {

std::string LogLine(unsigned second, const std::string& text)
{
    const std::string digits = (second < 10 ? "0" : "") + std::to_string(second);
    return "{14:03:" + digits + ".000 - 00001A2C} " + text + "\n";
}

std::string LogCall(unsigned second, const std::string& name, const std::string& arguments)
{
    return LogLine(second, "+ " + name + "(" + arguments + ")") +
           LogLine(second, "- " + name + "<PDU_STATUS_NOERROR (0x0000)>");
}

std::string SampleLog()
{
    return LogLine(0, "########## INITIALISE ##########") +
           LogLine(0, "########## D-PDU API LOGGER VERSION: R01.000.0000.0000 ##########") +
           LogLine(0, "LogHeader{Loaded=0}") +
           LogLine(0, "Config setting: LogFnCalls           =         2 (0x00000002)") +
           LogCall(1, "PDUConstruct", "OptionStr=\"\", pAPITag=0x0") +
           LogLine(2, "+ PDULockResource(hMod=0x00000001, hCLL=0x00000002, LockMask=1)") +
           LogLine(2, "- PDULockResource<PDU_ERR_RSC_LOCKED_BY_OTHER_CLL (0x00A1)>") +
           LogCall(3, "PDUModuleConnect", "hMod=0x00000001") + LogCall(4, "PDUDestruct");
}

} // namespace marvane::testing
