// The scripted browser's calls on its site: nothing without a site, the site's own answer or the missing
// interface otherwise; in-place activation is reported to an in-place site; accelerators are recorded.
#include <gtest/gtest.h>
#include <urlmon.h>
#include "frontend/scripted_browser.h"

using tov::ComPtr;
using tovfe::ScriptedBrowser;

namespace {

// A client site that is also an in-place site and counts what it is told.
class InPlaceTestSite final : public tov::ObjectRoot, public IOleClientSite, public IOleInPlaceSite {
public:
    TOV_IUNKNOWN_DELEGATING
    void* FindInterface(REFIID riid) noexcept override
    {
        return Lookup(riid, {tov::Entry<IOleClientSite>(IID_IOleClientSite, this),
                             tov::Entry<IOleInPlaceSite>(IID_IOleInPlaceSite, this)});
    }
    STDMETHODIMP SaveObject() override { return E_NOTIMPL; }
    STDMETHODIMP GetMoniker(DWORD, DWORD, IMoniker** pp) override { if (pp) *pp = nullptr; return E_NOTIMPL; }
    STDMETHODIMP GetContainer(IOleContainer** pp) override { if (pp) *pp = nullptr; return E_NOTIMPL; }
    STDMETHODIMP ShowObject() override { ++shown; return S_OK; }
    STDMETHODIMP OnShowWindow(BOOL) override { return S_OK; }
    STDMETHODIMP RequestNewObjectLayout() override { return E_NOTIMPL; }
    STDMETHODIMP GetWindow(HWND* p) override { if (p) *p = nullptr; return E_FAIL; }
    STDMETHODIMP ContextSensitiveHelp(BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP CanInPlaceActivate() override { return canActivate; }
    STDMETHODIMP OnInPlaceActivate() override { ++activations; return S_OK; }
    STDMETHODIMP OnUIActivate() override { return S_OK; }
    STDMETHODIMP GetWindowContext(IOleInPlaceFrame** f, IOleInPlaceUIWindow** d, LPRECT, LPRECT, LPOLEINPLACEFRAMEINFO) override
    {
        if (f) *f = nullptr;
        if (d) *d = nullptr;
        return E_NOTIMPL;
    }
    STDMETHODIMP Scroll(SIZE) override { return E_NOTIMPL; }
    STDMETHODIMP OnUIDeactivate(BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP OnInPlaceDeactivate() override { return E_NOTIMPL; }
    STDMETHODIMP DiscardUndoState() override { return E_NOTIMPL; }
    STDMETHODIMP DeactivateAndUndo() override { return E_NOTIMPL; }
    STDMETHODIMP OnPosRectChange(LPCRECT) override { return E_NOTIMPL; }

    int shown = 0;
    int activations = 0;
    HRESULT canActivate = S_OK;
};

} // namespace

TEST(ScriptedBrowserSiteCalls, WithoutASiteNothingIsCalled)
{
    auto browser = ScriptedBrowser::Create();
    DOCHOSTUIINFO info{sizeof(info)};
    BOOL allow = TRUE;
    BYTE policy = 7;
    EXPECT_EQ(E_UNEXPECTED, browser->CallGetHostInfo(&info));
    EXPECT_EQ(E_UNEXPECTED, browser->CallProcessUrlAction(L"tovevent:x", 0x1400, &policy, 1));
    EXPECT_EQ(E_UNEXPECTED, browser->CallAllowFocusChange(&allow));
    EXPECT_EQ(E_UNEXPECTED, browser->CallShowObject());
    EXPECT_EQ(7, policy);
    EXPECT_TRUE(allow);
    EXPECT_FALSE(browser->SiteAs<IOleClientSite>(IID_IOleClientSite));
}

TEST(ScriptedBrowserSiteCalls, ASiteWithoutTheInterfaceSaysSo)
{
    auto browser = ScriptedBrowser::Create();
    auto site = tovfe::CreateStandIn<InPlaceTestSite, IOleClientSite>(IID_IOleClientSite);
    ASSERT_EQ(S_OK, browser->SetClientSite(site.Get()));
    EXPECT_EQ(E_NOINTERFACE, browser->CallGetHostInfo(nullptr));
    EXPECT_EQ(E_NOINTERFACE, browser->CallProcessUrlAction(L"tovevent:x", 0x1400, nullptr, 0)) << "no service provider";
    EXPECT_EQ(E_NOINTERFACE, browser->CallExec(nullptr, 40, nullptr, nullptr));
    EXPECT_EQ(S_OK, browser->CallShowObject());
    EXPECT_EQ(1, site->shown);
    browser->SetClientSite(nullptr);
}

TEST(ScriptedBrowserSiteCalls, FirstInPlaceActivationIsReportedToTheSite)
{
    auto browser = ScriptedBrowser::Create();
    auto site = tovfe::CreateStandIn<InPlaceTestSite, IOleClientSite>(IID_IOleClientSite);
    tov::UniqueWindow parent(CreateWindowExW(0, L"Static", L"parent", WS_OVERLAPPEDWINDOW, 0, 0, 100, 100, nullptr, nullptr,
                                             GetModuleHandleW(nullptr), nullptr));
    const RECT rc{0, 0, 50, 40};
    ASSERT_EQ(S_OK, browser->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, site.Get(), 0, parent.Get(), &rc));
    ASSERT_EQ(S_OK, browser->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, site.Get(), 0, parent.Get(), &rc));
    EXPECT_EQ(1, site->activations) << "once, when the browser's window is made";
    browser->InPlaceDeactivate();
    site->canActivate = S_FALSE;
    ASSERT_EQ(S_OK, browser->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, site.Get(), 0, parent.Get(), &rc));
    EXPECT_EQ(1, site->activations) << "not when the site refuses";
}

TEST(ScriptedBrowserSiteCalls, AcceleratorsAreRecorded)
{
    auto browser = ScriptedBrowser::Create();
    ComPtr<IOleInPlaceActiveObject> active;
    ASSERT_EQ(S_OK, browser->QueryInterface(IID_IOleInPlaceActiveObject, active.PutVoid()));
    MSG msg{nullptr, WM_KEYDOWN, VK_F4, 0};
    EXPECT_EQ(S_FALSE, active->TranslateAccelerator(&msg));
    EXPECT_EQ(S_FALSE, active->TranslateAccelerator(nullptr));
    EXPECT_EQ((std::vector<std::wstring>{L"QueryInterface(IOleInPlaceActiveObject)", L"TranslateAccelerator(0x100, 0x73)",
                                         L"TranslateAccelerator(<null>, <null>)"}),
              browser->Log().Texts());
}
