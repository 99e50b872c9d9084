// New windows asked for by a page: with SimpleBrowse on they open in the control's own dialog made from
// template 105, whose hosted browser takes the navigation; CloseDocument and release take the dialogs down.
#include "support/import_hook.h"
#include "support/initialized_control_fixture.h"

using tov::ComPtr;
using tovtest::InitializedControlFixture;

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

std::wstring TextOf(HWND hwnd)
{
    wchar_t text[64] = {};
    GetWindowTextW(hwnd, text, 64);
    return text;
}

HWND g_noDialog = nullptr;
HWND WINAPI NoDialog(HINSTANCE, LPCWSTR, HWND, DLGPROC, LPARAM) { return g_noDialog; }

} // namespace

class SimpleBrowse : public InitializedControlFixture {
protected:
    void SetUp() override
    {
        InitializedControlFixture::SetUp();
        Init(2);
    }
    void TearDown() override
    {
        InitializedControlFixture::TearDown();
        EXPECT_TRUE(SimpleBrowseWindows().empty()) << "no dialog outlives the control";
    }
    // NewWindow2 as the engine raises it; the new window's dispatch is owned by the result.
    HRESULT NewWindow(ComPtr<IDispatch>& window, VARIANT_BOOL& cancel)
    {
        IDispatch* disp = nullptr;
        cancel = VARIANT_FALSE;
        const HRESULT hr = browser->FireNewWindow2(&disp, &cancel);
        window.Attach(disp);
        return hr;
    }
    HWND ControlWindow() const
    {
        ComPtr<IOleWindow> window;
        HWND hwnd = nullptr;
        if (SUCCEEDED(control->QueryInterface(IID_IOleWindow, window.PutVoid()))) window->GetWindow(&hwnd);
        return hwnd;
    }
    // SimpleBrowse on and one NewWindow2: the dialog made for it.
    HWND OpenDialog(ComPtr<IDispatch>& window)
    {
        EXPECT_EQ(S_OK, control->put_SimpleBrowse(1));
        VARIANT_BOOL cancel;
        EXPECT_EQ(S_OK, NewWindow(window, cancel));
        const auto dialogs = SimpleBrowseWindows();
        return dialogs.empty() ? nullptr : dialogs.back();
    }
    // Lines of the trace that name `text` (entry, exit or message).
    size_t LinesNaming(const std::string& text) const
    {
        size_t n = 0;
        for (const auto& line : Lines()) n += line.find(text) != std::string::npos;
        return n;
    }
};

TEST_F(SimpleBrowse, OffLeavesTheNewWindowToTheBrowser)
{
    const size_t made = browsers.Created().size();
    ComPtr<IDispatch> window;
    VARIANT_BOOL cancel;
    EXPECT_EQ(S_OK, NewWindow(window, cancel));
    EXPECT_FALSE(window);
    EXPECT_EQ(VARIANT_FALSE, cancel);
    EXPECT_EQ(made, browsers.Created().size());
    EXPECT_TRUE(SimpleBrowseWindows().empty());
    EXPECT_EQ((std::vector<std::string>{"=> NewWindow2", "<= NewWindow2"}), Lines());
}

TEST_F(SimpleBrowse, OnOpensTheDialogFromTheTemplateAndHandsOutItsBrowser)
{
    ASSERT_EQ(S_OK, control->put_SimpleBrowse(1));
    ComPtr<IDispatch> window;
    VARIANT_BOOL cancel;
    EXPECT_EQ(S_OK, NewWindow(window, cancel));
    EXPECT_EQ(VARIANT_FALSE, cancel) << "Cancel is never set";

    const auto dialogs = SimpleBrowseWindows();
    ASSERT_EQ(1u, dialogs.size());
    const HWND dialog = dialogs[0];
    EXPECT_TRUE(IsWindowVisible(dialog));
    EXPECT_TRUE(GetWindowLongW(dialog, GWL_EXSTYLE) & WS_EX_TOPMOST);
    const DWORD style = static_cast<DWORD>(GetWindowLongW(dialog, GWL_STYLE));
    EXPECT_EQ(DWORD(WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX), style & (WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX));
    EXPECT_EQ(0u, style & WS_THICKFRAME) << "not resizable";
    EXPECT_EQ(GetAncestor(ControlWindow(), GA_ROOT), GetWindow(dialog, GW_OWNER)) << "a popup of the control's window";
    const HWND ok = GetDlgItem(dialog, IDOK);
    const HWND cancelButton = GetDlgItem(dialog, IDCANCEL);
    const HWND host = GetDlgItem(dialog, 202);
    ASSERT_TRUE(ok && cancelButton && host);
    EXPECT_EQ(L"OK", TextOf(ok));
    EXPECT_EQ(L"Cancel", TextOf(cancelButton));
    EXPECT_FALSE(IsWindowVisible(ok));
    EXPECT_FALSE(IsWindowEnabled(cancelButton));
    EXPECT_TRUE(IsWindowVisible(host));

    // The hosted browser is a WebBrowser made for the dialog; its application is the new window.
    tovfe::ScriptedBrowser* hosted = browsers.Last();
    ASSERT_NE(browser, hosted);
    EXPECT_EQ(1u, hosted->OwnLog().Count(L"get_Application"));
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

TEST_F(SimpleBrowse, CloseDocumentClosesOnlyTheLatestDialogAndReleaseTheRest)
{
    ASSERT_EQ(S_OK, control->put_SimpleBrowse(7));
    ComPtr<IDispatch> first, second;
    VARIANT_BOOL cancel;
    ASSERT_EQ(S_OK, NewWindow(first, cancel));
    const HWND older = SimpleBrowseWindows().at(0);
    ASSERT_EQ(S_OK, NewWindow(second, cancel));
    auto dialogs = SimpleBrowseWindows();
    ASSERT_EQ(2u, dialogs.size());
    const HWND latest = dialogs[0] == older ? dialogs[1] : dialogs[0];

    browser->OwnLog().Clear();
    EXPECT_EQ(S_OK, control->CloseDocument());
    EXPECT_FALSE(IsWindow(latest));
    EXPECT_TRUE(IsWindow(older));
    EXPECT_EQ(0u, browser->OwnLog().Count(L"Navigate")) << "one thing closed: the latest dialog";

    // The older dialog is not the control's to close by CloseDocument: the own page goes instead.
    EXPECT_EQ(S_OK, control->CloseDocument());
    EXPECT_TRUE(IsWindow(older));
    EXPECT_EQ(L"Navigate(about:blank, <null>, <null>, <null>, <null>)", BrowserCalls().back());

    first.Reset();
    second.Reset();
    host.Destroy();
    control.Reset();
    EXPECT_FALSE(IsWindow(older));
}

TEST_F(SimpleBrowse, TheUserClosingADialogLeavesCloseDocumentToTheOwnPage)
{
    ComPtr<IDispatch> window;
    const HWND dialog = OpenDialog(window);
    ASSERT_TRUE(dialog);
    tovfe::ScriptedBrowser* hosted = browsers.Last();

    // OK and Cancel end the dialog; closing it destroys it and lets its browser go.
    SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(IDCANCEL, 0), 0);
    EXPECT_TRUE(IsWindow(dialog));
    SendMessageW(dialog, WM_CLOSE, 0, 0);
    EXPECT_FALSE(IsWindow(dialog));
    window.Reset();
    EXPECT_EQ(1u, hosted->RefCount()) << "only the stand-in's own list still holds the dialog's browser";

    ClearLines();
    browser->OwnLog().Clear();
    EXPECT_EQ(S_OK, control->CloseDocument());
    EXPECT_EQ(1u, LinesNaming("CloseSimpleBrowseWindow: Simple Browse Window not closed successfully"));
    EXPECT_EQ(L"Navigate(about:blank, <null>, <null>, <null>, <null>)", BrowserCalls().back());

    // A dialog destroyed behind the control's back is forgotten the same way.
    const HWND another = OpenDialog(window);
    ASSERT_TRUE(another);
    window.Reset();
    DestroyWindow(another);
    browser->OwnLog().Clear();
    EXPECT_EQ(S_OK, control->CloseDocument());
    EXPECT_EQ(std::vector<std::wstring>{L"Navigate(about:blank, <null>, <null>, <null>, <null>)"}, BrowserCalls());
}

TEST_F(SimpleBrowse, SwitchedOffCloseDocumentLeavesTheDialogOpen)
{
    ComPtr<IDispatch> window;
    const HWND dialog = OpenDialog(window);
    ASSERT_TRUE(dialog);
    ASSERT_EQ(S_OK, control->put_SimpleBrowse(0));
    EXPECT_EQ(S_OK, control->CloseDocument());
    EXPECT_TRUE(IsWindow(dialog));
    EXPECT_EQ(L"Navigate(about:blank, <null>, <null>, <null>, <null>)", BrowserCalls().back());
}

TEST_F(SimpleBrowse, DialogsThatCannotBeMadeFallThroughTheTraceLines)
{
    ASSERT_EQ(S_OK, control->put_SimpleBrowse(1));
    ComPtr<IDispatch> window;
    VARIANT_BOOL cancel;
    {
        tovtest::ImportHook hook(ocx.Handle(), "atl.dll", "AtlAxCreateDialogW", reinterpret_cast<void*>(&NoDialog));
        ASSERT_TRUE(hook.Installed());
        EXPECT_EQ(S_OK, NewWindow(window, cancel));
    }
    EXPECT_FALSE(window);
    EXPECT_EQ(0u, LinesNaming("pWebBrowser invalid."));
    EXPECT_EQ(0u, LinesNaming("pUnknow invalid."));
    EXPECT_EQ(2u, LinesNaming("NewWindow2 ATL CWindow invalid."));

    // The hosted browser cannot be created: no browser, no dialog shown.
    ClearLines();
    browsers.FailCreate(E_OUTOFMEMORY);
    EXPECT_EQ(S_OK, NewWindow(window, cancel));
    browsers.FailCreate(S_OK);
    EXPECT_FALSE(window);
    EXPECT_EQ(0u, LinesNaming("pWebBrowser invalid."));
    EXPECT_EQ(2u, LinesNaming("NewWindow2 ATL CWindow invalid."));
    for (HWND dialog : SimpleBrowseWindows()) EXPECT_FALSE(IsWindowVisible(dialog));

    // An exception inside the handler: its own line and E_FAIL for the engine.
    ClearLines();
    browsers.ThrowOnNext(L"get_Application");
    EXPECT_TRUE(FAILED(NewWindow(window, cancel)));
    browsers.ClearFailurePlan();
    EXPECT_EQ(2u, LinesNaming("Exception raised in NewWindow2 method ."));
    EXPECT_EQ(VARIANT_FALSE, cancel);
}
