// The list of browser windows opened outside the control: reuse while open, forgetting a closed one,
// closing the one used last or all of them, and nothing reachable in the list while a window quits.
#include <gtest/gtest.h>
#include "frontend/scripted_browser.h"
#include "hosting/detached_windows.h"

using tov::Bstr;
using tov::ComPtr;

namespace {

class DetachedWindows : public testing::Test {
protected:
    ComPtr<IWebBrowser2> Window(tovfe::ScriptedBrowser* browser) { return ComPtr<IWebBrowser2>(static_cast<IWebBrowser2*>(browser)); }
    std::vector<std::wstring> Calls(tovfe::ScriptedBrowser* browser) { return WithoutQueries(browser->OwnLog()); }
    static std::vector<std::wstring> WithoutQueries(tovfe::CallLog& log)
    {
        std::vector<std::wstring> out;
        for (const auto& text : log.Texts())
            if (text.rfind(L"QueryInterface", 0) != 0) out.push_back(text);
        return out;
    }

    tov::DetachedBrowserWindows windows;
    const Bstr a{L"http://example.invalid/A"};
    const Bstr b{L"http://example.invalid/B"};
};

} // namespace

TEST_F(DetachedWindows, AWindowIsReusedWhileOpenAndForgottenOnceTheUserClosedIt)
{
    auto first = tovfe::ScriptedBrowser::Create();
    first->SetHwnd(0x1234);
    EXPECT_EQ(nullptr, windows.OpenWindowFor(a).Get()) << "nothing remembered yet";
    windows.Remember(a, Window(first.Get()));
    windows.ForgetLast();
    EXPECT_EQ(static_cast<IWebBrowser2*>(first.Get()), windows.OpenWindowFor(a).Get());
    EXPECT_EQ(static_cast<IWebBrowser2*>(first.Get()), windows.Last().Get()) << "reused: used last again";
    EXPECT_EQ(nullptr, windows.OpenWindowFor(Bstr(L"http://example.invalid/a")).Get()) << "letter case counts";

    first->SetHwnd(0);
    first->OwnLog().Clear();
    EXPECT_EQ(nullptr, windows.OpenWindowFor(a).Get());
    EXPECT_EQ((std::vector<std::wstring>{L"get_HWND()", L"Stop()", L"Quit()"}), Calls(first.Get()));
    EXPECT_EQ(nullptr, windows.Last().Get());
    EXPECT_EQ(1u, first->RefCount()) << "the list let go of the closed window";
    EXPECT_EQ(nullptr, windows.OpenWindowFor(a).Get()) << "and does not ask it again";
}

TEST_F(DetachedWindows, CloseLastClosesOnlyTheWindowUsedLastCloseAllTheRest)
{
    auto first = tovfe::ScriptedBrowser::Create();
    auto second = tovfe::ScriptedBrowser::Create();
    EXPECT_FALSE(windows.CloseLast()) << "nothing to close";
    windows.Remember(a, Window(first.Get()));
    windows.Remember(b, Window(second.Get()));
    EXPECT_TRUE(windows.CloseLast());
    EXPECT_EQ((std::vector<std::wstring>{L"Stop()", L"Quit()"}), Calls(second.Get()));
    EXPECT_TRUE(Calls(first.Get()).empty());
    EXPECT_FALSE(windows.CloseLast()) << "the window before is not used last by that";
    EXPECT_EQ(1u, second->RefCount());

    windows.CloseAll();
    EXPECT_EQ((std::vector<std::wstring>{L"Stop()", L"Quit()"}), Calls(first.Get()));
    EXPECT_EQ(1u, first->RefCount());
    first->OwnLog().Clear();
    windows.CloseAll();
    EXPECT_TRUE(Calls(first.Get()).empty()) << "closed windows are not closed again";
}

// A browser's Quit may let the control run again (a front end's handler): by then the window is out of
// the list and no longer the one used last.
TEST_F(DetachedWindows, AQuittingWindowIsNoLongerReachable)
{
    auto first = tovfe::ScriptedBrowser::Create();
    auto second = tovfe::ScriptedBrowser::Create();
    first->SetHwnd(0x1234);
    std::vector<std::wstring> seen;
    const auto look = [&](const tovfe::Call& call) {
        if (call.name != L"Quit") return;
        const std::wstring last = windows.Last() ? L"set" : L"none";
        const std::wstring open = windows.OpenWindowFor(a) ? L"open" : L"none";
        seen.push_back(call.name + L": last " + last + L", A " + open);
    };
    first->whileCalled = look;
    second->whileCalled = look;
    windows.Remember(a, Window(first.Get()));
    windows.Remember(b, Window(second.Get()));
    EXPECT_TRUE(windows.CloseLast());
    windows.CloseAll();
    EXPECT_EQ((std::vector<std::wstring>{L"Quit: last none, A open", L"Quit: last none, A none"}), seen);
    first->whileCalled = nullptr;
    second->whileCalled = nullptr;
}
