// The text SetHTMLSourceContent writes: the content read as a format without arguments.
#include <gtest/gtest.h>
#include "hosting/content_format.h"

using tov::content::ApplyFormatRule;
using tov::content::SourceFileBytes;
using tov::content::TextModeLineEnds;

TEST(ContentFormat, ConversionSpecificationsWriteNothing)
{
    EXPECT_EQ(L"<p>Total:  items</p>", ApplyFormatRule(L"<p>Total: %d items</p>"));
    EXPECT_EQ(L"ab", ApplyFormatRule(L"a%sb"));
    EXPECT_EQ(L"ab", ApplyFormatRule(L"a%-08.3ldb"));
    EXPECT_EQ(L"ab", ApplyFormatRule(L"a%*.*fb"));
    EXPECT_EQ(L"ab", ApplyFormatRule(L"a%I64xb"));
    EXPECT_EQ(L"ab", ApplyFormatRule(L"a%llub"));
    EXPECT_EQ(L"ab", ApplyFormatRule(L"a%nb")) << "%n writes nothing anywhere";
    EXPECT_EQ(L"100ure", ApplyFormatRule(L"100% sure")) << "\"% s\" is a blank flag and a string conversion";
    EXPECT_EQ(L"", ApplyFormatRule(L"%s%d%p%c"));
}

TEST(ContentFormat, PercentSignsThatAreNoSpecification)
{
    EXPECT_EQ(L"50%", ApplyFormatRule(L"50%%"));
    EXPECT_EQ(L"%d", ApplyFormatRule(L"%%d")) << "an escaped percent sign starts nothing";
    EXPECT_EQ(L"width: 50%", ApplyFormatRule(L"width: 50%")) << "a lone % at the very end";
    EXPECT_EQ(L"a%5q", ApplyFormatRule(L"a%5q")) << "no conversion letter";
    EXPECT_EQ(L"%l", ApplyFormatRule(L"%l")) << "the text ends inside the directive";
    EXPECT_EQ(L"%-0", ApplyFormatRule(L"%-0"));
    EXPECT_EQ(L"%.", ApplyFormatRule(L"%."));
    EXPECT_EQ(L"%", ApplyFormatRule(L"%"));
    EXPECT_EQ(L"%%", ApplyFormatRule(L"%%%%"));
}

TEST(ContentFormat, TextEndsAtItsFirstZeroCharacter)
{
    EXPECT_EQ(L"<html>", ApplyFormatRule(std::wstring_view(L"<html>\0<body>", 13)));
    EXPECT_EQ(L"", ApplyFormatRule(std::wstring_view(L"\0abc", 4)));
    EXPECT_EQ(L"", ApplyFormatRule(L""));
    EXPECT_EQ(L"a%", ApplyFormatRule(std::wstring_view(L"a%\0d", 4))) << "a directive does not reach past the end";
}

TEST(ContentFormat, NationalCharactersAndLongTextPassUnchanged)
{
    EXPECT_EQ(L"Gr\u00FC\u00DFe \u20AC \u65E5\u672C", ApplyFormatRule(L"Gr\u00FC\u00DFe \u20AC \u65E5\u672C"));
    std::wstring big(1u << 20, L'x');
    big += L"%";
    const std::wstring out = ApplyFormatRule(big);
    EXPECT_EQ(big.size(), out.size());
    EXPECT_EQ(L'%', out.back());
    std::wstring many;
    for (int i = 0; i < 100000; ++i) many += L"%d%%";
    EXPECT_EQ(std::wstring(100000, L'%'), ApplyFormatRule(many));
}

TEST(ContentFormat, FileBytesUseTheNarrowingAndTextModeLineEnds)
{
    EXPECT_EQ("a\r\nb\r\r\n", TextModeLineEnds("a\nb\r\n"));
    EXPECT_EQ("", TextModeLineEnds(""));
    const auto narrow = [](std::wstring_view w) {
        std::string s;
        for (wchar_t c : w) s += c < 0x100 ? static_cast<char>(c) : '?';
        return s;
    };
    EXPECT_EQ("<p>\xFC%</p>\r\n", SourceFileBytes(L"<p>\u00FC%%%s</p>\n", narrow));
}
