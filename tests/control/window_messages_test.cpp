// Messages sent to the control's own window: the front end's two registered messages, focus, size and
// background erasing.
#include "support/browser_fixture.h"
#include "framework/bstr.h"

using tovtest::BrowserFixture;
using tovtest::ControlFixture;

namespace {

UINT WantKeyMessage() { return RegisterWindowMessageA("WM_TOV_WANTKEY"); }
UINT ReadyMessage() { return RegisterWindowMessageA("TOV_CM_READY_FOR_INPUT"); }

// The front end's readiness record: only the fields at byte offsets 24 and 32 are the control's.
struct ReadyRecord {
    BYTE bytes[48];
    ReadyRecord(LONG ready, LONG hold)
    {
        memset(bytes, 0xEE, sizeof(bytes));
        memcpy(bytes + 24, &ready, sizeof(ready));
        memcpy(bytes + 32, &hold, sizeof(hold));
    }
};

} // namespace

using WindowMessages = BrowserFixture;

TEST_F(WindowMessages, TheControlWantsOnlyF4)
{
    Connect(1);
    ClearLines();
    MSG key{Window(), WM_KEYDOWN, VK_F4, 0};
    EXPECT_EQ(1, SendMessageW(Window(), WantKeyMessage(), reinterpret_cast<WPARAM>(&key), 0));
    for (WPARAM other : {WPARAM(VK_TAB), WPARAM(VK_RETURN), WPARAM(VK_F5), WPARAM(VK_F3), WPARAM(0x73 + 0x10000)}) {
        key.wParam = other;
        EXPECT_EQ(0, SendMessageW(Window(), WantKeyMessage(), reinterpret_cast<WPARAM>(&key), 0)) << other;
    }
    EXPECT_EQ(0, SendMessageW(Window(), WantKeyMessage(), 0, 0)) << "no message record";
    const auto lines = Lines();
    ASSERT_EQ(14u, lines.size()) << "one scope per question";
    EXPECT_EQ("=> OnTOVWantKey", lines[0]);
    EXPECT_EQ("<= OnTOVWantKey", lines[1]);
    EXPECT_TRUE(Calls().empty()) << "the browser is not asked";
}

TEST_F(WindowMessages, ReadinessRecordsAreAnsweredWithZero)
{
    ReadyRecord record(1, 0);
    EXPECT_EQ(0, SendMessageW(Window(), ReadyMessage(), 0, reinterpret_cast<LPARAM>(&record)));
    EXPECT_EQ(0, SendMessageW(Window(), ReadyMessage(), 0, 0)) << "without a record nothing changes";
    EXPECT_TRUE(Calls().empty());
}

// Whether the front end hears of a completed page depends on the two fields of the last record.
TEST_F(WindowMessages, ReadinessDecidesWhetherCompletionsAreReported)
{
    Advise();
    LONG code = -1;
    ASSERT_EQ(S_OK, control->ShowURL(tov::Bstr(L"https://example.invalid/a").Get(), nullptr, &code));
    if (CompletionsReported(L"https://example.invalid/a") == 0)
        GTEST_SKIP() << "this build does not report completed pages to the front end";
    ReadyRecord hold(1, 1);
    SendMessageW(Window(), ReadyMessage(), 0, reinterpret_cast<LPARAM>(&hold));
    EXPECT_EQ(0u, CompletionsReported(L"https://example.invalid/a")) << "held";
    ReadyRecord notReady(0, 0);
    SendMessageW(Window(), ReadyMessage(), 0, reinterpret_cast<LPARAM>(&notReady));
    EXPECT_EQ(0u, CompletionsReported(L"https://example.invalid/a")) << "not ready for input";
    SendMessageW(Window(), ReadyMessage(), 0, 0);
    EXPECT_EQ(0u, CompletionsReported(L"https://example.invalid/a")) << "a null record changes nothing";
    ReadyRecord ready(7, 0);
    SendMessageW(Window(), ReadyMessage(), 0, reinterpret_cast<LPARAM>(&ready));
    EXPECT_EQ(1u, CompletionsReported(L"https://example.invalid/a")) << "any non-zero value counts";
}

TEST_F(WindowMessages, FocusActivatesTheBrowserInPlaceAndThenItsUserInterface)
{
    RECT rc{};
    GetClientRect(Window(), &rc);
    const std::wstring where = tovfe::HexArg(reinterpret_cast<uintptr_t>(Window())) + L", 0,0," +
                               std::to_wstring(rc.right) + L"," + std::to_wstring(rc.bottom) + L")";
    EXPECT_EQ(1, SendMessageW(Window(), WM_SETFOCUS, 0, 0));
    EXPECT_EQ((std::vector<std::wstring>{L"DoVerb(-5, " + where, L"DoVerb(-4, " + where}), Calls());
}

TEST_F(WindowMessages, SizeFollowsTheControlsWindow)
{
    host.Resize(333, 222);
    const auto calls = Calls();
    ASSERT_FALSE(calls.empty());
    EXPECT_EQ(L"SetObjectRects(0,0,333,222)", calls.back());
}

TEST_F(WindowMessages, TheBackgroundIsLeftToTheBrowser)
{
    HDC dc = GetDC(Window());
    EXPECT_EQ(1, SendMessageW(Window(), WM_ERASEBKGND, reinterpret_cast<WPARAM>(dc), 0));
    ReleaseDC(Window(), dc);
}

// Without a browser the same messages change nothing and reach no browser.
TEST_F(ControlFixture, WindowMessagesWithoutABrowser)
{
    tovfe::ScriptedBrowserClass browsers;
    ASSERT_EQ(S_OK, browsers.Register());
    tovtest::AtlHost host;
    ASSERT_EQ(S_OK, host.Attach(control.Get()));
    tov::ComPtr<IOleWindow> window;
    ASSERT_EQ(S_OK, control->QueryInterface(IID_IOleWindow, window.PutVoid()));
    HWND hwnd = nullptr;
    ASSERT_EQ(S_OK, window->GetWindow(&hwnd));
    MSG key{hwnd, WM_KEYDOWN, VK_F4, 0};
    EXPECT_EQ(1, SendMessageW(hwnd, WantKeyMessage(), reinterpret_cast<WPARAM>(&key), 0));
    ReadyRecord record(1, 1);
    EXPECT_EQ(0, SendMessageW(hwnd, ReadyMessage(), 0, reinterpret_cast<LPARAM>(&record)));
    SendMessageW(hwnd, WM_SETFOCUS, 0, 0);
    host.Resize(200, 100);
    HDC dc = GetDC(hwnd);
    SendMessageW(hwnd, WM_ERASEBKGND, reinterpret_cast<WPARAM>(dc), 0);
    ReleaseDC(hwnd, dc);
    EXPECT_TRUE(browsers.Log().Calls().empty());
    host.Destroy();
}
