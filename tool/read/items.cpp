#include "tool/read/items.h"

#include <algorithm>

#include "pdu/pdu_api.h"
#include "tool/read/call_text.h"

namespace marvane::read {

namespace {

constexpr std::string_view NotYetRead = "[NOT YET READ]";

std::string_view TextOf(const CallLine& line)
{
    return ParseArrow(line.Text) ? line.Text.substr(ArrowLength) : line.Text;
}

/// What is between `begin` and `end` in `text`; to the end of it without `end`.
std::string_view Part(std::string_view text, std::string_view begin, std::string_view end)
{
    const std::size_t at = text.find(begin);
    if (at == std::string_view::npos)
        return {};
    text.remove_prefix(at + begin.size());
    const std::size_t stop = text.find(end);
    std::string_view part = text.substr(0, stop);
    while (part.starts_with(' '))
        part.remove_prefix(1);
    return part;
}

std::optional<std::uint32_t> Number(std::span<const CallLine> lines, std::string_view label)
{
    const auto value = ValueOf(lines, label);
    return value ? NumberInValue(*value) : std::nullopt;
}

struct KindOfItem
{
    std::uint32_t Type;
    ItemKind Kind;
};

constexpr KindOfItem Kinds[] = {
    {PDU_IT_RESULT, ItemKind::Result},
    {PDU_IT_STATUS, ItemKind::Status},
    {PDU_IT_ERROR, ItemKind::Error},
    {PDU_IT_INFO, ItemKind::Info},
};

ItemKind KindOfType(std::uint32_t type)
{
    const auto found = std::ranges::find(Kinds, type, &KindOfItem::Type);
    return found == std::end(Kinds) ? ItemKind::Unknown : found->Kind;
}

/// "PDU_COPST_FINISHED (0x8012)" and what may follow it.
void ReadCode(Item& item, std::string_view value, std::string_view extra)
{
    item.CodeName = NameInValue(value);
    item.Code = NumberInValue(value).value_or(0);
    item.Extra = NumberInValue(extra);
}

void ReadSmallItem(Item& item, std::span<const CallLine> lines)
{
    for (const CallLine& line : lines) {
        const std::string_view text = TextOf(line);
        if (text.starts_with("Status "))
            ReadCode(item, Part(text, "=", "\n"), {});
        else if (text.starts_with("ErrorCode = "))
            ReadCode(item, Part(text, "= ", ", Extra"), Part(text, "ExtraErrorData = ", "\n"));
        else if (text.starts_with("Code = "))
            ReadCode(item, Part(text, "= ", ", Extra"), Part(text, "ExtraInfoData = ", "\n"));
    }
}

/// The number of "NAME (id=601): =\t(u32)    500000\t(0x0007A120)".
std::optional<std::int64_t> ParamNumber(std::string_view text)
{
    constexpr std::string_view type = "(u32)";
    const std::string_view value = Part(text, "): =\t", "\n");
    if (value.size() < type.size() || !value.starts_with('(') || value[type.size() - 1] != ')')
        return std::nullopt;
    const std::string_view digits = Part(value, value.substr(0, type.size()), "\t");
    const auto number = NumberInValue(digits);
    if (!number)
        return std::nullopt;
    return digits.starts_with('-') ? static_cast<std::int32_t>(*number) : std::int64_t{*number};
}

} // namespace

const Item* ItemReader::ItemOf(const Call& fetch)
{
    if (fetch.Which != Function::GetEventItem)
        return nullptr;
    const auto summary = std::find_if(fetch.LinesOut.begin(), fetch.LinesOut.end(), [](const CallLine& line) {
        return TextOf(line).starts_with("*ppEventItem (");
    });
    if (summary == fetch.LinesOut.end())
        return nullptr;
    const std::string_view text = TextOf(*summary);
    const std::string_view type = Part(text, "type= ", ", hCoP=");
    item_ = Item();
    item_.Fetch = &fetch;
    item_.At = {fetch.End.File, summary->Number, 0};
    item_.TypeCode = NumberInValue(type).value_or(0);
    item_.Kind = KindOfType(item_.TypeCode);
    item_.Address = Part(text, "*ppEventItem (", ")");
    item_.Tag = Part(text, "pCoPTag = ", "\n");
    item_.Primitive = NumberInValue(Part(text, "hCoP=", ","));
    if (item_.Primitive == UndefinedHandle)
        item_.Primitive.reset();
    item_.Timestamp = NumberInValue(Part(text, "Timestamp = ", ",")).value_or(0);
    const auto lines = fetch.LinesOut.subspan(static_cast<std::size_t>(summary - fetch.LinesOut.begin()) + 1);
    if (item_.Kind == ItemKind::Result)
        ReadResult(fetch, lines);
    else
        ReadSmallItem(item_, lines);
    return &item_;
}

void ItemReader::ReadResult(const Call& fetch, std::span<const CallLine> lines)
{
    for (std::vector<std::uint8_t>* bytes : {&data_, &header_, &footer_, &flags_})
        bytes->clear();
    item_.UniqueResponseId = Number(lines, "UniqueRespIdentifier");
    if (item_.UniqueResponseId == UndefinedId)
        item_.UniqueResponseId.reset();
    item_.AcceptanceId = Number(lines, "AcceptanceId");
    item_.TxDone = Number(lines, "TxMsgDoneTimestamp");
    item_.Start = Number(lines, "StartMsgTimestamp");
    ReadIndicators(lines);
    item_.RxFlags = DumpOf(lines, "pResult->RxFlag", flags_).Shown;
    item_.Header = DumpOf(lines, "pHeaderBytes", header_).Shown;
    item_.Footer = DumpOf(lines, "pFooterBytes", footer_).Shown;
    const std::optional<std::uint32_t> size = Number(lines, "DataSize");
    item_.Data = DumpOf(lines, "pDataBytes", data_, size, fetch.IsCutOut);
    item_.Data.IsPresent |= size.has_value();
}

void ItemReader::ReadIndicators(std::span<const CallLine> lines)
{
    constexpr std::uint8_t start = 0x40;
    constexpr std::uint8_t txDone = 0x80;
    stamps_.clear();
    const Bytes flags = DumpOf(lines, "pResult->TimestampFlags", stamps_).Shown;
    item_.IsStartValid = !flags.empty() && (flags[0] & start) != 0;
    item_.IsTxDoneValid = !flags.empty() && (flags[0] & txDone) != 0;
}

const Param* ItemReader::ParamOf(const Call& call)
{
    const bool isSet = call.Which == Function::SetComParam;
    if ((!isSet && call.Which != Function::GetComParam) || call.Status != 0u)
        return nullptr;
    const std::span<const CallLine> lines = isSet ? call.LinesIn : call.LinesOut;
    const auto first = std::find_if(lines.begin(), lines.end(), [](const CallLine& line) {
        return TextOf(line).starts_with("ComParam (");
    });
    if (first == lines.end())
        return nullptr;
    const std::string_view text = TextOf(*first);
    param_ = Param();
    param_.By = &call;
    param_.IsSet = isSet;
    param_.Name = Part(text, ") Id = ", " (id=");
    if (param_.Name == NotYetRead)
        param_.Name = {};
    param_.Id = NumberInValue(Part(text, "(id=", ")")).value_or(0);
    param_.DataType = NameInValue(Part(text, "DataType = ", ", Class"));
    param_.Class = NameInValue(Part(text, "Class = ", "\n"));
    const auto rest = lines.subspan(static_cast<std::size_t>(first - lines.begin()) + 1);
    param_.IsCut = isSet ? call.IsCutIn : call.IsCutOut;
    ReadParamValue(rest);
    return &param_;
}

void ItemReader::ReadParamValue(std::span<const CallLine> lines)
{
    if (!lines.empty())
        param_.Number = ParamNumber(TextOf(lines.front()));
    data_.clear();
    const Payload field = DumpOf(lines, "pDataArray", data_, {}, param_.IsCut);
    param_.IsField = field.IsPresent;
    param_.Field = field.Shown;
    param_.IsCut |= field.IsCut;
}

} // namespace marvane::read
