// The text SetHTMLSourceContent writes: the content read as a format without arguments.
#include <gtest/gtest.h>
#include "hosting/content_format.h"

using tov::content::ApplyFormatRule;
using tov::content::SourceFileBytes;
using tov::content::TextModeLineEnds;

TEST(ContentFormat, DirectivesWriteNothingAndPercentSignsThatBeginNoneStay)
{
    const std::pair<std::wstring_view, std::wstring_view> cases[] = {
        {L"<p>Total: %d items</p>", L"<p>Total:  items</p>"}, {L"a%sb", L"ab"}, {L"a%-08.3ldb", L"ab"},
        {L"a%*.*fb", L"ab"}, {L"a%I64xb", L"ab"}, {L"a%llub", L"ab"}, {L"a%nb", L"ab"}, // %n writes nothing anywhere
        {L"100% sure", L"100ure"}, // "% s" is a blank flag and a string conversion
        {L"%s%d%p%c", L""}, {L"50%%", L"50%"}, {L"%%d", L"%d"}, {L"%%%%", L"%%"}, {L"width: 50%", L"width: 50%"},
        {L"a%5q", L"a%5q"}, // no conversion letter
        {L"%l", L"%l"}, {L"%-0", L"%-0"}, {L"%.", L"%."}, {L"%", L"%"}, // the text ends inside the directive
        // The text ends at its first zero character, and a directive does not reach past it.
        {{L"<html>\0<body>", 13}, L"<html>"}, {{L"\0abc", 4}, L""}, {L"", L""}, {{L"a%\0d", 4}, L"a%"},
        {L"Gr\u00FC\u00DFe \u20AC \u65E5\u672C", L"Gr\u00FC\u00DFe \u20AC \u65E5\u672C"},
    };
    for (const auto& [in, out] : cases) EXPECT_EQ(out, ApplyFormatRule(in)) << std::wstring(in);
}

TEST(ContentFormat, LongTextPassesUnchanged)
{
    std::wstring big(1u << 20, L'x');
    big += L"%";
    EXPECT_EQ(big, ApplyFormatRule(big));
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
