#include "tool/words/describe.h"

#include "tool/words/identifiers.h"
#include "tool/words/negative_codes.h"

namespace marvane::words {

namespace {

constexpr std::uint8_t PositiveOffset = 0x40;
constexpr std::uint8_t SuppressBit = 0x80;
constexpr std::uint8_t SessionControl = 0x10;
constexpr std::uint8_t ReadTroubleCodes = 0x19;
constexpr std::uint8_t RoutineControl = 0x31;

std::optional<std::uint16_t> NumberAt(Bytes bytes, std::size_t place)
{
    if (bytes.size() < place + 2)
        return std::nullopt;
    return static_cast<std::uint16_t>(bytes[place] << 8 | bytes[place + 1]);
}

void AddSubFunction(RequestWords& words, Bytes request)
{
    const Service& service = *words.What;
    if (service.SubFunctionAt == 0 || request.size() <= service.SubFunctionAt)
        return;
    const std::uint8_t value = request[service.SubFunctionAt];
    words.WantsNoAnswer = service.MaySuppress && (value & SuppressBit) != 0;
    words.SubFunction = service.MaySuppress ? static_cast<std::uint8_t>(value & ~SuppressBit) : value;
    const words::SubFunction* const known = FindSubFunction(service, *words.SubFunction);
    if (!known)
        return;
    words.Detail = known->Name;
    if (!known->Words.empty())
        words.Summary = known->Words;
}

void AddIdentifier(RequestWords& words, Bytes request)
{
    if (words.What->HasIdentifier)
        words.Identifier = NumberAt(request, 1);
    if (words.What->Sid == RoutineControl)
        words.Routine = NumberAt(request, 2);
    std::string_view name;
    if (words.Identifier)
        name = DataIdentifierName(*words.Identifier);
    if (words.Routine)
        name = RoutineName(*words.Routine);
    if (!name.empty())
        words.Detail = name;
}

/// "P2 50 ms, P2* 5000 ms" of the answer to DiagnosticSessionControl.
std::string TimesOf(Bytes answer)
{
    const std::optional<std::uint16_t> normal = NumberAt(answer, 2);
    const std::optional<std::uint16_t> extended = NumberAt(answer, 4);
    if (!normal || !extended)
        return {};
    return "P2 " + std::to_string(*normal) + " ms, P2* " + std::to_string(*extended * 10) + " ms";
}

/// "2 trouble codes" of the answer to a ReadDTCInformation that lists them with their status.
std::string TroubleCodesOf(Bytes answer)
{
    constexpr std::size_t head = 3;
    constexpr std::size_t each = 4;
    const std::uint8_t kind = answer.size() < head ? std::uint8_t{0} : answer[1];
    const bool isList = kind == 0x02 || (kind >= 0x0A && kind <= 0x0E) || kind == 0x15;
    if (!isList || (answer.size() - head) % each != 0)
        return {};
    const std::size_t count = (answer.size() - head) / each;
    return std::to_string(count) + (count == 1 ? " trouble code" : " trouble codes");
}

AnswerWords Refusal(Dialect dialect, Bytes answer)
{
    AnswerWords words;
    words.Code = answer[2];
    words.Kind = answer[2] == ResponsePending ? AnswerKind::Pending : AnswerKind::Refused;
    words.CodeName = NegativeCodeName(dialect, answer[2]);
    return words;
}

bool IsRefusalOf(Bytes request, Bytes answer)
{
    return answer.size() >= 3 && answer[0] == NegativeResponse &&
           (request.empty() || answer[1] == request[0]);
}

bool IsPositiveTo(Bytes request, Bytes answer)
{
    if (answer.empty() || answer[0] == NegativeResponse)
        return false;
    return request.empty() || answer[0] == static_cast<std::uint8_t>(request[0] + PositiveOffset);
}

} // namespace

RequestWords DescribeRequest(Dialect dialect, Bytes request)
{
    RequestWords words;
    words.What = request.empty() ? nullptr : FindService(dialect, request[0]);
    if (!words.What)
        return words;
    words.Summary = words.What->Words;
    AddSubFunction(words, request);
    AddIdentifier(words, request);
    return words;
}

AnswerWords DescribeAnswer(Dialect dialect, Bytes request, Bytes answer)
{
    if (dialect == Dialect::Unknown)
        return {};
    if (IsRefusalOf(request, answer))
        return Refusal(dialect, answer);
    if (!IsPositiveTo(request, answer))
        return {};
    AnswerWords words;
    words.Kind = AnswerKind::Positive;
    if (dialect == Dialect::Uds && answer[0] == SessionControl + PositiveOffset)
        words.Detail = TimesOf(answer);
    if (dialect == Dialect::Uds && answer[0] == ReadTroubleCodes + PositiveOffset)
        words.Detail = TroubleCodesOf(answer);
    return words;
}

} // namespace marvane::words
