// Steps that open, share and close links.
#include "examples/diag_session/session.h"

namespace diag {

UNUM32 OpenLink(Session& session, const char* busType, const char* protocol, std::vector<PDU_PIN_DATA> pins)
{
    PDU_RSC_DATA resource = {.BusTypeId = session.IdOf(PDU_OBJT_BUSTYPE, busType),
                             .ProtocolId = session.IdOf(PDU_OBJT_PROTOCOL, protocol),
                             .NumPinData = static_cast<UNUM32>(pins.size()),
                             .pDLCPinData = pins.data()};
    UNUM8 checksumMode = 0x40;
    PDU_FLAG_DATA flags = {.NumFlagBytes = 1, .pFlagData = &checksumMode};
    UNUM32 hCLL = PDU_HANDLE_UNDEF;
    session.Expect("PDUCreateComLogicalLink",
                   session.Pdu.PDUCreateComLogicalLink(session.Module, &resource, PDU_ID_UNDEF, &session,
                                                       &hCLL, &flags));
    session.Expect("PDURegisterEventCallback",
                   session.Pdu.PDURegisterEventCallback(session.Module, hCLL, Session::OnEvent));
    session.Expect("PDUConnect", session.Pdu.PDUConnect(session.Module, hCLL));
    session.Say("Link %u for %s is %s", static_cast<unsigned>(hCLL), protocol, session.StatusOf(hCLL));
    return hCLL;
}

void CloseLink(Session& session, UNUM32 hCLL)
{
    session.Expect("PDUDisconnect", session.Pdu.PDUDisconnect(session.Module, hCLL));
    session.Say("Link %u is %s", static_cast<unsigned>(hCLL), session.StatusOf(hCLL));
    session.Expect("PDURegisterEventCallback",
                   session.Pdu.PDURegisterEventCallback(session.Module, hCLL, nullptr));
    session.Expect("PDUDestroyComLogicalLink", session.Pdu.PDUDestroyComLogicalLink(session.Module, hCLL));
}

void ShareResource(Session& session, UNUM32 owner)
{
    const UNUM32 resource = session.IdOf(PDU_OBJT_RESOURCE, "ISO15765_CAN_6_14");
    UNUM8 rawMode = 0x80;
    PDU_FLAG_DATA flags = {.NumFlagBytes = 1, .pFlagData = &rawMode};
    UNUM32 other = PDU_HANDLE_UNDEF;
    session.Expect(
        "PDUCreateComLogicalLink",
        session.Pdu.PDUCreateComLogicalLink(session.Module, nullptr, resource, &session, &other, &flags));
    session.Say("A second link, number %u, shares the resource:", static_cast<unsigned>(other));
    ShowResourceStatus(session, resource);
    session.Expect("PDULockResource", session.Pdu.PDULockResource(session.Module, other, 1),
                   PDU_ERR_RSC_LOCKED_BY_OTHER_CLL);
    session.Say("  it can't lock the parameters too");
    session.Expect("PDUDestroyComLogicalLink", session.Pdu.PDUDestroyComLogicalLink(session.Module, other));
    session.Expect("PDUUnlockResource", session.Pdu.PDUUnlockResource(session.Module, owner, 1));
    session.DrainModuleEvents();
}

} // namespace diag
