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
    const struct { const char* style; bool pluggable; long navFlags; bool restricted; } cases[] = {
        {"AC", true, 0, true}, {"abc", false, 0, false}, {"xCyB", false, 1, true}};
    for (const auto& c : cases) {
        const auto letters = ParseNavigationStyle(c.style);
        EXPECT_EQ((std::tuple{c.pluggable, c.navFlags, c.restricted}),
                  (std::tuple{letters.pluggableProtocol, letters.newWindowNavFlags, letters.restrictSchemes}))
            << c.style;
    }
}
