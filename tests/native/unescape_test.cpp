// Unescaping of URLs and form data: the rules by example, and both scans (vector and portable) against a
// literal step-by-step transcription of the rules on many inputs.
#include <gtest/gtest.h>
#include <cstring>
#include <random>
#include <string>
#include "navigation/unescape.h"
#include "unescape_reference.h"

using tov::url::UnescapeData;

namespace {

using namespace std::string_literals;

std::string U(std::string_view s, uint32_t flags = 0) { return UnescapeData(s, flags, tovtest::Latin1()); }

} // namespace

TEST(Unescape, CharacterReferences)
{
    EXPECT_EQ("f1=Ax", U("f1=%26%2365%3Bx"));
    EXPECT_EQ("f1=&#66;", U("f1=&#66;")) << "inside a run an opener is text";
    EXPECT_EQ("f1= B", U("f1=+&#66;"));
    EXPECT_EQ("Bx", U("&#66;x"));
    EXPECT_EQ("Ac", U("&#65;b%3Bc")) << "%3B is preferred to the nearer ;";
    EXPECT_EQ("AB", U("%26%2365%3B%26%2366%3B"));
    EXPECT_EQ("ABC", U("&#65;&#66;%26%2367;"));
    EXPECT_EQ(" ", U("&#8364;")) << "no form in the code page: one space";
    EXPECT_EQ("A", U("&#65%3d")) << "an encoded = ends a reference too";
    EXPECT_EQ("A", U("&#65536065;")) << "the low 16 bits of the number";
    EXPECT_EQ("\0"s, U("&#;"));
    EXPECT_EQ("&#65", U("&#65")) << "no terminator anywhere: the opener is copied as text";
    EXPECT_EQ("A&#66", U("&#65;&#66")) << "a following opener without a terminator stays text";
    EXPECT_EQ("%26%2366", U("%26%2366"));
}

TEST(Unescape, EscapesPlusAndSeparators)
{
    EXPECT_EQ("a=%", U("a=%25"));
    EXPECT_EQ("a=%25", U("a=%25", tov::url::kKeepPercentEscape));
    EXPECT_EQ("a=", U("a=%4")) << "a truncated escape at the end is dropped";
    EXPECT_EQ("a=", U("a=%"));
    EXPECT_EQ("x=%3D&y=%26z%3f", U("x=%3D&y=%26z%3f")) << "escaped separators keep their source form";
    EXPECT_EQ("a b c", U("a+b%20c"));
    EXPECT_EQ("\xE4", U("%e4"));
    EXPECT_EQ("\xE4", U("%E4"));
    // Characters that are no hex digits give the values the old computation gave.
    EXPECT_EQ(std::string(1, static_cast<char>((('g' - 0x57) * 16 + ('z' - 0x57)) & 0xFF)), U("%gz"));
    EXPECT_EQ(std::string(1, static_cast<char>((('G' - 0x57) * 16 + (0 - 0x57)) & 0xFF)), U("%G\0"s));
    EXPECT_EQ("", U(""));
}

TEST(Unescape, BoundedByLengthAndNeverGrows)
{
    const std::string withZeros = "a\0b%41\0+c"s;
    EXPECT_EQ("a\0bA\0 c"s, U(withZeros));
    // Only the given length is read, whatever follows it.
    const char data[] = "ab%41cd";
    char out[8];
    memset(out, 'X', sizeof out);
    EXPECT_EQ(2u, UnescapeData(data, 4, out, 0, tovtest::Latin1()));
    EXPECT_EQ("ab", std::string(out, 2));
    EXPECT_EQ('\0', out[2]) << "ab%4 is ab plus a dropped escape";
    for (const std::string& s : {"%26%2365%3B"s, "&#;"s, "+++"s, "%41%42"s, "&#1;&#2;"s})
        EXPECT_LE(U(s).size(), s.size()) << s;
}

TEST(Unescape, DoubleByteFormsAndOversizedForms)
{
    // A code page whose answer is two bytes, and one whose answer would need three.
    tov::url::AnsiConverter twoBytes{[](void*, char16_t, char* out, size_t) -> size_t { out[0] = '\x82'; out[1] = '\xA0'; return 2; }, nullptr};
    tov::url::AnsiConverter threeBytes{[](void*, char16_t, char* out, size_t) -> size_t { out[0] = out[1] = out[2] = 'x'; return 3; }, nullptr};
    EXPECT_EQ("\x82\xA0", UnescapeData("&#12354;", 0, twoBytes));
    EXPECT_EQ(" ", UnescapeData("&#12354;", 0, threeBytes));
}

namespace {

// Both scans' results for the input, each checked against the literal rules.
void ExpectBothScansFollowTheRules(const std::string& input, uint32_t flags, const std::string& context)
{
    const std::string expected = tovtest::LiteralUnescape(input, flags);
    ASSERT_EQ(expected, UnescapeData(input, flags, tovtest::Latin1())) << context;
    std::string portable(input.size() + 1, '\x7f');
    const size_t n = tov::url::UnescapeDataPortable(input.data(), input.size(), portable.data(), flags, tovtest::Latin1());
    ASSERT_EQ(expected, portable.substr(0, n)) << "portable scan, " << context;
    ASSERT_EQ('\0', portable[n]) << context;
}

} // namespace

// The vector scan works on pairs of 64-byte blocks with stops found per block: every kind of step is
// placed at every position across the boundary between two blocks, between two pairs and between the
// last pair and the byte-wise rest.
TEST(Unescape, EveryStepAtEveryPositionAcrossBlocks)
{
    const std::vector<std::string> steps = {"%41", "%E4%F6", "%2B", "+", "+&#65;", "+&#65", "%26%2365%3B", "%26%23123456789%3B",
                                            "%26%2365;", "%26%23%3B", "%26%2365", "&#66;&#67;", "%26x", "%3D", "%3F", "%25",
                                            "%%41", "%4%", "&#", "%26%23 65%3B", "%)6%2365%3B", "%26%23-65%3B", "%26%2365%3B%26%2366%3B"};
    const std::string text = "customer+order=Muller&street";
    for (const std::string& step : steps) {
        for (size_t at = 0; at < 280; at += at == 140 ? 100 : 1) {
            std::string input;
            while (input.size() < at) input += text;
            input.resize(at);
            input += step;
            while (input.size() < 400) input += text;
            for (const uint32_t flags : {0u, tov::url::kKeepPercentEscape})
                ExpectBothScansFollowTheRules(input, flags, "step " + step + " at " + std::to_string(at));
        }
    }
}

TEST(Unescape, SameAsTheLiteralRulesOnStructuredAndRandomInput)
{
    const std::vector<std::string> pieces = {"%26%23", "&#", "%3B", "%3b", ";", "%3d", "%3D", "%25", "%2", "%",
                                             "+", "65", "8364", "a", "=", "&", "?", "%3F", "%41", "%zz", "\0"s, " ",
                                             "%2B", "+&#", "%E4%F6", "12345678", "123456789"};
    std::mt19937 rng(20261123);
    for (int round = 0; round < 20000; ++round) {
        std::string input;
        // Every fourth input is long enough for the block-wise scanning of long data.
        const int count = static_cast<int>(rng() % (round % 4 ? 12 : 120));
        for (int i = 0; i < count; ++i) {
            if (rng() % 4 == 0) input += static_cast<char>(rng() % 256);
            else input += pieces[rng() % pieces.size()];
        }
        const uint32_t flags = (rng() % 2) ? tov::url::kKeepPercentEscape : 0;
        ExpectBothScansFollowTheRules(input, flags, "input #" + std::to_string(round) + " size " + std::to_string(input.size()));
    }
}
