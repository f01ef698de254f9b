#include "tool/words/secrets.h"

namespace marvane::words {

namespace {

constexpr std::uint8_t AnswerBit = 0x40;

/// A service whose messages hold a secret, in the request, in the answer or in both.
struct SecretService
{
    std::uint8_t Sid;
    Secret What;
    std::size_t Begin; ///< bytes before the secret
    bool InRequest;
    bool InAnswer;
};

constexpr SecretService UdsSecrets[] = {
    {0x23, Secret::Transfer, 1, false, true},      // ReadMemoryByAddress
    {0x27, Secret::Key, 2, true, true},            // SecurityAccess
    {0x29, Secret::Authentication, 2, true, true}, // Authentication
    {0x36, Secret::Transfer, 2, true, true},       // TransferData
    {0x84, Secret::Authentication, 1, true, true}, // SecuredDataTransmission
};

constexpr std::uint8_t WriteMemory = 0x3D;
constexpr std::uint8_t ReadIdentifier = 0x22;
constexpr std::uint8_t WriteIdentifier = 0x2E;
constexpr std::uint8_t ObdVehicleInformation = 0x09;
constexpr std::uint8_t ObdVin = 0x02;

constexpr std::size_t IdentifierHead = 3;

std::uint16_t IdentifierAt(Bytes message, std::size_t place)
{
    return static_cast<std::uint16_t>(message[place] << 8 | message[place + 1]);
}

/// The secret of a message whose second and third byte are a data identifier.
SecretPart OfIdentifier(Bytes message)
{
    if (message.size() < IdentifierHead)
        return {};
    const Secret secret = SecretOfIdentifier(IdentifierAt(message, 1));
    return secret == Secret::None ? SecretPart() : SecretPart{secret, IdentifierHead};
}

/// Where the data of a further identifier begins in an answer; at its first data byte if that can't be found.
std::size_t BeginOf(std::uint16_t identifier, Bytes answer)
{
    for (std::size_t place = IdentifierHead; place + 2 <= answer.size(); ++place)
        if (IdentifierAt(answer, place) == identifier)
            return place + 2;
    return IdentifierHead;
}

SecretPart OfReadIdentifiers(Bytes request, Bytes answer)
{
    const SecretPart first = OfIdentifier(answer);
    if (first.What != Secret::None || answer.size() < IdentifierHead)
        return first;
    for (std::size_t place = IdentifierHead; place + 2 <= request.size(); place += 2) {
        const std::uint16_t identifier = IdentifierAt(request, place);
        if (const Secret secret = SecretOfIdentifier(identifier); secret != Secret::None)
            return {secret, BeginOf(identifier, answer)};
    }
    return {};
}

/// The data of WriteMemoryByAddress: after the address and the size, whose lengths are in the second byte.
SecretPart OfWrittenMemory(Bytes request)
{
    if (request.size() < 2)
        return {};
    const std::size_t begin = 2u + (request[1] & 15u) + (request[1] >> 4);
    return request.size() > begin ? SecretPart{Secret::Transfer, begin} : SecretPart();
}

SecretPart OfTable(std::uint8_t sid, bool isAnswer, Bytes message)
{
    for (const SecretService& service : UdsSecrets)
        if (service.Sid == sid && (isAnswer ? service.InAnswer : service.InRequest))
            return message.size() > service.Begin ? SecretPart{service.What, service.Begin} : SecretPart();
    return {};
}

} // namespace

Secret SecretOfIdentifier(std::uint16_t identifier)
{
    switch (identifier) {
    case 0xF190:
    case 0xF802:
        return Secret::Vin;
    case 0xF18C:
    case 0xF198:
    case 0xF19A:
        return Secret::Serial;
    default:
        return Secret::None;
    }
}

SecretPart SecretOfRequest(Dialect dialect, Bytes request)
{
    if (request.empty() || dialect != Dialect::Uds)
        return {};
    if (request[0] == WriteIdentifier)
        return OfIdentifier(request);
    return request[0] == WriteMemory ? OfWrittenMemory(request) : OfTable(request[0], false, request);
}

SecretPart SecretOfAnswer(Dialect dialect, Bytes request, Bytes answer)
{
    if (answer.empty() || (answer[0] & AnswerBit) == 0)
        return {};
    const auto sid = static_cast<std::uint8_t>(answer[0] - AnswerBit);
    if (dialect == Dialect::Uds)
        return sid == ReadIdentifier ? OfReadIdentifiers(request, answer) : OfTable(sid, true, answer);
    constexpr std::size_t head = 2;
    const bool isVin = dialect == Dialect::Obd && sid == ObdVehicleInformation && answer.size() > head &&
                       answer[1] == ObdVin;
    return isVin ? SecretPart{Secret::Vin, head} : SecretPart();
}

} // namespace marvane::words
