// URL classification, instance tag and prefix composition.
#include <gtest/gtest.h>
#include "navigation/url_rules.h"

using namespace tov::url;

TEST(UrlRules, SchemesCompareFixedLengthsIgnoringCase)
{
    EXPECT_TRUE(IsBackEndUrl(L"TOVQ5:x"));
    EXPECT_TRUE(IsBackEndUrl(L"tovq5:/a/b"));
    EXPECT_FALSE(IsBackEndUrl(L"tovq5x")) << "no colon after the letters";
    EXPECT_FALSE(IsBackEndUrl(L"tovq5"));
    EXPECT_TRUE(IsMonikerUrl(L"@tovhtml://page.htm"));
    EXPECT_TRUE(IsPluggableUrl(L"TOVHTMLP://a"));
    EXPECT_FALSE(IsPluggableUrl(L"tovhtml://a"));
    EXPECT_FALSE(IsDataUrl(L"http://tovq5:/"));
    EXPECT_FALSE(IsDataUrl(L""));
    EXPECT_TRUE(IsDataUrl(L"@TOVHTML:x"));
    EXPECT_FALSE(IsDataUrlForSeparateWindow(L"@TOVHTML://x")) << "a separate window takes it unchanged";
    EXPECT_TRUE(IsDataUrlForSeparateWindow(L"TovQ5:x"));
    EXPECT_TRUE(IsHtmlSubtype(L"HTML"));
    EXPECT_TRUE(IsHtmlSubtype(L"htmlx"));
    EXPECT_FALSE(IsHtmlSubtype(L"htm"));
    EXPECT_FALSE(IsHtmlSubtype(L"xhtml"));
}

TEST(UrlRules, InstanceTagAndPrefixesInBothModes)
{
    EXPECT_EQ(L"1a2b3c40", InstanceTag(0x1A2B3C40));
    EXPECT_EQ(L"2b3c40", InstanceTag(static_cast<uintptr_t>(0x7ff000002b3c40ull)));
    EXPECT_EQ(L"0", InstanceTag(0));
    auto m1 = PrefixesFor(1, L"1a2b3c40");
    EXPECT_EQ(L"@TOVHTML://1a2b3c40/", m1.local);
    EXPECT_EQ(L"@TOVHTML://", m1.global);
    auto m2 = PrefixesFor(2, L"1a2b3c40");
    EXPECT_EQ(L"tovhtmlp://1a2b3c40/", m2.local);
    EXPECT_EQ(L"tovhtmlp://", m2.global);
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
