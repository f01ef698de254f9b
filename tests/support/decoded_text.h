// The fixture for tests of decoders: runs one and returns its lines without the stamps, which are checked.
#pragma once

#include <cstdio>
#include <string>

#include <gtest/gtest.h>

#include "logger/decode/decode.h"
#include "logger/decode/object_names.h"
#include "platform/process.h"
#include "tests/support/session.h"

namespace marvane::testing {

/// At the beginning of each test logging is active and no object has a name; both are reset at its end.
class Decoding : public ::testing::Test
{
protected:
    Decoding()
    {
        Reset();
        SetSetting(NumericKey::LogEnabled, 1);
    }
    ~Decoding() override { Reset(); }

    /// The text that a decoder writes, by default at LogFnCalls 2 and a decoding level of 2. Each stamp must
    /// be that of this thread and of 07:08:09.010, or it stays in the text.
    template <class Decode> static std::string Decoded(Decode decode, UNUM32 calls = 2, UNUM32 level = 2)
    {
        PhaseText text(PhaseTime(7, 8, 9, 10));
        decode(DecoderContext{calls, level, text});
        return WithoutStamp(std::string(text.Text()));
    }

    /// Expects that a decoder writes nothing if LogFnCalls is below 2, its own level is 0, or logging is off.
    template <class Decode> static void ExpectThreeGates(Decode decode)
    {
        EXPECT_NE(Decoded(decode, 2, 1), "");
        EXPECT_NE(Decoded(decode, 7, 7), "");
        EXPECT_EQ(Decoded(decode, 1, 1), "");
        EXPECT_EQ(Decoded(decode, 0, 2), "");
        EXPECT_EQ(Decoded(decode, 2, 0), "");
        SetSetting(NumericKey::LogEnabled, 0);
        EXPECT_EQ(Decoded(decode), "");
        SetSetting(NumericKey::LogEnabled, 2);
        EXPECT_EQ(Decoded(decode), "");
        SetSetting(NumericKey::LogEnabled, 1);
    }

    /// Expects that a text ends with the marker, contains it once, and fits the buffer.
    static void ExpectCutOff(const std::string& stripped)
    {
        EXPECT_EQ(stripped.find(marks::BufferFull), stripped.size() - marks::BufferFull.size());
        EXPECT_LT(stripped.size(), LogBuffer::Size);
    }

private:
    static void Reset()
    {
        for (const NumericKeyName& key : NumericKeyNames)
            SetSetting(key.Key, key.Default);
        ClearObjectNames();
    }

    static std::string WithoutStamp(std::string text)
    {
        char stamp[40];
        std::snprintf(stamp, sizeof stamp, "{07:08:09.010 - %08X} ",
                      static_cast<unsigned>(platform::CurrentThreadId()));
        const std::string exact = stamp;
        for (std::size_t at = text.find(exact); at != std::string::npos; at = text.find(exact, at))
            text.erase(at, exact.size());
        return text;
    }
};

} // namespace marvane::testing
