#include "examples/diag_session/io_control.h"

namespace diag {

void Command(Session& session, const char* command, UNUM32 hCLL, T_PDU_IT type, void* data)
{
    PDU_DATA_ITEM input = {.ItemType = type, .pData = data};
    session.Expect(command,
                   session.Pdu.PDUIoCtl(session.Module, hCLL, session.IdOf(PDU_OBJT_IO_CTRL, command),
                                        data ? &input : nullptr, nullptr));
}

PDU_DATA_ITEM* Output(Session& session, const char* command, UNUM32 hCLL)
{
    PDU_DATA_ITEM* output = nullptr;
    session.Expect(command, session.Pdu.PDUIoCtl(session.Module, hCLL,
                                                 session.IdOf(PDU_OBJT_IO_CTRL, command), nullptr, &output));
    return output;
}

UNUM32 ReadNumber(Session& session, const char* command)
{
    PDU_DATA_ITEM* const output = Output(session, command, PDU_HANDLE_UNDEF);
    const UNUM32 number = *static_cast<const UNUM32*>(output->pData);
    session.Destroy(output);
    return number;
}

} // namespace diag
