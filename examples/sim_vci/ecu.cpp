#include "examples/sim_vci/ecu.h"

#include <string_view>

namespace sim {

namespace {

constexpr UNUM8 SubFunctionNotSupported = 0x12;
constexpr UNUM8 WrongLength = 0x13;
constexpr UNUM8 SequenceError = 0x24;
constexpr UNUM8 OutOfRange = 0x31;
constexpr UNUM8 AccessDenied = 0x33;
constexpr UNUM8 InvalidKey = 0x35;
constexpr UNUM8 WrongBlockCounter = 0x73;
constexpr UNUM8 Pending = 0x78;
constexpr UNUM8 ServiceNotSupported = 0x11;

constexpr UNUM8 Seed[] = {0x12, 0x34, 0x56, 0x78};
constexpr UNUM8 KeyMask = 0xA5;

struct Identifier
{
    UNUM16 Number;
    std::string_view Value;
};

constexpr Identifier Identifiers[] = {
    {0xF190, "WSIMVC1E2F3000042"},
    {0xF187, "7P0907401"},
    {0xF18C, "SN-000815"},
    {0xF195, "0042"},
};

Bytes Negative(const Bytes& request, UNUM8 code)
{
    return {0x7F, request[0], code};
}

/// The positive answer: the service identifier + 0x40 and the first `echoed` bytes that follow it in the
/// request.
Bytes Positive(const Bytes& request, std::size_t echoed)
{
    Bytes answer(request.begin(), request.begin() + 1 + static_cast<std::ptrdiff_t>(echoed));
    answer[0] = static_cast<UNUM8>(answer[0] + 0x40);
    return answer;
}

void Append(Bytes& to, std::string_view text)
{
    to.insert(to.end(), text.begin(), text.end());
}

} // namespace

std::vector<Bytes> Ecu::Answer(const Bytes& request)
{
    if (request.empty())
        return {};
    switch (request[0]) {
    case 0x10:
        return {Session(request)};
    case 0x19:
        return {TroubleCodes(request)};
    case 0x22:
        return {ReadData(request)};
    case 0x27:
        return {Security(request)};
    case 0x31:
        return Routine(request);
    case 0x34:
        return {RequestDownload(request)};
    case 0x36:
        return {TransferData(request)};
    case 0x37:
        return {ExitTransfer(request)};
    case 0x3E:
        return TesterPresent(request);
    case 0xBA:
        // A service that this control unit ignores, so that the request times out.
        return {};
    default:
        return {Negative(request, ServiceNotSupported)};
    }
}

Bytes Ecu::Session(const Bytes& request)
{
    if (request.size() != 2)
        return Negative(request, WrongLength);
    if (request[1] < 1 || request[1] > 3)
        return Negative(request, SubFunctionNotSupported);
    session_ = request[1];
    unlocked_ = false;
    Bytes answer = Positive(request, 1);
    answer.insert(answer.end(), {0x00, 0x32, 0x01, 0xF4});
    return answer;
}

Bytes Ecu::ReadData(const Bytes& request) const
{
    if (request.size() != 3)
        return Negative(request, WrongLength);
    const auto wanted = static_cast<UNUM16>(request[1] << 8 | request[2]);
    for (const Identifier& identifier : Identifiers)
        if (identifier.Number == wanted) {
            Bytes answer = Positive(request, 2);
            Append(answer, identifier.Value);
            return answer;
        }
    return Negative(request, OutOfRange);
}

Bytes Ecu::TroubleCodes(const Bytes& request) const
{
    if (request.size() != 3)
        return Negative(request, WrongLength);
    if (request[1] != 0x02)
        return Negative(request, SubFunctionNotSupported);
    Bytes answer = Positive(request, 1);
    // Status availability mask, then for each trouble code three bytes of code and one of status.
    answer.insert(answer.end(), {0xFF, 0x01, 0x23, 0x45, 0x2F, 0x9A, 0x04, 0x11, 0x08});
    return answer;
}

Bytes Ecu::Security(const Bytes& request)
{
    if (request.size() < 2)
        return Negative(request, WrongLength);
    Bytes answer = Positive(request, 1);
    if (request[1] == 1) {
        seedSent_ = true;
        answer.insert(answer.end(), std::begin(Seed), std::end(Seed));
        return answer;
    }
    if (request[1] != 2)
        return Negative(request, SubFunctionNotSupported);
    if (!seedSent_)
        return Negative(request, SequenceError);
    if (request.size() != 2 + sizeof Seed)
        return Negative(request, WrongLength);
    for (std::size_t i = 0; i < sizeof Seed; ++i)
        if (request[2 + i] != (Seed[i] ^ KeyMask))
            return Negative(request, InvalidKey);
    unlocked_ = true;
    return answer;
}

std::vector<Bytes> Ecu::Routine(const Bytes& request) const
{
    if (request.size() < 4)
        return {Negative(request, WrongLength)};
    if (session_ == 1)
        return {Negative(request, AccessDenied)};
    Bytes answer = Positive(request, 3);
    answer.push_back(0x00);
    // Slow: answers "response pending" first.
    return {Negative(request, Pending), answer};
}

Bytes Ecu::RequestDownload(const Bytes& request)
{
    if (request.size() < 4)
        return Negative(request, WrongLength);
    if (session_ != 2 || !unlocked_)
        return Negative(request, AccessDenied);
    downloading_ = true;
    nextBlock_ = 1;
    return {0x74, 0x20, 0x00, 0x82};
}

Bytes Ecu::TransferData(const Bytes& request)
{
    if (!downloading_)
        return Negative(request, SequenceError);
    if (request.size() < 3)
        return Negative(request, WrongLength);
    if (request[1] != nextBlock_)
        return Negative(request, WrongBlockCounter);
    ++nextBlock_;
    return Positive(request, 1);
}

Bytes Ecu::ExitTransfer(const Bytes& request)
{
    if (!downloading_)
        return Negative(request, SequenceError);
    downloading_ = false;
    return {0x77};
}

std::vector<Bytes> Ecu::TesterPresent(const Bytes& request)
{
    constexpr UNUM8 suppress = 0x80;
    if (request.size() != 2)
        return {Negative(request, WrongLength)};
    if (request[1] == suppress)
        return {};
    return {request[1] == 0 ? Positive(request, 1) : Negative(request, SubFunctionNotSupported)};
}

} // namespace sim
