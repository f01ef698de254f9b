#include "tests/fuzz/call_facts.h"

#include <cstdio>

#include <gtest/gtest.h>

#include "tests/support/session.h"
#include "tool/read/call_text.h"

namespace marvane::testing {

std::string Hex(read::Bytes bytes)
{
    std::string text;
    for (const std::uint8_t byte : bytes) {
        char digits[4];
        std::snprintf(digits, sizeof digits, "%02X", static_cast<unsigned>(byte));
        text += digits;
    }
    return text;
}

namespace {

using read::Function;

constexpr std::string_view Cut = "cut ";

std::string Number(std::uint32_t number)
{
    return number == read::UndefinedHandle ? "none" : std::to_string(number);
}

template <class Value> Value* Pointer(std::uint64_t argument)
{
    return reinterpret_cast<Value*>(static_cast<std::uintptr_t>(argument));
}

read::Bytes BytesAt(const UNUM8* data, std::size_t size)
{
    return data ? read::Bytes(data, size) : read::Bytes();
}

std::string ItemText(std::string_view address, std::uint32_t type, std::uint32_t primitive,
                     std::uint32_t timestamp)
{
    return "item " + std::string(address) + " type " + std::to_string(type) + " hCoP " + Number(primitive) +
           " at " + std::to_string(timestamp);
}

std::string CodeText(std::uint32_t code)
{
    return " code " + std::to_string(code);
}

std::string DataOf(const PDU_EVENT_ITEM& item)
{
    if (!item.pData)
        return item.ItemType == PDU_IT_RESULT ? " data " : CodeText(0);
    if (item.ItemType == PDU_IT_RESULT) {
        const auto& result = *static_cast<const PDU_RESULT_DATA*>(item.pData);
        return " data " + Hex(BytesAt(result.pDataBytes, result.NumDataBytes));
    }
    return CodeText(*static_cast<const UNUM32*>(item.pData));
}

bool IsKnownItem(std::uint32_t type)
{
    return type == PDU_IT_RESULT || type == PDU_IT_STATUS || type == PDU_IT_ERROR || type == PDU_IT_INFO;
}

std::string Address(const void* address)
{
    const std::string text = PointerText(address);
    return text.substr(text.find_first_not_of(' '));
}

std::string StartText(std::uint32_t primitive, const std::string& request)
{
    return "start " + Number(primitive) + " request " + request;
}

} // namespace

std::string FactOfCall(std::string_view function, const std::vector<std::uint64_t>& arguments,
                       T_PDU_ERROR status)
{
    if (function == "PDUGetEventItem" && status == PDU_STATUS_NOERROR && arguments[2] != 0) {
        const PDU_EVENT_ITEM* const item = *Pointer<PDU_EVENT_ITEM*>(arguments[2]);
        if (!item)
            return "";
        return ItemText(Address(item), item->ItemType, item->hCop, item->Timestamp) +
               (IsKnownItem(item->ItemType) ? DataOf(*item) : "");
    }
    if (function == "PDUDestroyItem")
        return "destroyed " + Address(Pointer<void>(arguments[0]));
    if (function == "PDUStartComPrimitive") {
        const auto* const primitive = Pointer<const UNUM32>(arguments[7]);
        const bool isGood = status == PDU_STATUS_NOERROR && primitive;
        return StartText(
            isGood ? *primitive : PDU_HANDLE_UNDEF,
            Hex(BytesAt(Pointer<const UNUM8>(arguments[4]), static_cast<std::size_t>(arguments[3]))));
    }
    return "";
}

void FactSink::OnCall(const read::Call& call)
{
    if (call.State != read::CallState::Returned && call.State != read::CallState::Cut)
        return;
    const bool hasFacts = call.Which == Function::GetEventItem || call.Which == Function::DestroyItem ||
                          call.Which == Function::StartComPrimitive;
    if (hasFacts && (call.State == read::CallState::Cut || call.IsCutIn || call.IsCutOut))
        Facts.push_back(std::string(Cut).append(call.Name));
    else if (call.Which == Function::DestroyItem)
        Facts.push_back("destroyed " + std::string(read::Argument(call.Arguments, "pItem").value_or("")));
    else if (call.Which == Function::StartComPrimitive) {
        std::vector<std::uint8_t> storage;
        const read::Payload request = read::RequestOf(call, storage);
        Facts.push_back(StartText(call.Primitive.value_or(read::UndefinedHandle), Hex(request.Shown)));
    }
}

void FactSink::OnItem(const read::Item& item)
{
    if (item.Fetch->IsCutOut)
        return;
    std::string text =
        ItemText(item.Address, item.TypeCode, item.Primitive.value_or(read::UndefinedHandle), item.Timestamp);
    if (item.Kind == read::ItemKind::Result)
        text += " data " + Hex(item.Data.Shown);
    else if (item.Kind != read::ItemKind::Unknown)
        text += CodeText(item.Code);
    Facts.push_back(std::move(text));
}

void ExpectSameFacts(const std::vector<std::string>& expected, const std::vector<std::string>& found)
{
    std::size_t next = 0;
    for (const std::string& fact : expected) {
        ASSERT_LT(next, found.size()) << fact;
        if (!found[next].starts_with(Cut)) {
            ASSERT_EQ(found[next], fact) << "fact " << next;
        }
        ++next;
    }
    EXPECT_EQ(next, found.size()) << found[next];
}

} // namespace marvane::testing
