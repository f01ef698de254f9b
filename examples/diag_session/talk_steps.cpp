// The conversation with the control unit: identification, trouble codes, refusals, programming, tester
// present.
#include "examples/diag_session/session.h"

namespace diag {

namespace {

void ReadIdentification(Session& session, UNUM32 hCLL)
{
    const Bytes vin = session.Ask(hCLL, {0x22, 0xF1, 0x90}, {.ExtraInfo = true});
    session.Say("VIN: %s", std::string(vin.begin() + 3, vin.end()).c_str());
    const Bytes part = session.Ask(hCLL, {0x22, 0xF1, 0x87});
    session.Say("Part number: %s", std::string(part.begin() + 3, part.end()).c_str());
    const Bytes codes = session.Ask(hCLL, {0x19, 0x02, 0xFF});
    for (std::size_t at = 3; at + 4 <= codes.size(); at += 4)
        session.Say("Trouble code %02X%02X%02X, state %02X", codes[at], codes[at + 1], codes[at + 2],
                    codes[at + 3]);
}

void MeetRefusals(Session& session, UNUM32 hCLL)
{
    const Outcome refused = session.Run(hCLL, PDU_COPT_SENDRECV, {0x22, 0xFF, 0xFF});
    session.Say("An unknown identifier is refused: %s", FirstAnswer(refused).c_str());
    const Outcome silent = session.Run(hCLL, PDU_COPT_SENDRECV, {0xBA, 0x00});
    session.Say("An unknown service: %s", silent.TimedOut ? "no answer in time" : "answered");
    T_PDU_ERR_EVT error = 0;
    UNUM32 hCoP = 0, time = 0, extra = 0;
    session.Expect("PDUGetLastError",
                   session.Pdu.PDUGetLastError(session.Module, hCLL, &error, &hCoP, &time, &extra));
    session.Say("  the last error of the link is 0x%04X", static_cast<unsigned>(error));
}

void Unlock(Session& session, UNUM32 hCLL)
{
    session.Ask(hCLL, {0x10, 0x02});
    const Bytes seed = session.Ask(hCLL, {0x27, 0x01});
    const Outcome wrong = session.Run(hCLL, PDU_COPT_SENDRECV, {0x27, 0x02, 0, 0, 0, 0});
    session.Say("A wrong key is refused: %s", FirstAnswer(wrong).c_str());
    Bytes key = {0x27, 0x02};
    for (std::size_t i = 2; i < seed.size(); ++i)
        key.push_back(static_cast<UNUM8>(seed[i] ^ 0xA5));
    session.Ask(hCLL, key);
    session.Say("Access granted");
}

void Program(Session& session, UNUM32 hCLL)
{
    // Erasing is slow: allow more time for the answer to this request.
    SetP2Max(session, hCLL, 5000);
    const Outcome routine =
        session.Run(hCLL, PDU_COPT_SENDRECV, {0x31, 0x01, 0xFF, 0x00}, {.TemporaryParameters = true});
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
    const Outcome cycles =
        session.Run(hCLL, PDU_COPT_SENDRECV, {0x3E, 0x00}, {.Time = 10, .Cycles = 3, .ReceiveCycles = -2});
    session.Say("Tester present, three cycles: %u answers", static_cast<unsigned>(cycles.Answers.size()));
    const UNUM32 hCoP = session.Start(hCLL, PDU_COPT_SENDRECV, {0x3E, 0x80},
                                      {.Time = 20, .Cycles = -1, .ReceiveCycles = 0, .SuppressAnswer = true});
    session.Run(hCLL, PDU_COPT_DELAY, {}, {.Time = 30});
    session.Say("Endless tester present: %s", session.StatusOf(hCLL, hCoP));
    session.Expect("PDUCancelComPrimitive", session.Pdu.PDUCancelComPrimitive(session.Module, hCLL, hCoP));
    const Outcome endless = session.Wait(hCLL, hCoP);
    session.Say("  then %s", endless.Status == PDU_COPST_CANCELLED ? "cancelled" : "ended");
}

} // namespace

void Diagnose(Session& session, UNUM32 hCLL)
{
    session.Run(hCLL, PDU_COPT_STARTCOMM, {});
    session.Say("State of the link: %s", session.StatusOf(hCLL));
    ReadIdentification(session, hCLL);
    MeetRefusals(session, hCLL);
    Unlock(session, hCLL);
    Program(session, hCLL);
    KeepAlive(session, hCLL);
    session.Run(hCLL, PDU_COPT_RESTORE_PARAM, {});
    session.Run(hCLL, PDU_COPT_STOPCOMM, {});
    session.Say("Parameters restored, communication stopped");
}

} // namespace diag
