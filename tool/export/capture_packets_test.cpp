#include "tool/export/capture_packets.h"

#include <array>
#include <memory>

#include <gtest/gtest.h>

#include "pdu/pdu_api.h"

namespace marvane::tool::pcapng {
namespace {

using Data = std::vector<std::uint8_t>;

read::Link LinkOf(const std::string& protocol)
{
    read::Link link;
    link.Protocol = protocol;
    return link;
}

const read::Link Uds = LinkOf("ISO_15765_3_on_ISO_15765_2");

read::Exchange RequestOn(const read::Link& link, const Data& bytes)
{
    read::Exchange request;
    request.Seq = 7;
    request.On = std::make_shared<read::Link>(link);
    request.Type = PDU_COPT_SENDRECV;
    request.TypeName = "PDU_COPT_SENDRECV";
    request.Request = bytes;
    request.RequestSize = bytes.size();
    request.IsRequestKnown = true;
    return request;
}

/// All that a test compares, a field after the other.
std::string TextOf(const QueuedPacket& packet)
{
    const bool isText = packet.Dissector == "syslog";
    std::string text(packet.Dissector);
    text += packet.Protocol.empty() ? "" : " " + packet.Protocol;
    text += packet.Direction == Way::Sent ? " sent" : packet.Direction == Way::Received ? " received" : "";
    text += " " + std::to_string(packet.Payload.size()) + " of " + std::to_string(packet.Size) + " | " +
            packet.Comment;
    return isText ? text + " | " + std::string(packet.Payload.begin(), packet.Payload.end()) : text;
}

TEST(CapturePackets, ARequestIsForTheDissectorOfItsProtocol)
{
    read::Exchange request = RequestOn(Uds, {0x22, 0xF1, 0x90});
    request.Primitive = 5;
    const QueuedPacket packet = RequestPacket(request, "line 3");
    EXPECT_EQ(TextOf(packet), "uds sent 3 of 3 | read identifier, hCoP 5, line 3");
    EXPECT_EQ(packet.Request, 7u);
    EXPECT_EQ(TextOf(RequestPacket(RequestOn(LinkOf("Vendor"), {0x01, 0x02}), "line 3")),
              "data Vendor sent 2 of 2 | line 3");
    EXPECT_EQ(TextOf(RequestPacket(RequestOn(Uds, {0x22}), "line 3")), // too short for its dissector
              "data UDS sent 1 of 1 | read identifier, line 3");
}

TEST(CapturePackets, ACyclicRequestSaysHowOftenItIsSent)
{
    read::Exchange request = RequestOn(Uds, {0x3E, 0x80});
    request.SendCycles = -1;
    EXPECT_EQ(RequestPacket(request, "line 3").Comment, "tester present, sent until it is cancelled, line 3");
    request.SendCycles = 3;
    EXPECT_EQ(RequestPacket(request, "line 3").Comment, "tester present, 3 cycles, line 3");
}

TEST(CapturePackets, ARequestWithoutItsBytesIsAText)
{
    read::Exchange request = RequestOn(Uds, {});
    request.RequestSize = 3;
    EXPECT_EQ(TextOf(RequestPacket(request, "line 3")),
              "syslog 47 of 47 | line 3 | <134>PDU_COPT_SENDRECV: 3 bytes, not in the log");
    request.RequestSize = 0;
    request.IsRequestKnown = false;
    request.TypeName = "";
    EXPECT_EQ(TextOf(RequestPacket(request, "line 3")),
              "syslog 47 of 47 | line 3 | <134>ComPrimitive: its bytes are not in the log");
}

TEST(CapturePackets, AnAnswerSaysWhatItRefusesAndWhoseItIs)
{
    read::Answer answer;
    answer.Data = {0x7F, 0x22, 0x31};
    answer.Size = 3;
    answer.Nrc = 0x31;
    answer.From = 2;
    EXPECT_EQ(TextOf(AnswerPacket(Uds, answer, "answer to %", "line 9")),
              "uds received 3 of 3 | answer to %, requestOutOfRange, response identifier 2, line 9");
}

TEST(CapturePackets, WhatTheLogCutKeepsItsSize)
{
    read::Answer answer;
    answer.Data = {0x62, 0xF1};
    answer.Size = 40;
    EXPECT_EQ(TextOf(AnswerPacket(Uds, answer, "answer to %", "line 9")),
              "uds received 2 of 40 | answer to %, line 9");
    answer.Data.clear();
    EXPECT_EQ(TextOf(AnswerPacket(Uds, answer, "answer to %", "line 9")),
              "syslog received 37 of 37 | answer to %, line 9 | <134>answer without bytes: (40 bytes)");
}

QueuedPacket PacketOfReport(const Data& bytes, std::string_view protocol, std::uint64_t size)
{
    read::Comms report;
    report.Way = Direction::FromTarget;
    report.Protocol = protocol;
    report.Title = "Answer";
    report.Address = 0x7E8;
    report.Data.Shown = bytes;
    report.Data.Size = size;
    return ReportPacket(report, "line 4");
}

TEST(CapturePackets, AReportOfAWholeDoIpMessageIsForItsDissector)
{
    const Data message = {0x02, 0xFD, 0x80, 0x01, 0, 0, 0, 6, 0x0E, 0x80, 0x10, 0x10, 0x3E, 0x00};
    const std::string comment = " | Answer, address 0x7E8, line 4";
    EXPECT_EQ(TextOf(PacketOfReport(message, "[DoIP]", 14)), "doip received 14 of 14" + comment);
    EXPECT_EQ(TextOf(PacketOfReport(message, "[DoIP]", 15)), "data [DoIP] received 14 of 15" + comment);
    Data other = message;
    other[7] = 7; // a length that does not fit
    EXPECT_EQ(TextOf(PacketOfReport(other, "", 14)), "data Answer received 14 of 14" + comment);
    EXPECT_EQ(TextOf(PacketOfReport({}, "", 0)), "syslog received 11 of 11" + comment + " | <134>Answer");
}

TEST(CapturePackets, AFailedStartHasItsErrorAndItsRequest)
{
    const std::array lines = {read::CallLine{
        4,
        "   -->  pCoPData       |00000000 <22 F1 90>                                         \"..          "
        "   |"}};
    read::Call call;
    call.Which = read::Function::StartComPrimitive;
    call.Arguments = "CoPDataSize=3";
    call.LinesIn = lines;
    EXPECT_EQ(FailureText(call), "PDUStartComPrimitive: entered, never returned: 22 F1 90");
    call.State = read::CallState::Returned;
    call.Status = 0x70;
    call.StatusName = "PDU_ERR_TX_QUEUE_FULL";
    EXPECT_EQ(FailureText(call), "PDUStartComPrimitive: PDU_ERR_TX_QUEUE_FULL (0x0070): 22 F1 90");
    call.State = read::CallState::NotLoaded;
    EXPECT_EQ(FailureText(call), "PDUStartComPrimitive: the library is not loaded");
    call.State = read::CallState::Cut;
    EXPECT_EQ(FailureText(call), "PDUStartComPrimitive: the log lost its status");
}

} // namespace
} // namespace marvane::tool::pcapng
