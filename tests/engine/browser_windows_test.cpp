// Pages that open elsewhere: the control's separate browser, links aimed at a new window through the
// control's NewWindow2 handling, and the "B" navigation style that re-issues a page's link in a window
// of its own. Each window is an engine page that goes with its window.
#include "engine/engine_fixture.h"

namespace tovtest {
namespace {

class BrowserWindows : public EngineFixture {
protected:
    // Waits for the one stand-alone window and its page's title; closes it as its user would and waits
    // until window and engine page are gone.
    void ExpectOneWindowTitled(const std::wstring& title)
    {
        std::vector<HWND> windows;
        ASSERT_TRUE(WaitFor([&] { return (windows = EngineTopWindows()).size() == 1; })) << "one browser window";
        EXPECT_TRUE(WaitFor([&] { return WindowTitle(windows[0]) == title; })) << "its page loaded";
        EXPECT_EQ(2, EnginePages()) << "a second engine page";
        PostMessageW(windows[0], WM_CLOSE, 0, 0);
        EXPECT_TRUE(WaitFor([&] { return EngineTopWindows().empty() && EnginePages() == 1; })) << "window and page gone";
    }
    void ShowLinkPage(const std::string& target)
    {
        PutPage(L"other.htm", "<html><head><title>other</title></head><body>other</body></html>");
        PutPage(L"links.htm", "<html><body><a href=\"other.htm\"" + target + " style=\"position:absolute;left:10px;"
                              "top:10px;width:200px;height:30px;display:block\">other</a></body></html>");
        ShowPage(L"links.htm");
    }
};

TEST_F(BrowserWindows, TheSeparateBrowserShowsItsPageAndGoesWithItsWindow)
{
    ASSERT_EQ(1, EnginePages()) << "the control's own page";
    LONG code = -1;
    ASSERT_EQ(S_OK, control->ShowURLInBrowser(tov::Bstr(L"data:text/html,<title>separate</title><p>own window</p>").Get(), &code));
    EXPECT_EQ(0, code);
    ExpectOneWindowTitled(L"separate");
}

TEST_F(BrowserWindows, ALinkAimedAtANewWindowOpensOneAndThePageStays)
{
    ShowLinkPage(" target=\"_blank\"");
    events.events.clear();
    Click(20, 20);
    ExpectOneWindowTitled(L"other");
    EXPECT_NE(std::wstring::npos, Html().find(L"href=\"other.htm\"")) << "the control's page stays";
}

TEST_F(BrowserWindows, StyleBReissuesATopLevelLinkInAWindowOfItsOwn)
{
    ASSERT_EQ(S_OK, control->put_NavigationStyle(tov::Bstr(L"B").Get()));
    ShowLinkPage("");
    Click(20, 20);
    ExpectOneWindowTitled(L"other");
    EXPECT_NE(std::wstring::npos, Html().find(L"href=\"other.htm\"")) << "the control's page stays";
}

} // namespace
} // namespace tovtest
