#include <array>
#include <numeric>
#include <thread>

#include "tests/golden/diagnostic_steps.h"

namespace marvane::testing {

namespace {

/// The application's side of a link: the tag and the handle of its ComPrimitives.
struct Caller
{
    explicit Caller(Stage& stage)
        : Tag(stage.log.Keep("primitive tag", int())), Handle(stage.log.Keep("primitive", UNUM32()))
    {
    }

    int& Tag;
    UNUM32& Handle;
};

void StartCommunication(Stage& stage, const Caller& caller)
{
    auto& control =
        stage.log.Keep<PDU_COP_CTRL_DATA>("control of the start", {0, 1, 1, 0, {0, nullptr}, 0, nullptr});
    stage.script.Give<UNUM32>("PDUStartComPrimitive", 7, 8);
    stage.api.PDUStartComPrimitive(1, 2, PDU_COPT_STARTCOMM, 0, nullptr, &control, &caller.Tag,
                                   &caller.Handle);
}

/// Sends 40 bytes, so that the dump is cut at its limit of 32.
void SendRequest(Stage& stage, const Caller& caller)
{
    auto& request = stage.log.Keep<std::array<UNUM8, 40>>("request", {});
    std::iota(request.begin(), request.end(), UNUM8{0x2E});
    auto& flagBytes = stage.log.Keep<std::array<UNUM8, 4>>("request flags", {0x61, 0x00, 0x03, 0xC0});
    auto& mask = stage.log.Keep<std::array<UNUM8, 17>>("mask", {});
    mask.fill(0xFF);
    auto& pattern = stage.log.Keep<std::array<UNUM8, 17>>("pattern", {0x6E, 0x2F, 0x30});
    auto& ids = stage.log.Keep<std::array<UNUM32, 4>>("wanted ids", {7, 12345, PDU_ID_UNDEF, 0xFFFFFFFD});
    auto& negative = stage.log.Keep<std::array<UNUM8, 2>>("negative", {0x7F, 0x2E});
    auto& expected = stage.log.Keep<std::array<PDU_EXP_RESP_DATA, 3>>(
        "expected responses", {{{0, 11, 17, mask.data(), pattern.data(), 4, ids.data()},
                                {1, 12, 2, mask.data(), negative.data(), 0, nullptr},
                                {2, 13, 0, nullptr, nullptr, 1, ids.data()}}});
    auto& control = stage.log.Keep<PDU_COP_CTRL_DATA>(
        "control of the request", {50, -1, -2, 1, {4, flagBytes.data()}, 3, expected.data()});
    stage.script.Give<UNUM32>("PDUStartComPrimitive", 7, 9);
    stage.api.PDUStartComPrimitive(1, 2, PDU_COPT_SENDRECV, 40, request.data(), &control, &caller.Tag,
                                   &caller.Handle);
}

PDU_RESULT_DATA& Result(Stage& stage)
{
    auto& rxFlags = stage.log.Keep<std::array<UNUM8, 4>>("rx flags", {0x80, 0x07, 0x01, 0xDF});
    auto& timeFlags = stage.log.Keep<std::array<UNUM8, 1>>("time flags", {0xC0});
    auto& header = stage.log.Keep<std::array<UNUM8, 4>>("header", {0x00, 0x00, 0x07, 0xE8});
    auto& footer = stage.log.Keep<std::array<UNUM8, 2>>("footer", {0x55, 0xAA});
    auto& info = stage.log.Keep<PDU_EXTRA_INFO>("extra info", {4, 2, header.data(), footer.data()});
    auto& data = stage.log.Keep<std::array<UNUM8, 48>>("response", {});
    std::iota(data.begin(), data.end(), UNUM8{0x6E});
    return stage.log.Keep<PDU_RESULT_DATA>(
        "result", {{4, rxFlags.data()}, 7, 11, {1, timeFlags.data()}, 5000, 5001, &info, 48, data.data()});
}

void TakeEvents(Stage& stage, Caller& caller)
{
    auto& executing = stage.log.Keep<T_PDU_STATUS>("executing", PDU_COPST_EXECUTING);
    Take(stage, "status event", {PDU_IT_STATUS, 9, &caller.Tag, 2000, &executing});
    Take(stage, "result event", {PDU_IT_RESULT, 9, &caller.Tag, 2001, &Result(stage)});

    auto& plain = stage.log.Keep<PDU_RESULT_DATA>(
        "plain result", {{0, nullptr}, PDU_ID_UNDEF, 12, {0, nullptr}, 0, 0, nullptr, 0, nullptr});
    Take(stage, "plain result event", {PDU_IT_RESULT, 9, nullptr, 2002, &plain});

    auto& info = stage.log.Keep<PDU_EXTRA_INFO>("empty extra info", {0, 0, nullptr, nullptr});
    auto& bare = stage.log.Keep<PDU_RESULT_DATA>("bare result", plain);
    bare.pExtraInfo = &info;
    Take(stage, "bare result event", {PDU_IT_RESULT, 9, nullptr, 2003, &bare});

    auto& error = stage.log.Keep<PDU_ERROR_DATA>("timeout", {PDU_ERR_EVT_RX_TIMEOUT, 42});
    Take(stage, "error event", {PDU_IT_ERROR, 9, &caller.Tag, 2004, &error});

    auto& nothing = stage.log.Keep<PDU_EVENT_ITEM*>("no event", nullptr);
    stage.script.Fail("PDUGetEventItem", PDU_ERR_EVENT_QUEUE_EMPTY);
    stage.api.PDUGetEventItem(1, 2, &nothing);
}

} // namespace

void Talk(Stage& stage)
{
    Caller caller(stage);
    StartCommunication(stage, caller);
    SendRequest(stage, caller);
    // The interface signals events on its own thread.
    std::thread([&] { stage.script.Signal(1, 2, &caller.Tag, nullptr); }).join();
    TakeEvents(stage, caller);
    stage.api.PDUCancelComPrimitive(1, 2, 9);
}

} // namespace marvane::testing
