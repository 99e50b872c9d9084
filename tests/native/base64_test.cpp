// Base64 of the engine protocol.
#include <gtest/gtest.h>
#include "engine/base64.h"

using namespace tovengine;

TEST(Base64, EncodesAndRoundTripsEveryByteAndTailLength)
{
    const struct { const char* bytes; const char* text; } cases[] = {
        {"", ""}, {"f", "Zg=="}, {"fo", "Zm8="}, {"foo", "Zm9v"}, {"foob", "Zm9vYg=="}, {"fooba", "Zm9vYmE="},
        {"\xFB\xFF\xBF", "+/+/"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.text, Base64Encode(c.bytes));
        EXPECT_EQ(c.bytes, Base64Decode(c.text));
    }
    std::string all;
    for (int b = 0; b < 256; ++b) all.push_back(static_cast<char>(b));
    for (size_t start = 0; start < 3; ++start) // the last group holds 1, 2 or 3 bytes
        EXPECT_EQ(all.substr(start), Base64Decode(Base64Encode(all.substr(start)))) << start;
    for (size_t n = 0; n <= 5; ++n) {
        const std::string high(n, '\xFF'), low(n, '\0');
        EXPECT_EQ(high, Base64Decode(Base64Encode(high)));
        EXPECT_EQ(low, Base64Decode(Base64Encode(low)));
    }
}

TEST(Base64, DecodingSkipsLineBreaksStopsAtPaddingAndTakesTheUrlAlphabet)
{
    EXPECT_EQ("fooba", Base64Decode("Zm9v\r\nYm\nE=\r\n"));
    EXPECT_EQ("fo", Base64Decode("Zm8=Zm9v"));
    EXPECT_EQ("f", Base64Decode(" Z g = = "));
    EXPECT_EQ("\xFB\xFF\xBF", Base64Decode("-_-_"));
    EXPECT_EQ("", Base64Decode("!*"));
}
