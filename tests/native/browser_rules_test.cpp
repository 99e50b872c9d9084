// Screen-resolution zoom and navigation-style letters.
#include <gtest/gtest.h>
#include "hosting/browser_rules.h"

using namespace tov::browser;

TEST(BrowserRules, ZoomFollowsTheScreenResolution)
{
    EXPECT_EQ(100, ScreenZoom(96, 96));
    EXPECT_EQ(125, ScreenZoom(120, 120));
    EXPECT_EQ(149, ScreenZoom(144, 144));
    EXPECT_EQ(197, ScreenZoom(192, 192));
    EXPECT_EQ(100, ScreenZoom(100, 100)) << "exactly 100 stays 100";
    EXPECT_EQ(100, ScreenZoom(110, 91)) << "the average is taken before the test";
    EXPECT_EQ(106, ScreenZoom(101, 102)) << "101.5 is cut to 101";
    EXPECT_EQ(100, ScreenZoom(0, 0));
}

TEST(BrowserRules, NavigationStyleLettersAreCaseSensitive)
{
    auto ac = ParseNavigationStyle("AC");
    EXPECT_TRUE(ac.pluggableProtocol);
    EXPECT_EQ(0, ac.newWindowNavFlags);
    EXPECT_TRUE(ac.restrictSchemes);
    auto lower = ParseNavigationStyle("abc");
    EXPECT_FALSE(lower.pluggableProtocol);
    EXPECT_EQ(0, lower.newWindowNavFlags);
    EXPECT_FALSE(lower.restrictSchemes);
    auto mixed = ParseNavigationStyle("xCyB");
    EXPECT_FALSE(mixed.pluggableProtocol);
    EXPECT_EQ(1, mixed.newWindowNavFlags);
    EXPECT_TRUE(mixed.restrictSchemes);
}
