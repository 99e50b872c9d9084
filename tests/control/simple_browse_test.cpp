// New windows asked for by a page: with SimpleBrowse on they open in the control's own dialog made from
// template 105, whose hosted browser takes the navigation; CloseDocument and release take the dialogs down.
#include <algorithm>
#include "support/initialized_control_fixture.h"

using tov::ComPtr;

namespace {

std::vector<HWND> SimpleBrowseWindows()
{
    std::vector<HWND> found;
    EnumThreadWindows(
        GetCurrentThreadId(),
        [](HWND hwnd, LPARAM p) {
            wchar_t title[64] = {};
            GetWindowTextW(hwnd, title, 64);
            if (std::wstring(title) == L"TOVSimpleBrowse") reinterpret_cast<std::vector<HWND>*>(p)->push_back(hwnd);
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&found));
    return found;
}

} // namespace

class SimpleBrowse : public tovtest::InitializedControlFixture {
protected:
    SimpleBrowse() : InitializedControlFixture(2) {}
    void TearDown() override
    {
        InitializedControlFixture::TearDown();
        EXPECT_TRUE(SimpleBrowseWindows().empty()) << "no dialog outlives the control";
    }
    // NewWindow2 as the engine raises it; the new window's dispatch is owned by `window`.
    HRESULT NewWindow(ComPtr<IDispatch>& window, VARIANT_BOOL& cancel)
    {
        IDispatch* disp = nullptr;
        cancel = VARIANT_FALSE;
        const HRESULT hr = browser->FireNewWindow2(&disp, &cancel);
        window.Attach(disp);
        return hr;
    }
    // SimpleBrowse on and one NewWindow2: the new dialog made for it.
    HWND OpenDialog(ComPtr<IDispatch>& window)
    {
        EXPECT_EQ(S_OK, control->put_SimpleBrowse(1));
        const auto before = SimpleBrowseWindows();
        VARIANT_BOOL cancel;
        EXPECT_EQ(S_OK, NewWindow(window, cancel));
        for (HWND dialog : SimpleBrowseWindows())
            if (std::find(before.begin(), before.end(), dialog) == before.end()) return dialog;
        return nullptr;
    }
};

// Off, the new window is the browser's; on, the dialog's hosted browser is handed out.
TEST_F(SimpleBrowse, OnOpensTheDialogFromTheTemplateAndHandsOutItsBrowser)
{
    ComPtr<IDispatch> window;
    VARIANT_BOOL cancel;
    EXPECT_EQ(S_OK, NewWindow(window, cancel));
    EXPECT_FALSE(window);
    EXPECT_EQ((std::vector<std::string>{"=> NewWindow2", "<= NewWindow2"}), Lines());
    ClearLines();
    ASSERT_EQ(S_OK, control->put_SimpleBrowse(1));
    EXPECT_EQ(S_OK, NewWindow(window, cancel));
    EXPECT_EQ(VARIANT_FALSE, cancel) << "Cancel is never set";
    const auto dialogs = SimpleBrowseWindows();
    ASSERT_EQ(1u, dialogs.size());
    const HWND dialog = dialogs[0];
    EXPECT_TRUE(IsWindowVisible(dialog));
    EXPECT_TRUE(GetWindowLongW(dialog, GWL_EXSTYLE) & WS_EX_TOPMOST);
    EXPECT_EQ(GetAncestor(Window(), GA_ROOT), GetWindow(dialog, GW_OWNER)) << "owned by the control's window";
    EXPECT_TRUE(GetDlgItem(dialog, IDOK) && GetDlgItem(dialog, IDCANCEL) && GetDlgItem(dialog, 202)) << "made from the template";
    // The hosted browser is a WebBrowser made for the dialog; its application is the new window.
    tovfe::ScriptedBrowser* hosted = browsers.Last();
    ASSERT_NE(browser, hosted);
    ASSERT_TRUE(window);
    EXPECT_EQ(tov::QueryAs<IUnknown>(window.Get(), IID_IUnknown).Get(),
              tov::QueryAs<IUnknown>(static_cast<IOleObject*>(hosted), IID_IUnknown).Get());
    EXPECT_EQ((std::vector<std::string>{"=> NewWindow2", "==> NewWindow2 with SimpleBrowse On.",
                                        "===> NewWindow2 pWebBrowser invalid.", "<=== NewWindow2 pWebBrowser invalid.",
                                        "===> NewWindow2 pUnknow invalid.", "<=== NewWindow2 pUnknow invalid.",
                                        "===> NewWindow2 ATL CWindow invalid.", "<=== NewWindow2 ATL CWindow invalid.",
                                        "<== NewWindow2 with SimpleBrowse On.", "<= NewWindow2"}),
              Lines());
}

// CloseDocument closes the latest dialog while SimpleBrowse is on, and only that one; release closes the
// rest (checked at the end of every test).
TEST_F(SimpleBrowse, CloseDocumentClosesOnlyTheLatestDialog)
{
    ComPtr<IDispatch> first, second;
    const HWND older = OpenDialog(first);
    const HWND latest = OpenDialog(second);
    ASSERT_TRUE(older && latest && older != latest);
    browser->OwnLog().Clear();
    EXPECT_EQ(S_OK, control->CloseDocument());
    EXPECT_FALSE(IsWindow(latest));
    EXPECT_TRUE(IsWindow(older));
    EXPECT_TRUE(BrowserCalls().empty()) << "one thing closed: the latest dialog";
    EXPECT_EQ(S_OK, control->CloseDocument());
    EXPECT_TRUE(IsWindow(older)) << "the older dialog is not CloseDocument's";
    EXPECT_EQ(std::vector<std::wstring>{kBlank}, BrowserCalls());
}

TEST_F(SimpleBrowse, TheUserClosingADialogLeavesCloseDocumentToTheOwnPage)
{
    ComPtr<IDispatch> window;
    const HWND dialog = OpenDialog(window);
    ASSERT_TRUE(dialog);
    tovfe::ScriptedBrowser* hosted = browsers.Last();
    SendMessageW(dialog, WM_CLOSE, 0, 0);
    EXPECT_FALSE(IsWindow(dialog));
    window.Reset();
    EXPECT_EQ(1u, hosted->RefCount()) << "only the stand-in's own list still holds the dialog's browser";
    ClearLines();
    browser->OwnLog().Clear();
    EXPECT_EQ(S_OK, control->CloseDocument());
    EXPECT_EQ(1u, LinesWith("CloseSimpleBrowseWindow: Simple Browse Window not closed successfully"));
    EXPECT_EQ(std::vector<std::wstring>{kBlank}, BrowserCalls());
}

TEST_F(SimpleBrowse, AnExceptionInsideTheHandlerIsTraced)
{
    ASSERT_EQ(S_OK, control->put_SimpleBrowse(1));
    ComPtr<IDispatch> window;
    VARIANT_BOOL cancel;
    browsers.ThrowOnNext(L"get_Application");
    EXPECT_TRUE(FAILED(NewWindow(window, cancel)));
    browsers.ClearFailurePlan();
    EXPECT_EQ(2u, LinesWith("Exception raised in NewWindow2 method ."));
    EXPECT_FALSE(window);
    EXPECT_EQ(VARIANT_FALSE, cancel);
}
