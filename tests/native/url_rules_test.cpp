// URL classification, instance tag and prefix composition.
#include <gtest/gtest.h>
#include "navigation/url_rules.h"

using namespace tov::url;

TEST(UrlRules, SchemesCompareFixedLengthsIgnoringCase)
{
    const struct { bool (*rule)(std::wstring_view); const wchar_t* text; bool holds; } cases[] = {
        {IsBackEndUrl, L"TOVQ5:x", true}, {IsBackEndUrl, L"tovq5:/a/b", true}, {IsBackEndUrl, L"tovq5x", false},
        {IsBackEndUrl, L"tovq5", false}, {IsMonikerUrl, L"@tovhtml://page.htm", true},
        {IsPluggableUrl, L"TOVHTMLP://a", true}, {IsPluggableUrl, L"tovhtml://a", false},
        {IsDataUrl, L"http://tovq5:/", false}, {IsDataUrl, L"", false}, {IsDataUrl, L"@TOVHTML:x", true},
        {IsDataUrlForSeparateWindow, L"@TOVHTML://x", false}, // a separate window takes it unchanged
        {IsDataUrlForSeparateWindow, L"TovQ5:x", true}, {IsHtmlSubtype, L"HTML", true}, {IsHtmlSubtype, L"htmlx", true},
        {IsHtmlSubtype, L"htm", false}, {IsHtmlSubtype, L"xhtml", false},
    };
    for (const auto& c : cases) EXPECT_EQ(c.holds, c.rule(c.text)) << std::wstring(c.text);
}

TEST(UrlRules, InstanceTagAndPrefixesInBothModes)
{
    EXPECT_EQ(L"1a2b3c40", InstanceTag(0x1A2B3C40));
    EXPECT_EQ(L"2b3c40", InstanceTag(static_cast<uintptr_t>(0x7ff000002b3c40ull)));
    EXPECT_EQ(L"0", InstanceTag(0));
    const auto m1 = PrefixesFor(1, L"1a2b3c40"), m2 = PrefixesFor(2, L"1a2b3c40");
    EXPECT_EQ((std::vector<std::wstring>{L"@TOVHTML://1a2b3c40/", L"@TOVHTML://", L"tovhtmlp://1a2b3c40/", L"tovhtmlp://"}),
              (std::vector<std::wstring>{m1.local, m1.global, m2.local, m2.global}));
    EXPECT_EQ(L"tovhtmlp://", PrefixesFor(0, L"x").global) << "any mode but 1 is the pluggable protocol";
    EXPECT_EQ(2, NormalizedMode(7));
}

TEST(UrlRules, NavigatedUrls)
{
    EXPECT_EQ(L"mk:@TOVHTML://1a2b3c40/page.htm", ShowDataUrl(1, L"@TOVHTML://1a2b3c40/", L"page.htm"));
    EXPECT_EQ(L"mk:@TOVHTML://page.htm", ShowDataUrl(1, L"@TOVHTML://", L"page.htm"));
    EXPECT_EQ(L"tovhtmlp://1a2b3c40/page.htm", ShowDataUrl(2, L"tovhtmlp://1a2b3c40/", L"page.htm"));
    EXPECT_EQ(L"mk:", ShowDataUrl(1, L"", L""));
    EXPECT_EQ(L"about:blank", NavigableUrl(L""));
    EXPECT_EQ(L" ", NavigableUrl(L" "));
}

TEST(UrlRules, ProviderUrlsAndTemporaryFileNames)
{
    EXPECT_EQ(L"@TOVHTML://1a/page.htm", ProviderUrl(L"page.htm#top", L"@TOVHTML://1a/"));
    EXPECT_EQ(L"TOVQ5:/a/b/Picture%20one.gif", ProviderUrl(L"TOVQ5:/a/b/Picture%20one.gif#x", L"@TOVHTML://1a/"));
    EXPECT_EQ(L"page.htm", ProviderUrl(L"page.htm", L"")) << "no prefix while it is empty";
    EXPECT_EQ(L"page.htm#top", TempFileNamePart(L"page.htm#top"));
    EXPECT_EQ(L"Picture%20one.gif", TempFileNamePart(L"tovq5:/a/b/Picture%20one.gif"));
    EXPECT_EQ(L"", TempFileNamePart(L"tovq5:nothing")) << "a data URL without any slash names no file";
    EXPECT_EQ(L"a_b_c_d", SafeFileNamePart(L"a\\b/c:d"));
}
