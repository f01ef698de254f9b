// The steps on a link: parameters, and the talk with the control unit.
#include <cstring>

#include "examples/diag_session/session.h"

namespace diag {

UNUM32 OpenLink(Session& session, const char* busType, const char* protocol, std::vector<PDU_PIN_DATA> pins)
{
    PDU_RSC_DATA resource = {session.IdOf(PDU_OBJT_BUSTYPE, busType), session.IdOf(PDU_OBJT_PROTOCOL, protocol),
                             static_cast<UNUM32>(pins.size()), pins.data()};
    UNUM8 flag = 0x40;
    PDU_FLAG_DATA flags = {1, &flag};
    UNUM32 hCLL = PDU_HANDLE_UNDEF;
    session.Expect("PDUCreateComLogicalLink",
                   session.Pdu.CreateComLogicalLink(session.Module, &resource, PDU_ID_UNDEF, &session, &hCLL, &flags));
    session.Expect("PDURegisterEventCallback",
                   session.Pdu.RegisterEventCallback(session.Module, hCLL, Session::OnEvent));
    session.Expect("PDUConnect", session.Pdu.Connect(session.Module, hCLL));
    session.Say("Link %u for %s is connected", static_cast<unsigned>(hCLL), protocol);
    return hCLL;
}

void CloseLink(Session& session, UNUM32 hCLL)
{
    session.Expect("PDUDisconnect", session.Pdu.Disconnect(session.Module, hCLL));
    session.Expect("PDURegisterEventCallback", session.Pdu.RegisterEventCallback(session.Module, hCLL, nullptr));
    session.Expect("PDUDestroyComLogicalLink", session.Pdu.DestroyComLogicalLink(session.Module, hCLL));
}

namespace {

constexpr const char* ParameterNames[] = {
    "CP_RepeatReqCountApp", "CP_TemperatureOffset", "CP_P2Max",         "CP_TimeOffset",
    "CP_Baudrate",          "CP_ClockDrift",        "CP_TesterPresentMessage", "CP_CanPhysReqIdList",
    "CP_SessionTiming_Ecu", "CP_AccessTiming_Ecu"};

void SetResponseTable(Session& session, UNUM32 hCLL)
{
    UNUM32 canId = 0x7E8;
    PDU_PARAM_ITEM parameter = {PDU_IT_PARAM, session.IdOf(PDU_OBJT_COMPARAM, "CP_CanRespUSDTId"), PDU_PT_UNUM32,
                                PDU_PC_UNIQUE_ID, &canId};
    PDU_ECU_UNIQUE_RESP_DATA entry = {7, 1, &parameter};
    PDU_UNIQUE_RESP_ID_TABLE_ITEM table = {PDU_IT_UNIQUE_RESP_ID_TABLE, 1, &entry};
    session.Expect("PDUSetUniqueRespIdTable", session.Pdu.SetUniqueRespIdTable(session.Module, hCLL, &table));
    PDU_UNIQUE_RESP_ID_TABLE_ITEM* back = nullptr;
    session.Expect("PDUGetUniqueRespIdTable", session.Pdu.GetUniqueRespIdTable(session.Module, hCLL, &back));
    session.Destroy(back);
}

} // namespace

void UseParameters(Session& session, UNUM32 hCLL)
{
    for (const char* name : ParameterNames)
    {
        PDU_PARAM_ITEM* item = nullptr;
        session.Expect("PDUGetComParam",
                       session.Pdu.GetComParam(session.Module, hCLL, session.IdOf(PDU_OBJT_COMPARAM, name), &item));
        session.Expect("PDUSetComParam", session.Pdu.SetComParam(session.Module, hCLL, item));
        session.Destroy(item);
    }
    SetResponseTable(session, hCLL);
    session.Expect("PDULockResource", session.Pdu.LockResource(session.Module, hCLL, 1));
    session.Run(hCLL, PDU_COPT_UPDATEPARAM, {});
    session.Expect("PDUUnlockResource", session.Pdu.UnlockResource(session.Module, hCLL, 1));
    session.Say("Parameters read, written back and in force: %u", static_cast<unsigned>(std::size(ParameterNames)));
}

namespace {

void ReadIdentification(Session& session, UNUM32 hCLL)
{
    const Bytes vin = session.Ask(hCLL, {0x22, 0xF1, 0x90}, {.ExtraInfo = true});
    session.Say("VIN: %s", std::string(vin.begin() + 3, vin.end()).c_str());
    const Bytes part = session.Ask(hCLL, {0x22, 0xF1, 0x87});
    session.Say("Part number: %s", std::string(part.begin() + 3, part.end()).c_str());
    const Bytes codes = session.Ask(hCLL, {0x19, 0x02, 0xFF});
    for (std::size_t at = 3; at + 4 <= codes.size(); at += 4)
        session.Say("Trouble code %02X%02X%02X, state %02X", codes[at], codes[at + 1], codes[at + 2], codes[at + 3]);
}

void MeetRefusals(Session& session, UNUM32 hCLL)
{
    const Outcome refused = session.Run(hCLL, PDU_COPT_SENDRECV, {0x22, 0xFF, 0xFF});
    session.Say("An unknown identifier is refused: %s", Hex(refused.Answers.at(0)).c_str());
    const Outcome silent = session.Run(hCLL, PDU_COPT_SENDRECV, {0xBA, 0x00});
    session.Say("An unknown service: %s", silent.TimedOut ? "no answer in time" : "answered");
    T_PDU_ERR_EVT error = 0;
    UNUM32 hCoP = 0, time = 0, extra = 0;
    session.Expect("PDUGetLastError",
                   session.Pdu.GetLastError(session.Module, hCLL, &error, &hCoP, &time, &extra));
    session.Say("  the last error of the link is 0x%04X", static_cast<unsigned>(error));
}

void Program(Session& session, UNUM32 hCLL)
{
    session.Ask(hCLL, {0x10, 0x02});
    const Bytes seed = session.Ask(hCLL, {0x27, 0x01});
    const Outcome wrong = session.Run(hCLL, PDU_COPT_SENDRECV, {0x27, 0x02, 0, 0, 0, 0});
    session.Say("A wrong key is refused: %s", Hex(wrong.Answers.at(0)).c_str());
    Bytes key = {0x27, 0x02};
    for (std::size_t i = 2; i < seed.size(); ++i)
        key.push_back(static_cast<UNUM8>(seed[i] ^ 0xA5));
    session.Ask(hCLL, key);
    session.Say("Access granted");

    const Outcome routine = session.Run(hCLL, PDU_COPT_SENDRECV, {0x31, 0x01, 0xFF, 0x00});
    session.Say("Memory erased, after %u answers", static_cast<unsigned>(routine.Answers.size()));
    session.Ask(hCLL, {0x34, 0x00, 0x44, 0x00, 0x01, 0x00, 0x00, 0x00, 0x00, 0x00, 0x80});
    Bytes block = {0x36, 0x01};
    for (UNUM8 i = 0; i < 128; ++i)
        block.push_back(i);
    session.Ask(hCLL, block);
    session.Ask(hCLL, {0x37});
    session.Say("Downloaded: 128 bytes");
}

void KeepAlive(Session& session, UNUM32 hCLL)
{
    const Outcome cycles = session.Run(hCLL, PDU_COPT_SENDRECV, {0x3E, 0x00}, {.Time = 10, .Cycles = 3, .ReceiveCycles = -2});
    session.Say("Tester present, three cycles: %u answers", static_cast<unsigned>(cycles.Answers.size()));
    const UNUM32 hCoP =
        session.Start(hCLL, PDU_COPT_SENDRECV, {0x3E, 0x80}, {.Time = 20, .Cycles = -1, .ReceiveCycles = 0});
    session.Run(hCLL, PDU_COPT_DELAY, {}, {.Time = 30});
    session.Expect("PDUCancelComPrimitive", session.Pdu.CancelComPrimitive(session.Module, hCLL, hCoP));
    session.Wait(hCLL, hCoP);
    session.Say("Endless tester present: cancelled");
}

} // namespace

void Diagnose(Session& session, UNUM32 hCLL)
{
    session.Run(hCLL, PDU_COPT_STARTCOMM, {});
    ReadIdentification(session, hCLL);
    MeetRefusals(session, hCLL);
    Program(session, hCLL);
    KeepAlive(session, hCLL);
    session.Run(hCLL, PDU_COPT_RESTORE_PARAM, {});
    session.Run(hCLL, PDU_COPT_STOPCOMM, {});
}

} // namespace diag
