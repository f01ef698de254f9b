#include "text/value_text.h"

#include <string>

#include <gtest/gtest.h>

namespace marvane {
namespace {

template <class Value> std::string Text(Value value)
{
    char text[Value::Most];
    return {text, value.PutTo(text)};
}

TEST(HandleText, HasEightDigitsOrTheNameOfTheUndefinedHandle)
{
    EXPECT_EQ(Text(HandleText(0)), "0x00000000");
    EXPECT_EQ(Text(HandleText(0x2A)), "0x0000002A");
    EXPECT_EQ(Text(HandleText(0xFFFFFFFE)), "0xFFFFFFFE");
    EXPECT_EQ(Text(HandleText(0xFFFFFFFF)), "<PDU_HANDLE_UNDEF>");
}

TEST(UridText, IsDecimalOrTheNameOfTheUndefinedIdentifier)
{
    EXPECT_EQ(Text(UridText(0)), "0");
    EXPECT_EQ(Text(UridText(4294967293u)), "4294967293");
    EXPECT_EQ(Text(UridText(0xFFFFFFFE)), "<PDU_ID_UNDEF>");
    EXPECT_EQ(Text(UridText(0xFFFFFFFF)), "4294967295");
}

} // namespace
} // namespace marvane
