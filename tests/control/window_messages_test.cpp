// Messages sent to the control's own window: the front end's key question, focus, size and background
// erasing. (The readiness record is with the page completion tests.)
#include "support/browser_fixture.h"

namespace {

LRESULT AskForKey(HWND hwnd, WPARAM key)
{
    MSG msg{hwnd, WM_KEYDOWN, key, 0};
    return SendMessageW(hwnd, RegisterWindowMessageA("WM_TOV_WANTKEY"), reinterpret_cast<WPARAM>(&msg), 0);
}

} // namespace

using WindowMessages = tovtest::BrowserFixture;

TEST_F(WindowMessages, TheControlWantsOnlyF4)
{
    EXPECT_EQ(1, AskForKey(Window(), VK_F4));
    for (WPARAM other : {WPARAM(VK_TAB), WPARAM(VK_RETURN), WPARAM(VK_F5), WPARAM(VK_F4 + 0x10000)})
        EXPECT_EQ(0, AskForKey(Window(), other)) << other;
    EXPECT_EQ(0, SendMessageW(Window(), RegisterWindowMessageA("WM_TOV_WANTKEY"), 0, 0)) << "no message record";
    EXPECT_TRUE(Calls().empty()) << "the browser is not asked";
}

TEST_F(WindowMessages, FocusActivatesTheBrowserAndSizePlacesIt)
{
    RECT rc{};
    GetClientRect(Window(), &rc);
    const std::wstring where = tovfe::HexArg(reinterpret_cast<uintptr_t>(Window())) + L", 0,0," + std::to_wstring(rc.right) +
                               L"," + std::to_wstring(rc.bottom) + L")";
    EXPECT_EQ(1, SendMessageW(Window(), WM_SETFOCUS, 0, 0));
    EXPECT_EQ((std::vector<std::wstring>{L"DoVerb(-5, " + where, L"DoVerb(-4, " + where}), Calls());
    host.Resize(333, 222);
    EXPECT_EQ(L"SetObjectRects(0,0,333,222)", Calls().back());
    EXPECT_EQ(1, SendMessageW(Window(), WM_ERASEBKGND, 0, 0)) << "the background is left to the browser";
}

