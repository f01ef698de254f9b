#include "pdu/functions.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace marvane {
namespace {

TEST(Functions, HaveTheirSlotsInTheOrderOfTheTable)
{
    EXPECT_STREQ(FunctionSlots.front().Name, "PDUModuleConnect");
    EXPECT_STREQ(FunctionSlots[27].Name, "PDU_MS_SetLogCallback");
    EXPECT_STREQ(FunctionSlots.back().Name, "PDUDestruct");
    for (std::size_t i = 0; i < FunctionSlots.size(); ++i)
        EXPECT_EQ(FunctionSlots[i].Offset, i * sizeof(void*)) << FunctionSlots[i].Name;
}

TEST(Functions, NamesLeaveTheExtensionOut)
{
    std::vector<std::string> names;
    for (const FunctionSlot& slot : FunctionSlots)
        if (slot.Name != std::string("PDU_MS_SetLogCallback"))
            names.emplace_back(slot.Name);
    EXPECT_EQ(names, std::vector<std::string>(FunctionNames.begin(), FunctionNames.end()));
}

TEST(Functions, ATableIsFilledByName)
{
    const auto address = [](const std::string& name) -> void* {
        if (name == "PDUModuleConnect")
            return reinterpret_cast<void*>(0x10);
        return name == "PDUDestruct" ? reinterpret_cast<void*>(0x20) : nullptr;
    };
    FunctionTable table;
    FillFunctionTable(table, address);
    EXPECT_EQ(reinterpret_cast<void*>(table.PDUModuleConnect), reinterpret_cast<void*>(0x10));
    EXPECT_EQ(reinterpret_cast<void*>(table.PDUDestruct), reinterpret_cast<void*>(0x20));
    EXPECT_EQ(table.PDUIoCtl, nullptr);
    EXPECT_EQ(table.PDU_MS_SetLogCallback, nullptr);
}

} // namespace
} // namespace marvane
