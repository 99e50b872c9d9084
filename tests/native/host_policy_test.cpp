// The host's URL-action policy for the control's own schemes and the keys it wants.
#include <gtest/gtest.h>
#include "hosting/host_policy.h"

using namespace tov::host;

TEST(HostPolicy, OwnSchemesGetTheControlsDecisions)
{
    EXPECT_EQ(UrlActionAnswer::Allow, DecideUrlAction(L"TOVEVENT:submit", 0x1400));
    EXPECT_EQ(UrlActionAnswer::Query, DecideUrlAction(L"tovhtmlp://1a/page.htm", 0x1401));
    EXPECT_EQ(UrlActionAnswer::Query, DecideUrlAction(L"MK:@TOVHTML://x", 0x1401));
    for (uint32_t keep : {0x1405u, 0x1208u, 0x1203u})
        EXPECT_EQ(UrlActionAnswer::Default, DecideUrlAction(L"tovevent:x", keep)) << std::hex << keep;
    EXPECT_EQ(UrlActionAnswer::Allow, DecideUrlAction(L"tovhtmlpx", 0x2100)) << "eight characters are compared";
}

TEST(HostPolicy, OtherUrlsAreLeftToThePlatform)
{
    EXPECT_EQ(UrlActionAnswer::Default, DecideUrlAction(L"https://example.invalid/", 0x1400));
    EXPECT_EQ(UrlActionAnswer::Allow, DecideUrlAction(L"tovevent", 0x1400)) << "the bare scheme name is the control's";
    EXPECT_EQ(UrlActionAnswer::Default, DecideUrlAction(L"tovev", 0x1400));
    EXPECT_EQ(UrlActionAnswer::Default, DecideUrlAction(L"", 0x1400));
    EXPECT_EQ(UrlActionAnswer::Default, DecideUrlAction(L"mk:@tovhtm", 0x1400));
}

TEST(HostPolicy, OnlyF4IsWanted)
{
    EXPECT_TRUE(WantsKey(0x73));
    for (uint64_t key : {0x09ull, 0x0Dull, 0x74ull, 0x72ull, 0x10073ull}) EXPECT_FALSE(WantsKey(key)) << key;
}
